// Faults caught here: on Windows, a file that is lost or half-written because another program has
// it open or it is write-protected, a name outside the code page, a lock that outlives its process,
// a message in the words of the system's language, a share of the network that is taken for a
// folder of the current drive.
#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>

#include "base/environment.h"
#include "base/file_lock.h"
#include "base/file_replace.h"
#include "base/files.h"
#include "base/paths.h"
#include "support/temp_folder.h"

using namespace quorvane;
namespace fs = std::filesystem;

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A file as another program has it open.
class OpenedFile {
 public:
  OpenedFile(const fs::path& file, DWORD share)
      : handle_(
            CreateFileW(file.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_NE(handle_, INVALID_HANDLE_VALUE) << file;
  }
  ~OpenedFile() { CloseHandle(handle_); }
  OpenedFile(const OpenedFile&) = delete;
  OpenedFile& operator=(const OpenedFile&) = delete;

 private:
  HANDLE handle_;
};

// What the fault of `action` says; empty if it did not fail.
template <typename Action>
std::string FaultOf(Action action) {
  try {
    action();
  } catch (const FileFault& fault) {
    return fault.what();
  }
  return {};
}

std::ptrdiff_t CountEntries(const fs::path& folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

}  // namespace

TEST(WindowsFiles, OpenInAnotherProgramStayAsTheyAre) {
  const TempFolder folder;
  const fs::path file = folder.Write("log.rtf", "old");
  for (const DWORD share : {DWORD{0}, DWORD{FILE_SHARE_READ}, kShareAll}) {
    const OpenedFile open(file, share);
    EXPECT_EQ(FaultOf([&] { WriteWholeFile(file, "new"); }),
              PathText(file) + ": cannot be written: another program has it open");
  }
  {
    const OpenedFile open(file, 0);
    EXPECT_EQ(FaultOf([&] { ReadWholeFile(file, 100); }),
              PathText(file) + ": cannot be read: another program has it open");
  }
  EXPECT_EQ(ReadText(file), "old");
  EXPECT_EQ(CountEntries(folder.path()), 1);
  WriteWholeFile(file, "new");
  EXPECT_EQ(ReadText(file), "new");
}

TEST(WindowsFiles, OpenForAMomentAreWrittenAfterIt) {
  const TempFolder folder;
  const fs::path file = folder.Write("file", "old");
  auto scanner = std::make_unique<OpenedFile>(file, FILE_SHARE_READ);
  std::thread other([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(120));
    scanner.reset();
  });
  EXPECT_EQ(FaultOf([&] { WriteWholeFile(file, "new"); }), "");
  other.join();
  EXPECT_EQ(ReadText(file), "new");
}

TEST(WindowsFiles, WriteProtectedStayAndLeaveNothingBehind) {
  const TempFolder folder;
  const fs::path file = folder.Write("file", "old");
  SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(FaultOf([&] { WriteWholeFile(file, "new"); }),
            PathText(file) + ": cannot be written: Permission denied");
  EXPECT_EQ(ReadText(file), "old");
  EXPECT_EQ(CountEntries(folder.path()), 1);
  SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
  WriteWholeFile(file, "new");
  EXPECT_EQ(ReadText(file), "new");
}

TEST(WindowsFiles, NamesOfAllScriptsAndPathsOfAllFormsLeadThere) {
  const TempFolder folder;
  const fs::path deep = folder / "\u00E4\u00F6\u00FC \u03B1\u03B2 \u6E2C\u5B9A \U0001F9EA";
  fs::create_directories(deep);
  const std::string whole = PathText(deep / "Pr\u00F6be 1.RA1");
  WriteWholeFile(PathFromText(whole), "text");
  std::string forward = whole;
  for (char& c : forward) c = c == '\\' ? '/' : c;
  const fs::path old = fs::current_path();
  fs::current_path(folder.path());
  for (const std::string& name :
       {whole, forward, "\\\\?\\" + whole, whole.substr(PathText(folder.path()).size() + 1)}) {
    EXPECT_TRUE(FileExists(PathFromText(name))) << name;
    EXPECT_EQ(ReadWholeFile(PathFromText(name), 100), "text") << name;
    WriteWholeFile(PathFromText(name), "text");
  }
  fs::current_path(old);
  EXPECT_EQ(CountEntries(deep), 1);
  EXPECT_EQ(DirectoryOf("\\\\server\\share\\run 1\\00012.RA3"), "\\\\server\\share\\run 1");
  EXPECT_EQ(PathFromText("\\\\server\\share\\a").parent_path().filename(), "share");
}

TEST(WindowsFiles, SpeakEnglishWhateverTheSystemSpeaks) {
  const struct {
    DWORD code;
    const char* text;
  } cases[] = {{ERROR_FILE_NOT_FOUND, "No such file or directory"},
               {ERROR_ACCESS_DENIED, "Permission denied"},
               {ERROR_DISK_FULL, "No space left on device"}};
  for (const auto& c : cases) {
    const std::error_code error(static_cast<int>(c.code), std::system_category());
    EXPECT_EQ(SystemErrorText(error), c.text) << c.code;
  }
}

TEST(WindowsEnvironment, IsReadBeyondTheCodePage) {
  SetEnvironmentVariableW(L"QUORVANE_TEST", L"C:\\Users\\\u03B1 \u6E2C");
  _wputenv(L"QUORVANE_TEST=C:\\Users\\\u03B1 \u6E2C");
  EXPECT_EQ(Environment("QUORVANE_TEST"), "C:\\Users\\\u03B1 \u6E2C");
  EXPECT_EQ(Environment("QUORVANE_TEST_NONE"), "");
}

// The other process of the next test: holds a lock until it is killed.
TEST(WindowsLock, DISABLED_IsHeldByThisProcess) {
  const FileLock lock(PathFromText(Environment("QUORVANE_TEST_LOCK")));
  ASSERT_TRUE(lock.Held());
  Sleep(60000);
}

TEST(WindowsLock, OfAKilledProcessIsTakenOver) {
  const TempFolder folder;
  const fs::path file = folder / "lock \u03B1";
  SetEnvironmentVariableW(L"QUORVANE_TEST_LOCK", file.c_str());
  std::wstring self(32768, L'\0');
  self.resize(GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size())));
  std::wstring command = L"\"" + self +
                         L"\" --gtest_also_run_disabled_tests "
                         L"--gtest_filter=WindowsLock.DISABLED_IsHeldByThisProcess";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION child{};
  ASSERT_NE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                           &start, &child),
            0);
  const std::string process = "process " + std::to_string(child.dwProcessId) + " ";
  std::string holder;
  for (int k = 0; k < 100 && !holder.starts_with(process); ++k) {
    Sleep(100);
    if (fs::exists(file)) holder = FileLock(file).Holder();
  }
  EXPECT_TRUE(holder.starts_with(process)) << holder;
  TerminateProcess(child.hProcess, 1);
  WaitForSingleObject(child.hProcess, INFINITE);
  CloseHandle(child.hProcess);
  CloseHandle(child.hThread);
  EXPECT_TRUE(FileLock(file).Held());
  EXPECT_FALSE(fs::exists(file));
}

TEST(WindowsPaths, LeadToDrivesAndShares) {
  struct Row {
    const wchar_t* path;
    const wchar_t* whole;
    const wchar_t* inFolder;
  };
  for (const Row& row : std::initializer_list<Row>{
           {LR"(\\lab\data\.\a\..\b.RA1)", LR"(\\lab\data\b.RA1)", LR"(\\lab\data\.\a\..\b.RA1)"},
           {L"//lab/data/\u6E2C \u03B1.RA1", L"\\\\lab\\data\\\u6E2C \u03B1.RA1",
            L"//lab/data/\u6E2C \u03B1.RA1"},
           {LR"(\\?\C:\a\b.RA1)", LR"(\\?\C:\a\b.RA1)", LR"(\\?\C:\a\b.RA1)"},
           {L"D:/x/../a.RA1", LR"(D:\a.RA1)", L"D:/x/../a.RA1"},
           {L"below/a.RA1", nullptr, LR"(\\lab\runs\below/a.RA1)"},
       }) {
    if (row.whole != nullptr) {
      EXPECT_EQ(WholePath(row.path).native(), row.whole);
    }
    EXPECT_EQ(IsWholePath(row.path), row.whole != nullptr) << PathText(row.path);
    EXPECT_EQ(PathIn(LR"(\\lab\runs)", row.path).native(), row.inFolder);
  }
  const TempFolder folder;
  EXPECT_TRUE(DirExists(WholePath(folder.path() / std::wstring(300, L'a') / "..")));
}

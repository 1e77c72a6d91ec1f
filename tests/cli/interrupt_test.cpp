// Faults caught here: Ctrl-C that ends the program instead of the calculation, or that it does not
// notice at all.
#include <chrono>
#include <thread>

#include "cli/command_fixture.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>
#endif

using namespace quorvane;

namespace {

// quorvane-cli at work on a job, its output in a file.
#if defined(_WIN32)

BOOL WINAPI LeaveAlone(DWORD) {
  return TRUE;
}

class Command {
 public:
  Command(const std::string& job, const std::string& json, const std::filesystem::path& output) {
    FreeConsole();  // it may be one that takes no events
    EXPECT_NE(AllocConsole(), 0);
    SetConsoleCtrlHandler(LeaveAlone, TRUE);
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const HANDLE out = CreateFileW(output.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                   CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = start.hStdError = out;
    std::wstring line =
        PathFromText("\"" QUORVANE_CLI "\" analyze \"" + job + "\" --json \"" + json + "\"")
            .native();
    EXPECT_NE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                             &start, &child_),
              0);
    CloseHandle(out);
  }
  ~Command() {
    TerminateProcess(child_.hProcess, 99);
    CloseHandle(child_.hProcess);
    CloseHandle(child_.hThread);
    SetConsoleCtrlHandler(LeaveAlone, FALSE);
  }
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  static void Interrupt() { EXPECT_NE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0), 0); }
  int Wait() {
    constexpr DWORD kLongest = 60000;  // ms
    EXPECT_EQ(WaitForSingleObject(child_.hProcess, kLongest), WAIT_OBJECT_0);
    DWORD status = 0;
    GetExitCodeProcess(child_.hProcess, &status);
    return static_cast<int>(status);
  }

 private:
  PROCESS_INFORMATION child_{};
};

#else

class Command {
 public:
  Command(const std::string& job, const std::string& json, const std::filesystem::path& output)
      : child_(fork()) {
    if (child_ != 0) return;
    if (std::freopen(output.c_str(), "w", stdout) == nullptr) _exit(9);
    execl(QUORVANE_CLI, QUORVANE_CLI, "analyze", job.c_str(), "--json", json.c_str(), nullptr);
    _exit(9);
  }

  void Interrupt() const { kill(child_, SIGINT); }
  int Wait() const {
    int status = 0;
    waitpid(child_, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t child_;
};

#endif

}  // namespace

class Interrupt : public CommandTest {};

TEST_F(Interrupt, StopsTheCalculationAndKeepsWhatIsDone) {
  WriteScan("00001.RA1");
  folder.Write("job.toml",
               "[[load]]\nfile = \"00001.RA1\"\n[fit]\nmodel = \"Ideal\"\n"
               "[errors]\nmethods = [\"monte carlo\"]\nreplicates = 1000000\n");
  Command command(Path("job.toml"), Path("out.json"), folder / "output.txt");
  for (int k = 0; k < 300; ++k) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    if (ReadText(folder / "output.txt").find("Number of Iterations") != std::string::npos) break;
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  command.Interrupt();
  EXPECT_EQ(command.Wait(), 1) << ReadText(folder / "output.txt");
  EXPECT_EQ(Result()["errors"]["stopped"], true);
  EXPECT_EQ(Result()["fit"]["stopped"], false);
}

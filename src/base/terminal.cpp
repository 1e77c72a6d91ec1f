#include "base/terminal.h"

#if defined(_WIN32)
#include <windows.h>

#include <shellapi.h>

#include <cstdio>
#include <memory>

#include "base/files.h"
#else
#include <unistd.h>
#endif

namespace quorvane {

#if defined(_WIN32)

namespace {

struct FreeLocal {
  void operator()(LPWSTR* words) const { LocalFree(words); }
};

}  // namespace

// From the system, because argv holds them in the code page, which lacks other scripts.
std::vector<std::string> ProgramArguments(int argc, char** argv) {
  int count = 0;
  const std::unique_ptr<LPWSTR, FreeLocal> words(CommandLineToArgvW(GetCommandLineW(), &count));
  if (!words) return {argv + (argc > 0 ? 1 : 0), argv + argc};
  std::vector<std::string> arguments;
  for (int k = 1; k < count; ++k) arguments.push_back(PathText(words.get()[k]));
  return arguments;
}

Terminal::Terminal() {
  constexpr std::size_t kBuffer = 65536;
  // A console takes unbuffered text byte by byte, and tears characters of several bytes apart.
  std::setvbuf(stdout, nullptr, _IOFBF, kBuffer);
  oldCodePage_ = GetConsoleOutputCP();
  if (oldCodePage_ != 0) SetConsoleOutputCP(CP_UTF8);
  const HANDLE errors = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  showsProgress_ = GetConsoleMode(errors, &mode) != 0 &&
                   SetConsoleMode(errors, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

Terminal::~Terminal() {
  if (oldCodePage_ != 0) SetConsoleOutputCP(oldCodePage_);
}

#else

std::vector<std::string> ProgramArguments(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

Terminal::Terminal() : showsProgress_(isatty(STDERR_FILENO) != 0) {}

Terminal::~Terminal() = default;

#endif

}  // namespace quorvane

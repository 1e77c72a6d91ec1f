// quorvane-cli: the engine of Quorvane without windows.
#include <clocale>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include "base/files.h"
#include "cli/command_line.h"
#include "cli/terminal_host.h"

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

std::filesystem::path FolderOfProgram(const char* name) {
  std::error_code error;
  std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) program = std::filesystem::absolute(PathFromText(name), error);
  return program.parent_path();
}

bool ErrorsGoToATerminal() {
#if defined(_WIN32)
  return _isatty(2) != 0;
#else
  return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace

int main(int argc, char** argv) {
  std::setlocale(LC_NUMERIC, "C");
  CatchInterrupts();
  const CommandStreams streams{std::cout, std::cerr, FolderOfProgram(argc > 0 ? argv[0] : ""),
                               ErrorsGoToATerminal()};
  const ExitStatus status = RunCommandLine({argv + (argc > 0 ? 1 : 0), argv + argc}, streams);
  std::cout.flush();
  if (!std::cout) {
    std::cerr << "standard output: cannot be written\n";
    return static_cast<int>(ExitStatus::kFileFault);
  }
  return static_cast<int>(status);
}

// quorvane-cli: the engine of Quorvane without windows.
#include <clocale>
#include <iostream>
#include <vector>

#include "cli/command_line.h"
#include "cli/program_folder.h"
#include "cli/terminal_host.h"

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

using namespace quorvane;

namespace {

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
  const CommandStreams streams{std::cout, std::cerr, ProgramFolder(argc > 0 ? argv[0] : ""),
                               ErrorsGoToATerminal()};
  const ExitStatus status = RunCommandLine({argv + (argc > 0 ? 1 : 0), argv + argc}, streams);
  std::cout.flush();
  if (!std::cout) {
    std::cerr << "standard output: cannot be written\n";
    return static_cast<int>(ExitStatus::kFileFault);
  }
  return static_cast<int>(status);
}

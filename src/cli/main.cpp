// quorvane-cli: the engine of Quorvane without windows.
#include <clocale>
#include <iostream>

#include "base/terminal.h"
#include "cli/command_line.h"
#include "cli/program_folder.h"
#include "cli/terminal_host.h"

using namespace quorvane;

int main(int argc, char** argv) {
  std::setlocale(LC_NUMERIC, "C");
  const Terminal terminal;
  CatchInterrupts();
  const CommandStreams streams{std::cout, std::cerr, ProgramFolder(argc > 0 ? argv[0] : ""),
                               terminal.ShowsProgress()};
  const ExitStatus status = RunCommandLine(ProgramArguments(argc, argv), streams);
  std::cout.flush();
  if (!std::cout) {
    std::cerr << "standard output: cannot be written\n";
    return static_cast<int>(ExitStatus::kFileFault);
  }
  return static_cast<int>(status);
}

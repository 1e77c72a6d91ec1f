// What a program in a terminal is called with, and the terminal that it speaks to.
#pragma once

#include <string>
#include <vector>

namespace quorvane {

// The arguments without the name of the program, as UTF-8. `argc` and `argv` are those of main.
std::vector<std::string> ProgramArguments(int argc, char** argv);

// Makes the terminal take UTF-8 and control sequences for as long as this lives. For main.
class Terminal {
 public:
  Terminal();
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // Whether standard error goes to a terminal, in which a line can be written anew.
  bool ShowsProgress() const { return showsProgress_; }

 private:
  bool showsProgress_ = false;
  unsigned oldCodePage_ = 0;  // of a console on Windows, to be brought back; 0 elsewhere
};

}  // namespace quorvane

// The commands that the menus and the connections of the frame reach; all are owned by it.
#pragma once

namespace quorvane {

class ErrorCommands;
class ExperimentCommands;
class FitCommands;
class JobCommands;
class OptionCommands;
class PrintCommands;
class ReportCommands;

struct CommandSet {
  ExperimentCommands& experiments;
  OptionCommands& options;
  FitCommands& fits;
  ErrorCommands& errors;
  PrintCommands& prints;
  ReportCommands& reports;
  JobCommands& jobs;
};

}  // namespace quorvane

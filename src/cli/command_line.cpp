#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <ostream>

#include "base/files.h"
#include "cli/analyze.h"
#include "cli/job.h"
#include "cli/scan_command.h"
#include "core/program_state.h"

namespace {

void AddAnalyze(CLI::App& app, AnalyzeArguments& arguments) {
  CLI::App* command =
      app.add_subcommand("analyze", "Load scans, edit them and fit a model, as a job file says");
  command->add_option("job", arguments.job, "The job, a TOML file; its paths are relative to it")
      ->required()
      ->type_name("JOB.toml");
  command->add_option("--json", arguments.json, "Write the results to this file")
      ->type_name("OUT.json");
  command->add_flag("--quiet", arguments.quiet, "Do not print the log");
  command->footer(
      "The log of the analysis goes to standard output, errors to standard error.\n"
      "Ctrl-C stops a running fit as a click in the log does.\n"
      "Exit status: 0 done, 1 refused, failed or stopped, 2 bad usage or bad job,\n"
      "3 a file could not be read or written.");
}

void AddScan(CLI::App& app, ScanArguments& arguments) {
  CLI::App* command = app.add_subcommand("scan", "Load scan files and list their datasets");
  command->add_option("files", arguments.files, "Scan files")->required()->type_name("FILE");
  command
      ->add_option("--kind", arguments.kind,
                   "Kind of file: IP,RA DAT FI EL; default from the extension")
      ->type_name("KIND");
  command
      ->add_option("--centerpiece", arguments.centerpiece,
                   "\"2 channels\" (default), \"6 channels\" or \"8 channels\"")
      ->type_name("CELL");
  command
      ->add_option("--channels", arguments.channels,
                   "Channels to load, such as A,C; default all of the centerpiece")
      ->type_name("LIST");
  command->add_option("--json", arguments.json, "Write the datasets to this file")
      ->type_name("OUT.json");
}

ExitStatus Dispatch(const CLI::App& app, const AnalyzeArguments& analyze, const ScanArguments& scan,
                    const CommandStreams& streams) {
  try {
    if (app.got_subcommand("analyze")) return RunAnalyze(analyze, streams);
    return RunScan(scan, streams);
  } catch (const JobFault& fault) {
    streams.err << fault.what() << '\n';
    return ExitStatus::kBadUsage;
  } catch (const FileFault& fault) {
    streams.err << fault.what() << '\n';
    return ExitStatus::kFileFault;
  } catch (const std::exception& fault) {
    streams.err << "The command failed: " << fault.what() << '\n';
    return ExitStatus::kNotDone;
  }
}

}  // namespace

ExitStatus RunCommandLine(std::vector<std::string> arguments, const CommandStreams& streams) {
  CLI::App app(
      "Quorvane: analysis of sedimentation-equilibrium experiments of an analytical "
      "ultracentrifuge, without windows.",
      "quorvane-cli");
  app.set_version_flag("--version", std::string("Quorvane ") + ProgramVersion());
  app.require_subcommand(1);
  app.footer("quorvane-cli COMMAND --help tells more about a command.");
  AnalyzeArguments analyze;
  ScanArguments scan;
  AddAnalyze(app, analyze);
  AddScan(app, scan);
  try {
    std::reverse(arguments.begin(), arguments.end());
    app.parse(arguments);
  } catch (const CLI::ParseError& error) {
    const bool asked = error.get_exit_code() == 0;  // --help and --version
    app.exit(error, streams.out, streams.err);
    return asked ? ExitStatus::kDone : ExitStatus::kBadUsage;
  }
  return Dispatch(app, analyze, scan, streams);
}

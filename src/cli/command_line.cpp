#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <map>
#include <memory>
#include <ostream>

#include "base/files.h"
#include "base/text.h"
#include "cli/analyze.h"
#include "cli/archive_command.h"
#include "cli/compare_command.h"
#include "cli/import_command.h"
#include "cli/match_command.h"
#include "cli/plan_command.h"
#include "cli/scan_command.h"
#include "cli/simulate_command.h"
#include "cli/solution_command.h"
#include "core/program_state.h"
#include "job/job.h"
#include "stats/fit_comparison.h"

namespace quorvane {

namespace {

// A command with the arguments that it will have been given.
using Command = std::function<ExitStatus(const CommandStreams&)>;

Command AddAnalyze(CLI::App& app) {
  auto arguments = std::make_shared<AnalyzeArguments>();
  CLI::App* command =
      app.add_subcommand("analyze", "Load scans, edit them and fit a model, as a job file says");
  command->add_option("job", arguments->job, "The job, a TOML file; its paths are relative to it")
      ->required()
      ->type_name("JOB.toml");
  command->add_option("--json", arguments->json, "Write the results to this file")
      ->type_name("OUT.json");
  command->add_option("--log", arguments->log, "Write the log with its pictures to this RTF file")
      ->type_name("OUT.rtf");
  command->add_flag("--quiet", arguments->quiet, "Do not print the log");
  command->footer(
      "A job names the scans, their edits, the model and what to write, for example\n"
      "    [[load]]\n"
      "    file = \"00020.RA2\"\n"
      "    centerpiece = \"6 channels\"\n"
      "    [fit]\n"
      "    model = \"Ideal\"\n"
      "    [output]\n"
      "    archive = \"result.exz\"\n"
      "    report = \"fit.html\"     methods, results, plots, files; .html or .pdf\n"
      "All keys stand in docs/user-guide.md.\n"
      "\"starts = 20\" in [fit] repeats the fit from so many scattered starts (\"seed = 1\")\n"
      "and lists the minima found in the JSON.\n"
      "The log of the analysis goes to standard output, errors to standard error.\n"
      "Ctrl-C stops a running fit as a click in the log does.\n"
      "Exit status: 0 done, 1 refused, failed or stopped, 2 bad usage or bad job,\n"
      "3 a file could not be read or written.");
  return [arguments](const CommandStreams& streams) { return RunAnalyze(*arguments, streams); };
}

Command AddScan(CLI::App& app) {
  auto arguments = std::make_shared<ScanArguments>();
  CLI::App* command = app.add_subcommand(
      "scan", "Load scan files and list their datasets, or list the scans of a folder");
  command->add_option("files", arguments->files, "Scan files, or folders of them")
      ->required()
      ->type_name("FOLDER-or-FILE");
  command
      ->add_option("--kind", arguments->kind,
                   "Kind of file: IP,RA DAT FI EL; default from the extension")
      ->type_name("KIND");
  command
      ->add_option("--centerpiece", arguments->centerpiece,
                   "\"2 channels\" (default), \"6 channels\" or \"8 channels\"")
      ->type_name("CELL");
  command
      ->add_option("--channels", arguments->channels,
                   "Channels to load, such as A,C; default all of the centerpiece")
      ->type_name("LIST");
  command->add_flag("--last", arguments->last,
                    "Only the last scan of each cell, wavelength and speed");
  command
      ->add_option("--job", arguments->job,
                   "Write a job for analyze that loads the scans listed, with the options above")
      ->type_name("JOB.toml");
  command->add_option("--json", arguments->json, "Write series and datasets to this file")
      ->type_name("OUT.json");
  command->footer(
      "Of a folder, without those below it, the files .RA* .IP* .FI* .FL* .EL* .DAT are listed by\n"
      "cell, wavelength, speed and time; Change is the rms difference from the scan before in the\n"
      "same series, in signal units. Wavelengths within 5 nm are one series. Nothing is loaded, "
      "and\n"
      "files that are no scans are named on standard error.\n"
      "Exit status: 0 done, 1 a file gave no dataset or no scan was found, 2 bad usage, 3 a file\n"
      "could not be read or written.");
  return [arguments](const CommandStreams& streams) { return RunScan(*arguments, streams); };
}

// A number that is not finite is no limit.
std::string FiniteNumber(const std::string& text) {
  return ParseNumeric(text) ? "" : text + " is no number";
}

std::string AtLeastOne(const std::string& text) {
  return ParseNumeric(text).value_or(0.0) >= 1.0 ? "" : text + " is no number of at least 1";
}

Command AddMatch(CLI::App& app) {
  auto arguments = std::make_shared<MatchArguments>();
  CLI::App* command = app.add_subcommand(
      "match", "Compare the scans of one cell with the last of them: is it at equilibrium?");
  command->add_option("files", arguments->files, "Two or more scan files of one cell")
      ->required()
      ->type_name("FILE");
  command
      ->add_option("--range", arguments->range,
                   "Compare between these radii, in cm; default all points of all scans")
      ->expected(2)
      ->check(FiniteNumber)
      ->type_name("LO HI");
  command
      ->add_option("--filter", arguments->filter,
                   "Kind of the files, default absorbance; electrophoresis keeps the time of a "
                   "scan in columns 14 to 23 of line 2, the others in 16 to 22")
      ->check(CLI::IsMember(std::vector<std::string>{"absorbance", "interference", "fluorescence",
                                                     "electrophoresis", "all"}))
      ->type_name("KIND");
  command
      ->add_option("--every", arguments->every,
                   "Take every Nth file only, the first by name included; default 1")
      ->check(AtLeastOne)
      ->type_name("N");
  command->add_option("--json", arguments->json, "Write the results to this file")
      ->type_name("OUT.json");
  command->add_option("--report", arguments->report, "Write the report with its plots to this file")
      ->type_name("OUT.rtf");
  command->footer(
      "The files are sorted by name; the last is the reference. For each other scan the report on\n"
      "standard output gives its time and the root mean square of its deviation from the\n"
      "reference: as it stands, after the best shift of the signal (Y), and after the best shifts\n"
      "of radius and signal (X&Y). The cell is at equilibrium when these have fallen to noise.\n"
      "Exit status: 0 done, 1 too few points or no match, 2 bad usage, 3 a file could not be read\n"
      "or written.");
  return [arguments](const CommandStreams& streams) { return RunMatch(*arguments, streams); };
}

Command AddSimulate(CLI::App& app) {
  auto arguments = std::make_shared<SimulateArguments>();
  CLI::App* command =
      app.add_subcommand("simulate", "Compute a synthetic scan of a model, with noise");
  command->add_option("job", arguments->job, "The inputs of the simulator, a TOML file")
      ->required()
      ->type_name("JOB.toml");
  command
      ->add_option("-o", arguments->output,
                   "Write the scan here, a series into this folder; default standard output")
      ->type_name("FILE");
  command->add_option("--json", arguments->json, "Write profile and species to this file")
      ->type_name("OUT.json");
  command->add_option("--seed", arguments->seed, "Seed of the noise; default from the clock")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
  command->footer(
      "Keys of the job, with the defaults of the simulator's window:\n"
      "  model (required, caption or index), mw, mw_b, vbar, vbar_b, density, speed, temperature,\n"
      "  nonid, n1, n2, lnk1, lnk2, lnk3, k_display (\"ln\" \"log10\" \"k\"), ext_coeff,\n"
      "  ext_coeff_b, rms, meniscus, base, load, load_b, alpha, wavelength,\n"
      "  save_as (\"IP8\" \"RA8\").\n"
      "speed, load and load_b may be lists, such as speed = [10000, 14000]: then all combinations\n"
      "of speeds and loads are made, a cell (1 to 8) for each load, and -o is a folder. load and\n"
      "load_b belong together by their place; a single one counts for all cells. Files are named\n"
      "00001.RA1: number of the speed and cell. If one fails nothing is written.\n"
      "Exit status: 0 done, 1 the simulation failed, 2 bad usage or a bad job, 3 a file could not\n"
      "be read or written.");
  return [arguments](const CommandStreams& streams) { return RunSimulate(*arguments, streams); };
}

Command AddPlan(CLI::App& app) {
  auto arguments = std::make_shared<PlanArguments>();
  CLI::App* command = app.add_subcommand(
      "plan", "Say how well an experiment that has not been made would determine its parameters");
  command->add_option("plan", arguments->plan, "The planned experiment, a TOML file")
      ->required()
      ->type_name("PLAN.toml");
  command->add_option("--json", arguments->json, "Write the results to this file")
      ->type_name("OUT.json");
  command->footer(
      "A plan names the model, the values that are expected and what would be measured:\n"
      "    model = \"Monomer-Nmer\"\n"
      "    speeds = [10000, 14000, 20000]    or: candidates = [...] and choose = 3\n"
      "    loads = [2e-6, 5e-6, 1.5e-5]      a column each; loads_b for a second component\n"
      "    ext_coeff = 40000.0               ext_coeff_b; a list is a wavelength each\n"
      "    noise = 0.004\n"
      "    most_signal = 1.5                 points above are lost\n"
      "    meniscus = 5.85                   and base = 6.05, or centerpiece = \"6 channels\"\n"
      "    base = 6.05\n"
      "    check = 200                       simulates and fits so many experiments\n"
      "    [parameters]\n"
      "    MW = { value = 8100.0 }           buoyant\n"
      "    N1 = { value = 2.0, fit = false }\n"
      "    LnK1 = { value = 11.5 }\n"
      "Other keys: points, temperature, vbar or sequence, density or buffer. All stand in\n"
      "docs/user-guide.md.\n"
      "Printed are the expected standard errors, correlations, scans, the best choices of speeds,\n"
      "and what stands in the way. The best 100 choices go into the JSON.\n"
      "Exit status: 0 done, 1 beyond all numbers or stopped, 2 bad usage or a bad plan, 3 a file\n"
      "could not be read or written.");
  return [arguments](const CommandStreams& streams) { return RunPlan(*arguments, streams); };
}

Command AddArchive(CLI::App& app) {
  auto arguments = std::make_shared<ArchiveArguments>();
  CLI::App* command =
      app.add_subcommand("archive", "List what a saved experiment (.exz) holds, or write it again");
  command->add_option("file", arguments->file, "The archive")->required()->type_name("FILE.exz");
  command->add_option("--json", arguments->json, "Write all that it holds to this file")
      ->type_name("OUT.json");
  command
      ->add_option("--save-as", arguments->saveAs,
                   "Load it and save it again, in the current layout, to this file")
      ->type_name("NEW.exz");
  command->footer(
      "Lists parameter page, datasets, graphs and log of the experiment. A file that is no such\n"
      "archive or is damaged is refused with what is wrong and where.\n"
      "Exit status: 0 done, 1 nothing to save, 2 bad usage, 3 a file could not be read or\n"
      "written.");
  return [arguments](const CommandStreams& streams) { return RunArchive(*arguments, streams); };
}

void AddImportColumns(CLI::App& command, ImportArguments& arguments) {
  const auto column = [&](const char* name, std::optional<int>& number, const char* text) {
    command.add_option(name, number, text)->type_name("N");
  };
  column("--radius", arguments.radius, "Column of the radius, cm; default 1, or by its heading");
  column("--signal", arguments.signal, "Column of the signal; default 2, or by its heading");
  column("--error", arguments.error,
         "Column of the standard deviation, 0: none; default by its heading");
  column("--reference", arguments.reference,
         "Column of the reference; signal and reference are then intensities");
  command.add_option("--skip", arguments.skip, "Lines before the first row; default found out")
      ->type_name("LINES");
  command
      .add_option("--separator", arguments.separator,
                  "comma, semicolon, TAB or blanks; default found out")
      ->check(CLI::IsMember(std::vector<std::string>{"comma", "semicolon", "TAB", "blanks"},
                            CLI::ignore_case))
      ->type_name("NAME");
  command.add_option("--decimal", arguments.decimal, "point or comma; default found out")
      ->check(CLI::IsMember(std::vector<std::string>{"point", "comma"}, CLI::ignore_case))
      ->type_name("NAME");
}

Command AddImport(CLI::App& app) {
  auto arguments = std::make_shared<ImportArguments>();
  CLI::App* command = app.add_subcommand(
      "import", "Make a scan file of delimited text: a spreadsheet's CSV, a table");
  command->add_option("file", arguments->file, "The text")->required()->type_name("FILE");
  AddImportColumns(*command, *arguments);
  command->add_option("--cell", arguments->cell, "Cell, 1 to 8")->type_name("N");
  const auto number = [&](const char* name, std::optional<double>& value, const char* text,
                          const char* unit) {
    command->add_option(name, value, text)->check(FiniteNumber)->type_name(unit);
  };
  number("--speed", arguments->speed, "Rotor speed", "RPM");
  number("--wavelength", arguments->wavelength, "Wavelength", "NM");
  number("--temperature", arguments->temperature, "Temperature in deg C", "C");
  command->add_option("--comment", arguments->comment, "First line of the scan file")
      ->type_name("TEXT");
  command->add_option("-o", arguments->output, "The scan file to write, such as 00001.RA1")
      ->required()
      ->type_name("SCAN.RA1");
  command->add_option("--json", arguments->json, "Write what was understood to this file")
      ->type_name("OUT.json");
  command->footer(
      "Separator (comma, semicolon, TAB, blanks) and decimal sign are found out and said; a text\n"
      "that can be read in two ways is refused until an option chooses. What a header line of a\n"
      "scan says (kind, cell, temperature, speed, wavelength) counts where no option does; what\n"
      "neither says gets a default, which standard error names. With --reference the written\n"
      "signal is log10(reference / signal). Rows that cannot be read are counted and named.\n"
      "Exit status: 0 done, 1 ambiguous, or the rows make no scan, 2 bad usage, 3 a file could\n"
      "not be read or written.");
  return [arguments](const CommandStreams& streams) { return RunImport(*arguments, streams); };
}

Command AddCompare(CLI::App& app) {
  auto arguments = std::make_shared<CompareArguments>();
  CLI::App* command =
      app.add_subcommand("compare", "Compare fits of the same points: which model do they favour?");
  command->add_option("files", arguments->files, "Two or more JSON files that analyze wrote")
      ->required()
      ->expected(2, CLI::detail::expected_max_vector_size)
      ->type_name("FIT.json");
  command->add_option("--json", arguments->json, "Write the comparison to this file")
      ->type_name("OUT.json");
  command->footer(
      "Lists model, fitted parameters, sum of squares S, rms, degrees of freedom, AICc with its\n"
      "differences and weights, BIC, runs Z of all residuals and whether the fit is at rest, and\n"
      "for each pair the F test, where one fit is the other with parameters held:\n"
      "    " +
      std::string(kAICcFormula) + ", k = fitted parameters + 1\n    " + kBICFormula + "\n    " +
      kFFormula +
      "\n"
      "Exit status: 0 done, 1 the fits are not of the same points, 2 bad usage, 3 a file\n"
      "could not be read or written, or holds no finished fit.");
  return [arguments](const CommandStreams& streams) { return RunCompare(*arguments, streams); };
}

Command AddSolution(CLI::App& app) {
  auto arguments = std::make_shared<SolutionArguments>();
  CLI::App* command = app.add_subcommand(
      "solution", "Constants that a weight stands on: vbar, density, mass, extinction");
  command
      ->add_option("--sequence", arguments->sequence,
                   "A FASTA file with one protein, or its letters")
      ->type_name("FASTA-FILE-OR-LETTERS");
  command
      ->add_option("--disulphides", arguments->disulphides,
                   "Disulphides of the protein; default none")
      ->type_name("N");
  command
      ->add_option("--buffer", arguments->buffer,
                   "Components with their amounts, such as \"NaCl=0.1 M, Tris=20 mM\" or "
                   "\"20 mM Tris, 5 % v/v glycerol\", or water")
      ->type_name("\"NAME=20 mM, NAME=0.1 M\"");
  command->add_option("--temperature", arguments->temperature, "Temperature in deg C; default 20")
      ->check(FiniteNumber)
      ->type_name("C");
  command->add_flag("--list", arguments->list,
                    "List the components of buffers with their short names and ranges");
  command->add_option("--json", arguments->json, "Write the constants to this file")
      ->type_name("OUT.json");
  command->footer(
      "From the sequence: mass, vbar and extinction at 280 nm; from the buffer: its density; from\n"
      "both: buoyancy and buoyant mass. What the sums do not know stands on standard error. In a\n"
      "job of analyze, sequence and buffer in [constants] stand for vbar and density.\n"
      "Exit status: 0 done, 2 bad usage, such as an unknown letter or component, 3 a file could\n"
      "not be read or written.");
  return [arguments](const CommandStreams& streams) { return RunSolution(*arguments, streams); };
}

ExitStatus RunGuarded(const Command& command, const CommandStreams& streams) {
  try {
    return command(streams);
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
  app.allow_windows_style_options(false);  // "/data/job.toml" is a path there too
  app.set_version_flag("--version", std::string("Quorvane ") + ProgramVersion());
  app.require_subcommand(1);
  app.footer("quorvane-cli COMMAND --help tells more about a command.");
  const std::map<std::string, Command> commands = {
      {"analyze", AddAnalyze(app)}, {"simulate", AddSimulate(app)}, {"match", AddMatch(app)},
      {"scan", AddScan(app)},       {"import", AddImport(app)},     {"archive", AddArchive(app)},
      {"compare", AddCompare(app)}, {"plan", AddPlan(app)},         {"solution", AddSolution(app)}};
  try {
    std::reverse(arguments.begin(), arguments.end());
    app.parse(arguments);
  } catch (const CLI::ParseError& error) {
    const bool asked = error.get_exit_code() == 0;  // --help and --version
    app.exit(error, streams.out, streams.err);
    return asked ? ExitStatus::kDone : ExitStatus::kBadUsage;
  }
  return RunGuarded(commands.at(app.get_subcommands().front()->get_name()), streams);
}

}  // namespace quorvane

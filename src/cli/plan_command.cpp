#include "cli/plan_command.h"

#include <algorithm>
#include <ostream>

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/number_format.h"
#include "cli/terminal_host.h"
#include "cli/text_column.h"
#include "job/json_plan.h"
#include "job/plan_file.h"

namespace quorvane {

namespace {

std::string Shown(const std::optional<double>& value) {
  return value ? FormatParam(*value) : "-";
}

std::string SpeedsText(const std::vector<double>& speeds) {
  std::string text;
  for (const double speed : speeds) text += (text.empty() ? "" : " ") + FormatNumber(speed, "0");
  return text;
}

using Row = std::vector<std::string>;

// Columns as wide as their widest text, numbers flush right.
void PrintTable(const std::vector<Row>& rows, std::ostream& out) {
  std::vector<std::size_t> widths(rows.front().size(), 0);
  for (const Row& row : rows) {
    for (std::size_t k = 0; k < row.size(); ++k) widths[k] = std::max(widths[k], WidthOf(row[k]));
  }
  for (const Row& row : rows) {
    std::string line;
    for (std::size_t k = 0; k < row.size(); ++k) {
      line += (k == 0 ? "" : "  ") + TextColumn(row[k], widths[k], k > 0);
    }
    out << line << '\n';
  }
  out << '\n';
}

void PrintErrors(const PlanResult& result, const std::optional<PlanCheck>& check,
                 std::ostream& out) {
  Row head = {"parameter", "value", "standard error", "relative, %"};
  for (const ExpectedError& error : result.errors) {
    head.push_back("with " + std::string(error.parameter->shared->name));
  }
  if (check) head.insert(head.end(), {"scatter/error", "bias/error"});
  std::vector<Row> rows = {head};
  for (std::size_t k = 0; k < result.errors.size(); ++k) {
    const ExpectedError& error = result.errors[k];
    const std::optional<double> percent = PercentOf(error);
    Row row = {std::string(error.parameter->shared->name), FormatParam(error.value),
               Shown(error.sd), percent ? FormatNumber(*percent, "0.00") : "-"};
    for (const std::optional<double>& value : result.correlations[k]) {
      row.push_back(value ? FormatNumber(*value, "0.000") : "-");
    }
    if (check) {
      const bool has = k < check->parameters.size();
      const CheckedError found = has ? check->parameters[k] : CheckedError{};
      row.push_back(found.ratio ? FormatNumber(*found.ratio, "0.000") : "-");
      row.push_back(found.bias ? FormatNumber(*found.bias, "+0.000;-0.000") : "-");
    }
    rows.push_back(std::move(row));
  }
  PrintTable(rows, out);
}

void PrintScans(const ExperimentPlan& plan, const PlanResult& result, std::ostream& out) {
  std::vector<Row> rows = {
      {"speed", "load", "load B", "wavelength", "lowest", "highest", "points", "sigma, 1/cm^2"}};
  for (const PlannedScan& scan : result.scans) {
    const bool any = scan.points > 0;
    rows.push_back({FormatNumber(scan.speed, "0"), FormatParam(scan.load), Shown(scan.loadB),
                    plan.extCoeff.size() > 1 ? std::to_string(scan.wavelength + 1) : "-",
                    any ? FormatParam(scan.lowest) : "-", any ? FormatParam(scan.highest) : "-",
                    std::to_string(scan.points), FormatNumber(scan.sigma, "0.00")});
  }
  PrintTable(rows, out);
}

void PrintRanking(const PlanResult& result, std::ostream& out) {
  constexpr std::size_t kShown = 10;
  Row head = {"speeds", "score"};
  for (const ExpectedError& error : result.errors) {
    head.push_back("sd " + std::string(error.parameter->shared->name));
  }
  std::vector<Row> rows = {head};
  for (std::size_t k = 0; k < std::min(kShown, result.ranking.size()); ++k) {
    const SpeedChoice& choice = result.ranking[k];
    Row row = {SpeedsText(choice.speeds), Shown(choice.score)};
    for (const std::optional<double>& sd : choice.sd) row.push_back(Shown(sd));
    rows.push_back(std::move(row));
  }
  out << "The best of " << result.choices << " choices of speeds:\n";
  PrintTable(rows, out);
}

void Print(const ExperimentPlan& plan, const PlanResult& result,
           const std::optional<PlanCheck>& check, std::ostream& out) {
  out << plan.model->name << ", " << result.scans.size() << " scans at "
      << SpeedsText(result.speeds) << " rpm\n\n";
  PrintErrors(result, check, out);
  if (check && check->experiments == 0) out << "Not checked: no scan has points for a fit.\n\n";
  if (check && check->experiments > 0) {
    out << "Checked by " << check->experiments << " simulated experiments, of which "
        << check->failed << " failed.\n\n";
  }
  PrintScans(plan, result, out);
  if (Chooses(plan)) PrintRanking(result, out);
  for (const std::string& remark : result.remarks) out << remark << '\n';
}

}  // namespace

ExitStatus RunPlan(const PlanArguments& arguments, const CommandStreams& streams) {
  const ExperimentPlan plan = ReadPlan(PathFromText(arguments.plan));
  StopFlag stop;
  TerminalHost host(streams, true, stop);
  WorkedPlan worked;
  try {
    worked = WorkOut(plan, stop, host);
  } catch (const ArithmeticFault& fault) {
    streams.err << arguments.plan << ": this plan leads beyond all numbers: " << fault.what()
                << '\n';
    return ExitStatus::kNotDone;
  }
  if (stop.Raised()) {
    streams.err << arguments.plan << ": the plan was stopped. Nothing was written.\n";
    return ExitStatus::kNotDone;
  }
  Print(plan, worked.result, worked.check, streams.out);
  if (!arguments.json.empty()) {
    WriteWholeFile(PathFromText(arguments.json),
                   JsonText(PlanJson(plan, worked.result, worked.check)));
  }
  return ExitStatus::kDone;
}

}  // namespace quorvane

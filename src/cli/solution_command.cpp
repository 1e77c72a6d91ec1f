#include "cli/solution_command.h"

#include <algorithm>
#include <ostream>

#include "base/files.h"
#include "base/number_format.h"
#include "cli/text_column.h"
#include "job/json_solution.h"
#include "job/toml_reader.h"
#include "solution/sequence.h"
#include "solution/solution_constants.h"
#include "solution/solution_fault.h"

namespace quorvane {

namespace {

void PrintComponents(std::ostream& out) {
  std::size_t width = 0;
  for (const BufferComponent& component : BufferComponents()) {
    width = std::max(width, component.name.size() + 2);
  }
  for (const BufferComponent& component : BufferComponents()) {
    std::string more;
    for (const std::string& name : component.otherNames) more += (more.empty() ? "" : ", ") + name;
    if (!component.unusable.empty()) more += " (not used, " + component.unusable + ")";
    const std::string range = "up to " + RangeText(component);
    out << TextColumn(component.name, width, false)
        << (more.empty() ? range : TextColumn(range, 18, false) + more) << '\n';
  }
}

SolutionRequest RequestOf(const SolutionArguments& arguments) {
  SolutionRequest request;
  if (arguments.sequence) request.letters = SequenceOf(*arguments.sequence, {}).letters;
  request.disulphides = arguments.disulphides;
  if (arguments.buffer) request.buffer = ReadBuffer(*arguments.buffer);
  request.degC = arguments.temperature;
  return request;
}

void PrintConstants(const SolutionRequest& request, const SolutionConstants& constants,
                    std::ostream& out) {
  const auto line = [&](const char* name, const std::string& value) {
    out << TextColumn(name, 24, false) << value << '\n';
  };
  line("Temperature", FormatNumber(request.degC, "0.0##") + " deg C");
  if (constants.protein) {
    const ProteinConstants& protein = *constants.protein;
    line("Residues", std::to_string(protein.residues));
    line("Disulphides", std::to_string(protein.disulphides));
    line("Mass", FormatNumber(protein.mass, "0.0") + " Da");
    line("vbar", FormatNumber(protein.vbar, "0.0000") + " ml/g");
    line("Extinction at 280 nm", FormatNumber(protein.extinction280, "0") + " 1/(M cm), " +
                                     FormatNumber(protein.a280, "0.000") + " of 1 mg/ml");
  }
  if (constants.density) {
    line("Buffer", BufferText(*request.buffer));
    line("Density", FormatNumber(*constants.density, "0.00000") + " g/ml");
  }
  if (constants.buoyancy) {
    line("Buoyancy 1 - vbar rho", FormatNumber(*constants.buoyancy, "0.0000"));
    line("Buoyant mass", FormatNumber(*constants.buoyantMass, "0.0") + " Da");
  }
}

}  // namespace

ExitStatus RunSolution(const SolutionArguments& arguments, const CommandStreams& streams) {
  const bool computes = arguments.sequence || arguments.buffer;
  if (!computes && !arguments.list) {
    throw JobFault("solution: --sequence, --buffer or --list is wanted");
  }
  if (!arguments.sequence && arguments.disulphides) {
    throw JobFault("--disulphides: it goes with --sequence");
  }
  if (!computes && !arguments.json.empty()) {
    throw JobFault("--json: it goes with --sequence or --buffer");
  }
  if (arguments.list) PrintComponents(streams.out);
  if (!computes) return ExitStatus::kDone;
  try {
    const SolutionRequest request = RequestOf(arguments);
    const SolutionConstants constants = CalcSolution(request);
    if (!arguments.json.empty()) {
      WriteWholeFile(PathFromText(arguments.json), JsonText(SolutionJson(request, constants)));
    }
    PrintConstants(request, constants, streams.out);
    for (const std::string& remark : constants.remarks) streams.err << remark << '\n';
  } catch (const SolutionFault& fault) {
    streams.err << fault.what() << '\n';
    return ExitStatus::kBadUsage;
  }
  return ExitStatus::kDone;
}

}  // namespace quorvane

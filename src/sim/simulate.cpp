#include "sim/simulate.h"

#include "base/arithmetic.h"
#include "base/host.h"
#include "base/text.h"
#include "sim/sim_models.h"

namespace quorvane {

namespace {

SimReference RunGuarded(Simulator& simulator, UniformSource& uniform, Host& host) {
  ReadConstants(simulator.Inputs);
  const SimParameters p = ReadParameters(simulator.Inputs);
  simulator.GridPoints = p.n;
  BuildGrid(p, simulator.Column);
  const std::string summary = ParameterLine(simulator.Inputs);
  simulator.Text.clear();
  SimFileWriter file(simulator.Text, p.RMS, simulator.WrittenPoints);
  file.AddLine(summary);
  file.AddLine(simulator.SimHeader);
  SimRun run = {p, simulator.Column, uniform, file, host};
  const SimModel& model = SimModelOf(simulator.Inputs.model);
  return model.run(run, model);
}

SimOutcome Failure(const char* description, Host& host) {
  host.ShowMessage("",
                   "Error while Simulating Data!  Error was " + std::string(description) +
                       std::string(kLineBreak) +
                       "Please try more reasonable values for the simulation parameters.",
                   MessageIcon::kNone);
  return {.error = description};
}

// The old header gives way to one of the chosen kind, in the text too.
void ReplaceHeader(Simulator& simulator) {
  const std::string header = WithFileKind(simulator.SimHeader, simulator.Inputs);
  const std::size_t place = simulator.Text.find(simulator.SimHeader);
  if (place != std::string::npos) {
    simulator.Text.replace(place, simulator.SimHeader.size(), header);
  }
  simulator.SimHeader = header;
}

}  // namespace

SimOutcome Simulate(Simulator& simulator, UniformSource& uniform, Host& host) {
  simulator.WrittenPoints = 0;
  simulator.SimHeader = MakeSimHeader(simulator.Inputs);
  try {
    return {.ok = true, .reference = RunGuarded(simulator, uniform, host)};
  } catch (const ArithmeticFault& fault) {
    return Failure(fault.what(), host);
  } catch (const SubscriptFault& fault) {
    return Failure(fault.what(), host);
  }
}

std::optional<std::string_view> EnterText(Simulator& simulator, SimBox box, std::string_view text) {
  const std::optional<std::string_view> refusal = StoreEntry(simulator.Inputs, box, text);
  const bool absorbance = simulator.Inputs.saveAs == SimFileKind::kRA8;
  if (!refusal && box == SimBox::kWaveL && absorbance) ReplaceHeader(simulator);
  return refusal;
}

void ChooseFileKind(Simulator& simulator, SimFileKind kind) {
  simulator.Inputs.saveAs = kind;
  ReplaceHeader(simulator);
}

}  // namespace quorvane

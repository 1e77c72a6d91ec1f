#include "sim/sim_file.h"

#include "base/arithmetic.h"
#include "base/number_format.h"
#include "base/text.h"
#include "scan/scan_writer.h"

namespace quorvane {

namespace {

constexpr double kLaserWavelength = 675.0;  // nm, of the interference optics

// Joins a name and the text of a box to the line.
class Items {
 public:
  Items(const SimInputs& inputs, std::string_view separator)
      : inputs_(inputs),
        separator_(separator),
        line_("QV:" + std::string(SimModelOf(inputs.model).caption) + " : ") {}

  void Add(std::string_view name, std::string_view value) {
    if (count_++ > 0) line_ += separator_;
    line_.append(name).append("=").append(value);
  }
  void AddBox(std::string_view name, SimBox box) { Add(name, inputs_.Text(box)); }
  void AddLnK(std::string_view name, std::size_t k) {
    Add(name, FormatParam(CheckedLog(inputs_.K[k])));
  }
  void AddComponentA() {
    AddBox("MW(A)", SimBox::kMW);
    AddBox("C(A)", SimBox::kLoadC);
    AddBox("v(A)", SimBox::kVbar);
    AddBox("E(A)", SimBox::kExtCoeff);
  }
  const std::string& Line() const { return line_; }

 private:
  const SimInputs& inputs_;
  std::string_view separator_;
  std::string line_;
  int count_ = 0;
};

std::string OneComponentLine(const SimInputs& inputs) {
  Items items(inputs, ", ");
  items.AddComponentA();
  items.AddBox("dens", SimBox::kDensity);
  const auto uses = [&](SimBox box) { return UsesBox(inputs.model, box); };
  if (uses(SimBox::kNonId)) items.AddBox("B*M", SimBox::kNonId);
  if (uses(SimBox::kN1mer)) items.AddBox("N", SimBox::kN1mer);
  if (uses(SimBox::kLnK1)) items.AddLnK(uses(SimBox::kN1mer) ? "LnK1" : "LnKiso", 0);
  if (uses(SimBox::kN2mer)) items.AddBox("M", SimBox::kN2mer);
  if (uses(SimBox::kLnK2)) items.AddLnK("LnK2", 1);
  if (uses(SimBox::kAlpha)) items.AddBox("Alpha", SimBox::kAlpha);
  return items.Line();
}

std::string TwoComponentLine(const SimInputs& inputs) {
  Items items(inputs, ",");
  items.AddComponentA();
  items.AddBox("MW(B)", SimBox::kMWB);
  items.AddBox("C(B)", SimBox::kLoadCB);
  items.AddBox("v(B)", SimBox::kVbarB);
  items.AddBox("E(B)", SimBox::kExtCoeffB);
  items.AddBox("dens", SimBox::kDensity);
  if (UsesBox(inputs.model, SimBox::kN1mer)) {
    items.AddBox("Nmer", SimBox::kN1mer);
    items.AddLnK("LnKAn", 0);
    items.AddLnK("LnKAnB", 1);
    return items.Line();
  }
  items.AddLnK("LnKAB", 0);
  if (UsesBox(inputs.model, SimBox::kLnK2)) items.AddLnK("LnKAB2", 1);
  if (UsesBox(inputs.model, SimBox::kLnK3)) items.AddLnK("LnKAB3", 2);
  return items.Line();
}

}  // namespace

std::string WithFileKind(std::string header, const SimInputs& inputs) {
  const bool absorbance = inputs.saveAs == SimFileKind::kRA8;
  const double wavelength = absorbance ? NumberIn(inputs, SimBox::kWaveL) : kLaserWavelength;
  PutKind(header, absorbance ? 'R' : 'P');
  PutWavelength(header, wavelength);
  return header;
}

std::string MakeSimHeader(const SimInputs& inputs) {
  std::string header = WithFileKind(std::string(kFirstSimHeader), inputs);
  PutCell(header, inputs.cell);
  PutTemperature(header, NumberIn(inputs, SimBox::kTemp));
  PutSpeed(header, NumberIn(inputs, SimBox::kSpeed));
  return header;
}

std::string ParameterLine(const SimInputs& inputs) {
  return SimModelOf(inputs.model).secondComponent ? TwoComponentLine(inputs)
                                                  : OneComponentLine(inputs);
}

SimFileWriter::SimFileWriter(std::string& text, double rms, int& points)
    : text_(text), rms_(FormatNumber(rms, kErrorPattern)), points_(points) {}

void SimFileWriter::AddLine(std::string_view line) {
  text_.append(line).append(kLineBreak);
}

void SimFileWriter::AddPoint(double radius, double signal) {
  AddLine("   " + FormatNumber(radius, "0.0000 ") + FormatNumber(signal, kSignalPattern) + rms_);
  ++points_;
}

}  // namespace quorvane

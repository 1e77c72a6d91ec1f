#include "fit/species_curves.h"

#include <array>
#include <cctype>
#include <cmath>

#include "base/number_format.h"
#include "fit/model_terms.h"
#include "fit/models.h"

namespace quorvane {

namespace {

constexpr int kNamedChains = 3;
constexpr double kLongest = 1e6;  // what can be called an n-mer

bool IsWhole(double count) {
  constexpr double kOffWhole = 1e-9;
  return std::fabs(count - std::round(count)) < kOffWhole;
}

std::string CountText(double count) {
  return IsWhole(count) ? std::to_string(std::lround(count)) : FormatNumber(count, "0.##");
}

std::string OligomerName(double count) {
  constexpr std::array kNames = {"Monomer", "Dimer", "Trimer", "Tetramer"};
  const auto whole = static_cast<std::size_t>(std::lround(std::fabs(count)));
  if (IsWhole(count) && whole >= 1 && whole <= kNames.size()) return kNames[whole - 1];
  return CountText(count) + "-mer";
}

// "A", "B₂", nothing for none.
std::string CountedLetter(const char* letter, double count) {
  if (count == 0.0) return {};
  if (count == 1.0) return letter;
  if (!IsWhole(count) || count < 0.0 || count > 9.0) {
    return std::string(letter) + "(" + CountText(count) + ")";
  }
  constexpr char kSubscriptZero = '\x80';  // the last byte of U+2080
  const auto last = static_cast<char>(kSubscriptZero + static_cast<char>(std::lround(count)));
  return std::string(letter) + "\xE2\x82" + last;
}

// Of one component: its length is its rate over that of the monomer. In a model that is no table of
// species, what has the rate of another one is its twin that does not associate.
std::string OligomerName(const Model& model, const SetTerms& terms, std::size_t k) {
  const double rate = terms.species[k].rate;
  const double count = rate / terms.species[0].rate;
  if (!(std::fabs(count) < kLongest)) return "Species " + std::to_string(k + 1);
  std::string name = OligomerName(count);
  for (std::size_t m = 0; m < k && model.species.empty(); ++m) {
    if (terms.species[m].rate != rate) continue;
    name.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(name.front())));
    return "Incompetent " + name;
  }
  return name;
}

std::string NameOf(const FitState& fit, const SetTerms& terms, int d, std::size_t k) {
  const Model& model = *fit.FitModel;
  if (!model.secondComponent) return OligomerName(model, terms, k);
  const ReferenceState state(fit, model, fit.FitA, d);
  const Species& species = model.species[k];
  return CountedLetter("A", state.CountA(species)) + CountedLetter("B", state.CountB(species));
}

double Exponential(const SpeciesTerm& term, double x) {
  return std::exp(term.rate * x + term.shift);
}

// A chain of k holds the signal k E c1 (K c1)^(k-1), c1 being the monomer.
std::vector<SpeciesCurve> ChainCurves(const SetTerms& terms, const SetPoints& points) {
  std::vector<SpeciesCurve> curves;
  for (int k = 1; k <= kNamedChains; ++k) curves.push_back({OligomerName(k), {}});
  curves.push_back({"Longer chains", {}});
  for (std::size_t j = 0; j < points.n; ++j) {
    const double monomer = terms.species[0].amplitude * Exponential(terms.species[0], points.x[j]);
    const double step = terms.association * monomer;
    const double total = terms.extinction * monomer / ((1.0 - step) * (1.0 - step));
    double named = 0.0;
    double chain = terms.extinction * monomer;
    for (int k = 1; k <= kNamedChains; ++k, chain *= step) {
      curves[static_cast<std::size_t>(k - 1)].signal.push_back(k * chain);
      named += k * chain;
    }
    curves.back().signal.push_back(total - named);
  }
  return curves;
}

}  // namespace

std::vector<SpeciesCurve> SpeciesCurves(const FitState& fit, int d) {
  if (fit.FitModel->terms == nullptr) return {};
  SetTerms terms;
  fit.FitModel->terms(fit, *fit.FitModel, fit.FitA, d, terms);
  const SetPoints points = PointsOf(fit, d);
  if (terms.form == SignalForm::kIsodesmic) return ChainCurves(terms, points);
  std::vector<SpeciesCurve> curves;
  if (terms.count < 2) return curves;
  for (std::size_t k = 0; k < static_cast<std::size_t>(terms.count); ++k) {
    const SpeciesTerm& term = terms.species[k];
    SpeciesCurve curve{NameOf(fit, terms, d, k), {}};
    for (std::size_t j = 0; j < points.n; ++j) {
      curve.signal.push_back(term.amplitude * Exponential(term, points.x[j]));
    }
    curves.push_back(std::move(curve));
  }
  return curves;
}

}  // namespace quorvane

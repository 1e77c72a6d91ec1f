#include "stats/nesting.h"

#include <cmath>
#include <cstdint>
#include <optional>

#include "base/number_format.h"
#include "base/text.h"
#include "fit/models.h"

namespace quorvane {

namespace {

// Why not; nothing where all is well.
using Objection = std::optional<std::string>;

std::string Equation(const std::string& name, double value) {
  constexpr std::size_t kShort = 8;
  const std::string exact = ShortestText(value);
  return name + " = " + (exact.size() <= kShort ? exact : FormatParam(value));
}

// One comparison: gathers the restrictions until something objects.
class Comparison {
 public:
  Comparison(const FitSummary& restricted, const FitSummary& full)
      : restricted_(restricted),
        full_(full),
        simpler_(restricted.model == full.model ? nullptr
                                                : FindSimpler(*full.model, *restricted.model)) {}

  Nesting Result() {
    Nesting nesting;
    Objection objection = AgainstModels();
    nesting.limitOnly = simpler_ != nullptr && simpler_->LimitOnly();
    if (!objection) objection = AgainstConditions();
    if (!objection) objection = AgainstBaselines();
    if (!objection) objection = AgainstConcentrations();
    if (!objection) objection = AgainstShared();
    nesting.nested = !objection;
    nesting.reason = objection.value_or("");
    if (nesting.nested) nesting.restrictions = std::move(restrictions_);
    return nesting;
  }

 private:
  Objection AgainstModels() const {
    if (restricted_.model == full_.model) return {};
    if (simpler_ == nullptr) return "the models differ";
    if (simpler_->LimitOnly()) return "one model is the limit of the other only";
    return {};
  }

  Objection AgainstConditions() const {
    const bool oneComponent = !full_.model->secondComponent;
    if (oneComponent && restricted_.links != full_.links) {
      return "links of a model with one component move the reference radius";
    }
    if (!restricted_.conditions || !full_.conditions) return {};
    const FitConditions& a = *restricted_.conditions;
    const FitConditions& b = *full_.conditions;
    if (a.kelvin != b.kelvin) return "the temperatures differ";
    const bool weighs = full_.Shared(shared::kVirialC) != nullptr;
    if (weighs && (a.vbar != b.vbar || a.density != b.density)) return "vbar or density differ";
    const bool columns = restricted_.model->cellEnds && full_.model->cellEnds;
    for (std::size_t d = 0; d < b.sets.size(); ++d) {
      const SetConditions& one = a.sets[d];
      const SetConditions& other = b.sets[d];
      if (one.speed != other.speed) return "the speeds differ";
      if (one.refRadius != other.refRadius) return "the reference radii differ";
      if (one.extCoeff != other.extCoeff || one.extCoeffB != other.extCoeffB) {
        return "the extinction coefficients differ";
      }
      if (columns && (one.meniscus != other.meniscus || one.base != other.base)) {
        return "meniscus or base differ";
      }
    }
    return {};
  }

  // The parameter at `at` (from 0) among those of the datasets, alike in both fits.
  Objection AgainstHeld(std::size_t at) {
    const SummaryParameter& one = restricted_.parameters[at];
    return AgainstHeld(full_.parameters[at],
                       one.fitted ? std::optional<double>() : std::optional<double>(one.value));
  }

  // `held`: at what value the restricted fit has it, absent where it is fitted there.
  Objection AgainstHeld(const SummaryParameter& full, std::optional<double> held) {
    if (full.fitted) {
      if (held) restrictions_.push_back(Equation(full.name, *held));
      return {};
    }
    if (!held) return full.name + " is fitted in the one and held in the other";
    if (*held != full.value) return full.name + " is held at different values";
    return {};
  }

  Objection AgainstBaselines() {
    for (int d = 0; d < full_.Sets(); ++d) {
      if (Objection objection = AgainstHeld(static_cast<std::size_t>(d))) return objection;
    }
    return {};
  }

  Objection AgainstConcentrations() {
    const int sets = full_.Sets();
    const bool two = full_.model->secondComponent;
    for (int d = 0; d < sets; ++d) {
      const int owner = two ? OwnerIn(full_, d) : d;
      const int coarser = two ? OwnerIn(restricted_, d) : d;
      if (two && coarser != OwnerIn(restricted_, owner)) {
        return "the fit with more parameters links datasets that the other does not";
      }
      if (owner != d) continue;  // its owner speaks for it
      for (int component = 1; component <= (two ? 2 : 1); ++component) {
        const std::size_t at = static_cast<std::size_t>(component * sets + d);
        Objection objection = coarser == d ? AgainstHeld(at) : AgainstLink(at, coarser);
        if (objection) return objection;
      }
    }
    return {};
  }

  static int OwnerIn(const FitSummary& fit, int d) {
    return fit.links[static_cast<std::size_t>(d)];
  }

  // A dataset that the restricted fit alone links to the one at position `target`, from 0.
  Objection AgainstLink(std::size_t at, int target) {
    const SummaryParameter& full = full_.parameters[at];
    if (!full.fitted) return full.name + " is linked in the one and held in the other";
    restrictions_.push_back(full.name + " linked to " + std::to_string(target + 1));
    return {};
  }

  Objection AgainstShared() {
    if (full_.constrainedRatios && !restricted_.constrainedRatios) {
      return "the K ratios are constrained in the fit with more parameters";
    }
    const bool freed = restricted_.constrainedRatios && !full_.constrainedRatios;
    int place = 0;
    for (const ModelParameter& parameter : full_.model->parameters) {
      const SummaryParameter& full = full_.Shared(place++);
      const SummaryParameter* one = restricted_.Shared(*parameter.shared);
      if (freed && MayBeRatio(*parameter.shared)) {
        if (!full.fitted)
          return full.name + " is a constrained ratio in the one and held in the other";
        restrictions_.push_back("K" + std::to_string(parameter.shared->place) +
                                "/K1 = " + FormatParam(one->value));
        continue;
      }
      std::optional<double> held;
      if (one == nullptr) held = simpler_->value;
      if (one != nullptr && !one->fitted) held = one->value;
      if (Objection objection = AgainstHeld(full, held)) return objection;
    }
    return {};
  }

  const FitSummary& restricted_;
  const FitSummary& full_;
  const SimplerModel* simpler_;
  std::vector<std::string> restrictions_;
};

}  // namespace

Nesting NestingOf(const FitSummary& restricted, const FitSummary& full) {
  return Comparison(restricted, full).Result();
}

}  // namespace quorvane

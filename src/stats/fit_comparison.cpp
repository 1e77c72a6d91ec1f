#include "stats/fit_comparison.h"

#include <algorithm>
#include <cmath>

#include "base/number_format.h"
#include "fit/models.h"
#include "stats/exact_quantiles.h"
#include "stats/fit_quality.h"
#include "stats/nesting.h"

namespace quorvane {

namespace {

std::string Listed(const std::vector<std::string>& items) {
  constexpr std::size_t kMost = 4;
  std::string text;
  for (std::size_t k = 0; k < std::min(items.size(), kMost); ++k) {
    text += (k == 0 ? "" : ", ") + items[k];
  }
  if (items.size() > kMost) text += " and " + std::to_string(items.size() - kMost) + " more";
  return text;
}

std::optional<FTest> TestOf(const FitSummary& restricted, const FitSummary& full) {
  FTest test;
  test.numerator = full.Fitted() - restricted.Fitted();
  test.denominator = full.Freedom();
  if (test.numerator < 1 || test.denominator < 1) return std::nullopt;
  if (!(full.sum > 0.0) || restricted.sum < full.sum) return std::nullopt;
  test.f = ((restricted.sum - full.sum) / test.numerator) / (full.sum / test.denominator);
  if (!std::isfinite(test.f)) return std::nullopt;
  test.probability = FUpperTail(test.numerator, test.denominator, test.f);
  return test;
}

// "": all of them are known to be at rest.
std::string RestWarning(std::initializer_list<const NamedFit*> fits) {
  std::string text;
  for (const NamedFit* fit : fits) {
    const std::optional<bool> rest = fit->summary->atRest;
    if (rest.value_or(false)) continue;
    text += " " + fit->name +
            (rest ? " is not at rest, so its sum of squares can still fall: bring it to rest and "
                    "compare again."
                  : ": it is not known whether this fit is at rest.");
  }
  return text;
}

// Whether the residuals of a fit speak against it too.
bool OutOfRandomRuns(const FitSummary& fit) {
  return fit.runsZ && std::fabs(*fit.runsZ) > kRunsLimit;
}

std::string Systematic(const FitSummary& fit) {
  if (!OutOfRandomRuns(fit)) return ", which only its residuals can support";
  return "; its residuals speak against it (runs Z " + FormatNumber(*fit.runsZ, "0.00") + ")";
}

std::string SentenceOfTest(const NamedFit& restricted, const NamedFit& full, const FitPair& pair) {
  const FTest& test = *pair.test;
  const std::string held = Listed(pair.restrictions);
  const std::string odds = "F " + FormatParam(test.f) + ", probability " +
                           ShownProbability(test.probability) + " if " + restricted.name + " (" +
                           held + ") were true";
  if (test.probability < kTestLevel) {
    return full.name + " describes the data better than noise explains: " + odds +
           ". What follows: " + held + " does not hold. What does not: that " + full.name +
           " is the true model" + Systematic(*full.summary) + ".";
  }
  return full.name + " is not better than noise explains: " + odds +
         ". What follows: these data do not call for more than " + restricted.name +
         ". What does not: that " + held + " is true.";
}

std::string SentenceOfLowerSum(const NamedFit& restricted, const NamedFit& full) {
  const std::string where = full.summary->atRest.value_or(false)
                                ? " has come to rest in another minimum"
                                : " has not come to its minimum";
  return restricted.name + " has the lower sum of squares, though " + full.name +
         " can follow every curve that it can: " + full.name + where +
         ". There is no F test; fit " + full.name + " again from the values of " + restricted.name +
         ".";
}

std::string SentenceOfRestricted(const NamedFit& restricted, const NamedFit& full,
                                 const FitPair& pair) {
  if (pair.test) {
    return SentenceOfTest(restricted, full, pair) + RestWarning({&restricted, &full});
  }
  if (restricted.summary->sum < full.summary->sum) return SentenceOfLowerSum(restricted, full);
  return "There is no F test of " + restricted.name + " in " + full.name +
         ": the full fit leaves no residuals or no degrees of freedom.";
}

std::string SentenceOfLimit(const NamedFit& restricted, const NamedFit& full) {
  return std::string(restricted.summary->model->name) + " is the limit of " +
         std::string(full.summary->model->name) +
         " for K to 0, which no value of ln K reaches: there is no F test of " + restricted.name +
         " in " + full.name + ". AICc and BIC compare the two.";
}

std::string SentenceOfAlike(const NamedFit& one, const NamedFit& other) {
  return one.name + " and " + other.name +
         " fit the same parameters of the same model: they differ only in where they ended." +
         RestWarning({&one, &other});
}

std::string SentenceOfUnrelated(const NamedFit& one, const NamedFit& other,
                                const std::string& reason) {
  return "There is no F test of " + one.name + " in " + other.name +
         ": neither is the other with parameters held (" + reason +
         "). AICc and BIC compare the two.";
}

// The kinship of the fits that `pair` names, which may change places.
Nesting NestingOf(std::span<const NamedFit> fits, FitPair& pair) {
  const FitSummary& restricted = *fits[pair.restricted].summary;
  const FitSummary& full = *fits[pair.full].summary;
  Nesting nesting = NestingOf(restricted, full);
  if (nesting.nested || nesting.limitOnly) return nesting;
  Nesting other = NestingOf(full, restricted);
  if (!other.nested && !other.limitOnly) return nesting;
  std::swap(pair.restricted, pair.full);
  return other;
}

// `a` and `b` are places of `fits`.
FitPair Pair(std::span<const NamedFit> fits, std::size_t a, std::size_t b) {
  FitPair pair;
  const bool rising = fits[a].summary->Fitted() <= fits[b].summary->Fitted();
  pair.restricted = rising ? a : b;
  pair.full = rising ? b : a;
  const Nesting nesting = NestingOf(fits, pair);
  const NamedFit& restricted = fits[pair.restricted];
  const NamedFit& full = fits[pair.full];
  if (nesting.nested && restricted.summary->Fitted() == full.summary->Fitted()) {
    pair.kinship = Kinship::kAlike;
    pair.sentence = SentenceOfAlike(restricted, full);
  } else if (nesting.nested) {
    pair.kinship = Kinship::kRestricted;
    pair.restrictions = nesting.restrictions;
    pair.test = TestOf(*restricted.summary, *full.summary);
    pair.sentence = SentenceOfRestricted(restricted, full, pair);
  } else if (nesting.limitOnly) {
    pair.kinship = Kinship::kLimit;
    pair.sentence = SentenceOfLimit(restricted, full);
  } else {
    pair.sentence = SentenceOfUnrelated(restricted, full, nesting.reason);
  }
  return pair;
}

std::vector<AkaikeRank> RanksOf(std::span<const NamedFit> fits) {
  std::optional<double> lowest;
  for (const NamedFit& fit : fits) {
    const std::optional<double> aicc = fit.summary->AICc();
    if (aicc && (!lowest || *aicc < *lowest)) lowest = aicc;
  }
  std::vector<AkaikeRank> ranks;
  double sum = 0.0;
  for (const NamedFit& fit : fits) {
    AkaikeRank rank;
    if (const std::optional<double> aicc = fit.summary->AICc()) {
      rank.difference = *aicc - *lowest;
      rank.weight = std::exp(-*rank.difference / 2.0);
      sum += *rank.weight;
    }
    ranks.push_back(rank);
  }
  for (AkaikeRank& rank : ranks) {
    if (rank.weight) *rank.weight /= sum;
  }
  return ranks;
}

// On the fit that AICc favours, and whether its residuals bear the criteria out.
std::vector<std::string> Remarks(std::span<const NamedFit> fits,
                                 const std::vector<AkaikeRank>& ranks) {
  std::size_t best = fits.size();
  for (std::size_t k = 0; k < fits.size(); ++k) {
    if (ranks[k].difference == 0.0 && best == fits.size()) best = k;
  }
  if (best == fits.size()) {
    return {"There is no AICc: the fits leave no residuals or too few degrees of freedom."};
  }
  std::vector<std::string> close;
  for (std::size_t k = 0; k < fits.size(); ++k) {
    if (k != best && ranks[k].difference && *ranks[k].difference < 2.0) {
      close.push_back(fits[k].name);
    }
  }
  const std::string& name = fits[best].name;
  std::vector<std::string> remarks = {
      name + " has the lowest AICc, with weight " + FormatNumber(*ranks[best].weight, "0.000") +
      " among these fits." +
      (close.empty() ? "" : " Hardly worse, by less than 2: " + Listed(close) + ".") +
      " The weights rank these fits alone: the best of them need not be a good one."};
  if (OutOfRandomRuns(*fits[best].summary)) {
    remarks.push_back("Runs Z of " + name + " is " +
                      FormatNumber(*fits[best].summary->runsZ, "0.00") +
                      ": its residuals are no independent noise, so F tests, AICc and BIC make the "
                      "differences look more certain than they are.");
  }
  return remarks;
}

bool SameMassTargets(const FitSummary& a, const FitSummary& b) {
  if (!a.conditions || !b.conditions) return true;
  if (a.conditions->tolerance != b.conditions->tolerance) return false;
  for (std::size_t d = 0; d < a.conditions->sets.size(); ++d) {
    const SetConditions& one = a.conditions->sets[d];
    const SetConditions& other = b.conditions->sets[d];
    if (one.loadA != other.loadA || one.loadB != other.loadB) return false;
  }
  return true;
}

// Why the points of two fits are not the same; empty if they are.
std::string DifferenceOfPoints(const FitSummary& a, const FitSummary& b) {
  if (a.massConservation != b.massConservation) {
    return "one of them has the points of mass conservation, the other has not";
  }
  if (a.points != b.points) {
    return std::to_string(a.points) + " points and " + std::to_string(b.points);
  }
  if (a.digest != b.digest || a.Sets() != b.Sets()) {
    return "as many points, but other radii or signals, or in another order";
  }
  if (a.massConservation && !SameMassTargets(a, b)) {
    return "mass conservation with other loads or another tolerance";
  }
  return "";
}

}  // namespace

std::string ShownProbability(double p) {
  return p < 1e-99 ? "below 1E-99" : FormatNumber(p, p < 0.001 ? "0.0E+00" : "0.0000");
}

std::string RefusalOfComparison(std::span<const NamedFit> fits) {
  for (std::size_t k = 1; k < fits.size(); ++k) {
    const std::string why = DifferenceOfPoints(*fits[0].summary, *fits[k].summary);
    if (why.empty()) continue;
    return fits[0].name + " and " + fits[k].name + " are fits of different points (" + why +
           "): their sums of squares say nothing about each other.";
  }
  return "";
}

FitComparison CompareFits(std::span<const NamedFit> fits) {
  FitComparison comparison;
  comparison.ranks = RanksOf(fits);
  for (std::size_t a = 0; a < fits.size(); ++a) {
    for (std::size_t b = a + 1; b < fits.size(); ++b) {
      comparison.pairs.push_back(Pair(fits, a, b));
    }
  }
  comparison.remarks = Remarks(fits, comparison.ranks);
  return comparison;
}

}  // namespace quorvane

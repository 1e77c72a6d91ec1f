#include "job/json_comparison.h"

#include "fit/models.h"

namespace quorvane {

namespace {

Json FitsJson(const std::vector<NamedFit>& fits, const FitComparison& comparison) {
  Json list = Json::array();
  for (std::size_t k = 0; k < fits.size(); ++k) {
    const FitSummary& fit = *fits[k].summary;
    Json entry = {{"file", fits[k].name},
                  {"model", fit.model->name},
                  {"points", fit.points},
                  {"fitted_parameters", fit.Fitted()},
                  {"chi_squared", fit.sum},
                  {"rms", OrNull(fit.Rms())},
                  {"degrees_of_freedom", fit.Freedom()},
                  {"aicc", OrNull(fit.AICc())},
                  {"bic", OrNull(fit.BIC())},
                  {"aicc_difference", OrNull(comparison.ranks[k].difference)},
                  {"aicc_weight", OrNull(comparison.ranks[k].weight)},
                  {"runs_z", OrNull(fit.runsZ)},
                  {"at_rest", nullptr}};
    if (fit.atRest) entry["at_rest"] = *fit.atRest;
    list.push_back(std::move(entry));
  }
  return list;
}

}  // namespace

Json ComparisonJson(const std::vector<NamedFit>& fits, const FitComparison& comparison) {
  Json tests = Json::array();
  Json remarks = Json::array();
  for (const FitPair& pair : comparison.pairs) {
    remarks.push_back(pair.sentence);
    if (!pair.test) continue;
    tests.push_back({{"restricted", pair.restricted},
                     {"full", pair.full},
                     {"f", pair.test->f},
                     {"numerator", pair.test->numerator},
                     {"denominator", pair.test->denominator},
                     {"probability", pair.test->probability},
                     {"held", pair.restrictions}});
  }
  for (const std::string& remark : comparison.remarks) remarks.push_back(remark);
  return {{"fits", FitsJson(fits, comparison)}, {"tests", tests}, {"remarks", remarks}};
}

}  // namespace quorvane

#include "core/kept_fit.h"

#include <map>
#include <utility>

#include "core/finished_fit.h"

namespace quorvane {

std::vector<ScanName> ScanNames(const std::vector<Dataset>& datasets) {
  std::map<std::pair<std::string, std::string>, int> met;
  std::vector<ScanName> names;
  for (const Dataset& dataset : datasets) {
    ScanName name{PathOf(dataset), NameOf(dataset), 0};
    name.copy = met[{name.path, name.name}]++;
    names.push_back(std::move(name));
  }
  return names;
}

KeptFit KeptOf(const FinishedFit& fit, std::string digest) {
  KeptFit kept{Summarise(fit.state, fit.rest, std::move(digest)),
               {},
               fit.setup.DegC,
               fit.setup.CalcLoadingConcs};
  const std::vector<ScanName> names = ScanNames(fit.datasets);
  for (const std::int16_t place : fit.state.FitSetList) {
    kept.scans.push_back(names[static_cast<std::size_t>(place)]);
  }
  return kept;
}

}  // namespace quorvane

#include "stats/error_tables.h"

#include <cmath>
#include <initializer_list>

#include "base/csv.h"

namespace quorvane {

namespace {

std::string Line(std::initializer_list<std::string> fields) {
  std::string line;
  for (const std::string& field : fields) line += (line.empty() ? "" : ",") + field;
  return line + "\r\n";
}

std::string Field(const SideLimit& side) {
  return side.HasLimit() ? CsvNumber(side.limit) : std::string();
}

std::string Field(const std::optional<double>& limit) {
  return limit ? CsvNumber(*limit) : std::string();
}

void AddParameter(const ParameterErrors& errors, std::string& table) {
  const std::string name = CsvText(errors.name);
  const std::string value = CsvNumber(errors.value);
  const std::string error = CsvNumber(errors.error);
  if (errors.profile) {
    for (const ProfileLimits& one : errors.profile->limits) {
      table += Line({name, "", value, error, "profile", CsvNumber(one.level), Field(one.lower),
                     SideEndText(one.lower.end), Field(one.upper), SideEndText(one.upper.end)});
    }
  }
  const auto add = [&](const std::optional<ParameterReplicates>& replicates, const char* method) {
    if (!replicates) return;
    for (const PercentileLimits& one : replicates->limits) {
      table += Line({name, "", value, error, method, CsvNumber(one.level), CsvNumber(one.lower), "",
                     CsvNumber(one.upper), ""});
    }
  };
  add(errors.monteCarlo, "monte carlo");
  add(errors.bootstrap, "bootstrap");
}

void AddReplicates(const ErrorAnalysis& analysis, const char* method,
                   std::optional<ParameterReplicates> ParameterErrors::*of, std::string& table) {
  if (analysis.parameters.empty() || !(analysis.parameters.front().*of)) return;
  const std::size_t count = (analysis.parameters.front().*of)->values.size();
  for (std::size_t k = 0; k < count; ++k) {
    table += std::string(method) + "," + std::to_string(k + 1);
    for (const ParameterErrors& errors : analysis.parameters) {
      table += "," + CsvNumber((errors.*of)->values[k]);
    }
    table += "\r\n";
  }
}

}  // namespace

const char* SideEndText(SideEnd end) {
  switch (end) {
    case SideEnd::kFound:
      return "found";
    case SideEnd::kOpen:
      return "open";
    case SideEnd::kBound:
      return "bound";
    case SideEnd::kStopped:
      break;
  }
  return "stopped";
}

std::string ErrorLimitsTable(const ErrorAnalysis& analysis) {
  std::string table =
      "name,unit,value,standard error,method,level,lower,lower end,upper,upper end\r\n";
  for (const ParameterErrors& errors : analysis.parameters) AddParameter(errors, table);
  for (const DerivedQuantity& quantity : analysis.derived) {
    for (const DerivedLimits& one : quantity.limits) {
      table += Line({CsvText(quantity.name), CsvText(quantity.unit), CsvNumber(quantity.value), "",
                     "profile", CsvNumber(one.level), Field(one.lower), "", Field(one.upper), ""});
    }
  }
  return table;
}

std::string ErrorCurvesTable(const ErrorAnalysis& analysis) {
  std::string table = "name,value,sum of squares\r\n";
  for (const ParameterErrors& errors : analysis.parameters) {
    if (!errors.profile) continue;
    for (const ProfilePoint& point : errors.profile->curve) {
      table += Line({CsvText(errors.name), CsvNumber(point.value), CsvNumber(point.sum)});
    }
  }
  return table;
}

std::string ErrorReplicatesTable(const ErrorAnalysis& analysis) {
  std::string table = "method,replicate";
  for (const ParameterErrors& errors : analysis.parameters) table += "," + CsvText(errors.name);
  table += "\r\n";
  AddReplicates(analysis, "monte carlo", &ParameterErrors::monteCarlo, table);
  AddReplicates(analysis, "bootstrap", &ParameterErrors::bootstrap, table);
  return table;
}

std::string ErrorSurfaceTable(const ErrorSurface& surface) {
  std::string table = Line({CsvText(surface.xName), CsvText(surface.yName), "sum of squares"});
  for (std::size_t iy = 0; iy < surface.ys.size(); ++iy) {
    for (std::size_t ix = 0; ix < surface.xs.size(); ++ix) {
      const double sum = surface.sums[iy][ix];
      table += Line({CsvNumber(surface.xs[ix]), CsvNumber(surface.ys[iy]),
                     std::isfinite(sum) ? CsvNumber(sum) : std::string()});
    }
  }
  return table;
}

}  // namespace quorvane

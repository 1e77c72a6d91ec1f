#include "python/search_bytes.h"

#include "fit/models.h"

namespace quorvane {

namespace {

// One list of the members of each record, `Members`, serves both ways: a way takes a value and
// writes it, or reads it in its place.
class Writing {
 public:
  explicit Writing(ByteWriter& out) : out_(out) {}
  void Number(double& value) { out_.Double(value); }
  void Whole(std::int32_t& value) { out_.Int32(value); }
  std::size_t Count(std::size_t size) {
    out_.Unsigned32(static_cast<std::uint32_t>(size));
    return size;
  }
  void Letters(std::string& text) { out_.Raw(text); }

 private:
  ByteWriter& out_;
};

class Reading {
 public:
  explicit Reading(ByteReader& in) : in_(in) {}
  void Number(double& value) { value = in_.Double("number"); }
  void Whole(std::int32_t& value) { value = in_.Int32("number"); }
  std::size_t Count(std::size_t) { return in_.Count(1, "length"); }
  void Letters(std::string& text) { text = TextOf(in_.Raw(text.size(), "text")); }

 private:
  ByteReader& in_;
};

template <class Way>
void Put(Way& way, double& value) {
  way.Number(value);
}
template <class Way>
void Put(Way& way, int& value) {
  way.Whole(value);
}
template <class Way>
void Put(Way& way, bool& value) {
  std::int32_t number = value ? 1 : 0;
  way.Whole(number);
  value = number != 0;
}
template <class Way>
void Put(Way& way, std::string& text) {
  text.resize(way.Count(text.size()));
  way.Letters(text);
}
template <class Way>
void Put(Way& way, SideEnd& end) {
  auto number = static_cast<std::int32_t>(end);
  way.Whole(number);
  end = number >= 0 && number <= 3 ? static_cast<SideEnd>(number) : SideEnd::kStopped;
}
template <class Way>
void Put(Way& way, Array1<double>& values) {
  values.Resize(static_cast<int>(way.Count(static_cast<std::size_t>(values.size()))));
  for (int k = 1; k <= values.size(); ++k) way.Number(values(k));
}

template <class Way, class Part>
void Put(Way& way, std::optional<Part>& part);
template <class Way, class Part>
void Put(Way& way, std::vector<Part>& parts);

template <class Way, class... Parts>
void PutAll(Way& way, Parts&... parts) {
  (Put(way, parts), ...);
}

template <class Way>
void Put(Way& way, SideLimit& x) {
  PutAll(way, x.end, x.limit, x.plateau);
}
template <class Way>
void Put(Way& way, ProfileLimits& x) {
  PutAll(way, x.level, x.ratio, x.lower, x.upper);
}
template <class Way>
void Put(Way& way, ProfilePoint& x) {
  PutAll(way, x.value, x.sum);
}
template <class Way>
void Put(Way& way, ParameterProfile& x) {
  PutAll(way, x.limits, x.curve);
}
template <class Way>
void Put(Way& way, PercentileLimits& x) {
  PutAll(way, x.level, x.lower, x.upper);
}
template <class Way>
void Put(Way& way, ParameterReplicates& x) {
  PutAll(way, x.done, x.failed, x.mean, x.deviation, x.limits, x.values);
}
template <class Way>
void Put(Way& way, ParameterErrors& x) {
  PutAll(way, x.parameter, x.name, x.value, x.error, x.profile, x.monteCarlo, x.bootstrap);
}
template <class Way>
void Put(Way& way, DerivedLimits& x) {
  PutAll(way, x.level, x.lower, x.upper, x.lowerEnd, x.upperEnd);
}
template <class Way>
void Put(Way& way, DerivedQuantity& x) {
  PutAll(way, x.name, x.unit, x.value, x.limits);
}
template <class Way>
void Put(Way& way, BetterFit& x) {
  PutAll(way, x.sum, x.parameters);
}
template <class Way>
void Put(Way& way, ErrorAnalysis& x) {
  PutAll(way, x.request.parameters, x.request.levels, x.request.profile, x.request.monteCarlo,
         x.request.bootstrap, x.request.replicates, x.sum, x.freedom, x.seconds, x.values,
         x.parameters, x.derived, x.scaleRemark, x.better);
}
template <class Way>
void Put(Way& way, ConfidenceInterval& x) {
  PutAll(way, x.name, x.value, x.lower, x.upper);
}
template <class Way>
void Put(Way& way, IntervalSearch& x) {
  auto method = static_cast<std::int32_t>(x.request.method);
  PutAll(way, x.request.percent, method, x.outcome.ratio, x.outcome.seconds, x.outcome.intervals,
         x.outcome.better);
  x.request.method = method == 1 ? RatioMethod::kEqualFreedom : RatioMethod::kParameters;
}

template <class Way, class Part>
void Put(Way& way, std::optional<Part>& part) {
  bool has = part.has_value();
  Put(way, has);
  if (!has) return;
  if (!part) part.emplace();
  Put(way, *part);
}
template <class Way, class Part>
void Put(Way& way, std::vector<Part>& parts) {
  parts.resize(way.Count(parts.size()));
  for (Part& part : parts) Put(way, part);
}

// Whether the values are of the parameters of `state`.
bool Fits(const Array1<double>& values, const FitState& state) {
  return values.size() == state.FitMA;
}

bool Fits(const ErrorAnalysis& found, const FitState& state) {
  for (const ParameterErrors& errors : found.parameters) {
    if (errors.parameter < 1 || errors.parameter > state.FitMA) return false;
  }
  for (const int parameter : found.request.parameters) {
    if (parameter < 1 || parameter > state.FitMA) return false;
  }
  return Fits(found.values, state) && (!found.better || Fits(found.better->parameters, state));
}

}  // namespace

void WriteSearches(const FinishedFit& fit, ByteWriter& out) {
  Writing way(out);
  std::optional<IntervalSearch> intervals = fit.intervals;
  std::optional<ErrorAnalysis> errors = fit.errors;
  PutAll(way, intervals, errors);
  for (std::size_t k = 0; intervals && k < fit.setup.FitModel->parameters.size(); ++k) {
    out.Int16(k < intervals->request.chosen.size() && intervals->request.chosen[k] ? 1 : 0);
  }
}

void ReadSearches(FinishedFit& fit, ByteReader& in) {
  Reading way(in);
  PutAll(way, fit.intervals, fit.errors);
  if (fit.errors && !Fits(*fit.errors, fit.state)) in.Fail("error analysis");
  if (!fit.intervals) return;
  const IntervalSearch& found = *fit.intervals;
  if (found.outcome.better && !Fits(found.outcome.better->parameters, fit.state)) {
    in.Fail("intervals");
  }
  for (std::size_t k = 0; k < fit.setup.FitModel->parameters.size(); ++k) {
    fit.intervals->request.chosen.push_back(in.Int16("choice") != 0);
  }
}

}  // namespace quorvane

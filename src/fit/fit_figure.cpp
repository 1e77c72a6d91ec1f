#include "fit/fit_figure.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <tuple>
#include <utility>

#include "fit/figure_diagnostics.h"
#include "fit/figure_words.h"
#include "fit/species_curves.h"
#include "scan/dataset_channel.h"

namespace quorvane {

namespace {

constexpr std::size_t kLegendRoom = 24;  // more entries would be larger than the data
constexpr ChartColor kGrey = 0x606060;

constexpr std::array<std::array<int, 3>, 7> kPalette = {{{0, 114, 178},
                                                         {213, 94, 0},
                                                         {0, 158, 115},
                                                         {204, 121, 167},
                                                         {230, 159, 0},
                                                         {86, 180, 233},
                                                         {0, 0, 0}}};

// Of the palette; a second round is darker, and its black grey.
ChartColor ColorOf(std::size_t index) {
  const std::size_t round = index / kPalette.size() % 2;
  const auto& rgb = kPalette[index % kPalette.size()];
  if (round == 1 && rgb == kPalette.back()) return kGrey;
  ChartColor color = 0;
  for (std::size_t c = 0; c < rgb.size(); ++c) {
    const int part = round == 0 ? rgb[c] : rgb[c] / 2;
    color |= static_cast<ChartColor>(part) << 8U * c;
  }
  return color;
}

FigureSymbol SymbolOf(std::size_t index) {
  return static_cast<FigureSymbol>(index % kFigureSymbols);
}

FigureStroke StrokeOf(std::size_t index) {
  return static_cast<FigureStroke>(index % kFigureStrokes);
}

// A channel by its place in the machine, so that B stands behind A; one without a letter by its
// name, behind those.
using ChannelKey = std::tuple<bool, int, char, std::string>;

ChannelKey KeyOf(const Dataset& dataset) {
  const CellChannel channel = ChannelOf(dataset);
  if (!channel.letter) return {true, 0, ' ', NameOf(dataset)};
  return {false, channel.cell.value_or(0), *channel.letter, {}};
}

template <class Value>
std::size_t PlaceIn(const std::set<Value>& values, const Value& value) {
  return static_cast<std::size_t>(std::distance(values.begin(), values.find(value)));
}

// Makes one figure.
class FigureMaker {
 public:
  FigureMaker(std::vector<FigureSet> sets, const FitState* fit, const FigureChoices& choices)
      : sets_(std::move(sets)), fit_(fit), choices_(choices) {
    if (choices_.content != FigureContent::kData) {
      std::erase_if(sets_, [this](const FigureSet& set) { return FitOf(set) == nullptr; });
    }
    std::set<int> cells;
    for (const FigureSet& set : sets_) {
      speeds_.insert(set.dataset->Speed);
      channels_.insert(KeyOf(*set.dataset));
      if (const auto cell = ChannelOf(*set.dataset).cell) cells.insert(*cell);
      datasets_.push_back(set.dataset);
    }
    severalCells_ = cells.size() > 1;
    severalWavelengths_ = !CommonWavelength(datasets_);
  }

  Figure Make() {
    figure_.width = choices_.width;
    figure_.height = choices_.height;
    panels_ = Panels();
    looks_ = Looks();
    NameSets();
    SetTitles();
    FillCells();
    ListKeys();
    RemarkWhatIsMissing();
    return std::move(figure_);
  }

 private:
  const FitState* FitOf(const FigureSet& set) const { return set.fitted > 0 ? fit_ : nullptr; }

  bool ShowsWeights() const { return choices_.content == FigureContent::kLocalWeights; }

  // How many marks there are for each that is shown; what judges all residuals shows them all.
  int MarksForEach() const {
    const bool thin = choices_.content == FigureContent::kData || ShowsWeights();
    return thin ? std::max(choices_.every, 1) : 1;
  }

  void RemarkWhatIsMissing() {
    if (dropped_ > 0) {
      const char* what = ShowsWeights()
                             ? "Windows with points at or below the baseline are not shown: "
                             : "Points at or below the baseline have no logarithm and are not "
                               "shown: ";
      figure_.remarks.push_back(what + std::to_string(dropped_) + ".");
    }
    if (MarksForEach() == 1) return;
    const bool fitted = std::any_of(sets_.begin(), sets_.end(),
                                    [&](const FigureSet& set) { return FitOf(set) != nullptr; });
    const char* one = ShowsWeights() ? "One window in " : "One point in ";
    figure_.remarks.push_back(one + std::to_string(MarksForEach()) +
                              (fitted ? " is shown; the fit used all points." : " is shown."));
  }

  // The user's text in place of an automatic one.
  std::string Shown(const std::string& text) const {
    const auto found = choices_.texts.find(text);
    return found == choices_.texts.end() ? text : found->second;
  }

  // The same for a text that stands in the figure itself, which may be replaced from now on.
  std::string Offer(const std::string& text) {
    if (std::find(figure_.texts.begin(), figure_.texts.end(), text) == figure_.texts.end()) {
      figure_.texts.push_back(text);
    }
    return Shown(text);
  }

  // Each dataset in words; those that would read alike have their names added.
  void NameSets() {
    std::map<std::string, int> uses;
    for (const FigureSet& set : sets_) {
      const Dataset& dataset = *set.dataset;
      std::string name = SpeedText(dataset.Speed) + ", " + ChannelText(dataset, severalCells_);
      if (severalWavelengths_ && dataset.Wavelength > 0)
        name += ", " + std::to_string(dataset.Wavelength) + " nm";
      if (const FitState* fit = FitOf(set)) {
        const std::string concentration = ConcentrationText(*fit, set.fitted);
        if (!concentration.empty()) name += ", " + concentration;
      }
      ++uses[name];
      names_.push_back(std::move(name));
    }
    for (std::size_t k = 0; k < sets_.size(); ++k) {
      if (uses[names_[k]] > 1) names_[k] += " (" + NameOf(*sets_[k].dataset) + ")";
    }
  }

  void SetTitles() {
    figure_.title = choices_.title;
    if (choices_.content == FigureContent::kData) return SetDataTitles();
    if (sets_.empty()) return;
    const DiagnosticTitles titles = TitlesOf(choices_, *fit_, datasets_);
    figure_.leftTitle = Offer(titles.left);
    figure_.bottomTitle = Offer(titles.bottom);
  }

  void SetDataTitles() {
    const bool logarithm = choices_.signal == FigureSignal::kLogarithm;
    figure_.leftTitle = Offer(logarithm ? LogSignalTitle(datasets_) : SignalTitle(datasets_));
    figure_.bottomTitle = Offer(RadialTitle(choices_.abscissa));
    const bool fitted = std::any_of(sets_.begin(), sets_.end(),
                                    [&](const FigureSet& set) { return FitOf(set) != nullptr; });
    figure_.residuals = choices_.residuals && fitted;
    if (figure_.residuals) figure_.residualTitle = Offer("Residuals");
  }

  std::string CellTitle(const Dataset& dataset) const {
    if (choices_.panels == FigurePanels::kBySpeed) return SpeedText(dataset.Speed);
    std::string title = ChannelText(dataset, severalCells_);
    if (ChannelOf(dataset).letter) title.front() = 'C';  // of "channel" or "cell"
    return title;
  }

  std::size_t PlaceOf(const Dataset& dataset, FigurePanels panels) const {
    if (panels == FigurePanels::kOne) return 0;
    return panels == FigurePanels::kBySpeed ? PlaceIn(speeds_, dataset.Speed)
                                            : PlaceIn(channels_, KeyOf(dataset));
  }

  // As chosen, unless the content is one of all residuals together or there is no room.
  FigurePanels Panels() {
    if (choices_.content == FigureContent::kResiduals ||
        choices_.content == FigureContent::kQuantiles) {
      return FigurePanels::kOne;
    }
    const std::size_t wanted = CellsOf(choices_.panels);
    if (wanted <= kMostFigureCells) return choices_.panels;
    figure_.remarks.push_back("All datasets share one panel, as there would be " +
                              std::to_string(wanted) + " panels; the most are " +
                              std::to_string(kMostFigureCells) + ".");
    return FigurePanels::kOne;
  }

  std::size_t CellsOf(FigurePanels panels) const {
    if (panels == FigurePanels::kOne) return 1;
    return panels == FigurePanels::kByChannel ? channels_.size() : speeds_.size();
  }

  // As chosen, unless some of few datasets would look alike in their cell, as those of one channel
  // at two wavelengths.
  FigureLooks Looks() {
    if (choices_.looks == FigureLooks::kByDataset || sets_.size() > kLegendRoom) {
      return choices_.looks;
    }
    std::set<std::tuple<std::size_t, ChartColor, FigureSymbol, FigureStroke>> seen;
    for (const FigureSet& set : sets_) {
      const FigureLook look = LookOf(set);
      if (seen.emplace(PlaceOf(*set.dataset, panels_), look.color, look.symbol, look.stroke).second)
        continue;
      figure_.remarks.push_back(
          "Each dataset has a look of its own: speed and channel do not tell all of them apart.");
      return FigureLooks::kByDataset;
    }
    return FigureLooks::kBySpeed;
  }

  // The scale of the residuals is that of all, shown or not.
  void FillCells() {
    figure_.cells.resize(std::max<std::size_t>(CellsOf(panels_), 1));
    double reach = 0.0;
    for (std::size_t k = 0; k < sets_.size(); ++k) {
      const Dataset& dataset = *sets_[k].dataset;
      FigureCell& cell = figure_.cells[PlaceOf(dataset, panels_)];
      if (panels_ != FigurePanels::kOne) cell.title = Offer(CellTitle(dataset));
      FigureSeries& series = cell.series.emplace_back(SeriesOf(k));
      for (const double y : series.residuals.y) {
        if (std::isfinite(y)) reach = std::max(reach, std::abs(y));
      }
      Thin(series.residuals);
    }
    if (reach > 0.0) figure_.residualReach = reach;
    for (FigureCell& cell : figure_.cells) {
      if (choices_.content == FigureContent::kQuantiles) RankResiduals(cell.series);
      cell.guides = GuidesOf(choices_.content, cell.series);
    }
  }

  FigureLook LookOf(const FigureSet& set) const {
    if (looks_ == FigureLooks::kByDataset) return FigureLookOf(set.number);
    const std::size_t speed = PlaceIn(speeds_, set.dataset->Speed);
    const std::size_t channel = PlaceIn(channels_, KeyOf(*set.dataset));
    return {ColorOf(speed), SymbolOf(channel), StrokeOf(speed)};
  }

  double Abscissa(double r, const Dataset& dataset) const {
    if (choices_.abscissa == FigureAbscissa::kRadius) return r;
    return (r * r - dataset.RefRadius * dataset.RefRadius) / 2.0;
  }

  // Adds a point as the signal is shown; false if it cannot be.
  bool Add(FigurePoints& points, double x, double signal, double baseline) const {
    if (choices_.signal == FigureSignal::kMeasured) {
      points.Add(x, signal);
      return true;
    }
    if (!(signal - baseline > 0.0)) return false;
    points.Add(x, std::log(signal - baseline));
    return true;
  }

  FigureSeries SeriesOf(std::size_t k) {
    const FigureSet& set = sets_[k];
    FigureSeries series{.name = Shown(names_[k]), .number = set.number, .look = LookOf(set)};
    switch (choices_.content) {
      case FigureContent::kData:
        AddData(series, set);
        break;
      case FigureContent::kLocalWeights:
        dropped_ += ShowLocalWeights(series, *fit_, set.fitted, choices_);
        Thin(series.data);
        break;
      case FigureContent::kResiduals:
      case FigureContent::kQuantiles:
        series.data = ResidualsOf(set);
        break;
    }
    return series;
  }

  void Thin(FigurePoints& points) const {
    const auto each = static_cast<std::size_t>(MarksForEach());
    if (each == 1) return;
    FigurePoints kept;
    for (std::size_t k = 0; k < points.x.size(); k += each) kept.Add(points.x[k], points.y[k]);
    points = std::move(kept);
  }

  void AddData(FigureSeries& series, const FigureSet& set) {
    const Dataset& dataset = *set.dataset;
    const FitState* fit = FitOf(set);
    const double baseline = fit != nullptr ? fit->FitA(set.fitted) : dataset.Offset;
    int used = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(dataset.NumPoints); ++i) {
      const bool good = dataset.Good[i] != kFalse;
      if (good ? used++ % MarksForEach() != 0 : !choices_.leftOut) continue;
      const double x = Abscissa(dataset.R[i], dataset);
      if (!Add(good ? series.data : series.leftOut, x, dataset.C[i], baseline)) ++dropped_;
    }
    if (fit == nullptr) return;
    if (choices_.curves) AddCurve(series, set, baseline);
    if (choices_.residuals) series.residuals = ResidualsOf(set);
    if (choices_.species) AddSpecies(series, set, baseline);
  }

  // Calls `use(i)` for each data point i of a fitted dataset.
  template <class Use>
  void ForPoints(const FigureSet& set, Use&& use) const {
    const int first = fit_->SetFirstPoint(set.fitted);
    for (int i = first; i < first + fit_->SetPointCount(set.fitted); ++i) {
      if (fit_->PointKind(i) == 0) use(i);
    }
  }

  void AddCurve(FigureSeries& series, const FigureSet& set, double baseline) const {
    ForPoints(set, [&](int i) {
      Add(series.curve, Abscissa(fit_->FitR(i), *set.dataset), fit_->FitYCalc(i), baseline);
    });
  }

  FigurePoints ResidualsOf(const FigureSet& set) const {
    FigurePoints points;
    ForPoints(set, [&](int i) {
      points.Add(Abscissa(fit_->FitR(i), *set.dataset), fit_->FitY(i) - fit_->FitYCalc(i));
    });
    return points;
  }

  // As logarithms only what is at least a hundredth of the whole, so that the data keep the axis.
  void AddSpecies(FigureSeries& series, const FigureSet& set, double baseline) {
    constexpr double kLeastShare = 0.01;
    const bool logarithm = choices_.signal == FigureSignal::kLogarithm;
    for (const SpeciesCurve& species : SpeciesCurves(*fit_, set.fitted)) {
      FigureSpecies& shown = series.species.emplace_back();
      shown.name = species.name;
      shown.stroke = StrokeOfSpecies(species.name);
      std::size_t next = 0;
      ForPoints(set, [&](int i) {
        const double signal = species.signal[next++];
        if (logarithm && signal < kLeastShare * (fit_->FitYCalc(i) - baseline)) return;
        Add(shown.curve, Abscissa(fit_->FitR(i), *set.dataset), signal + baseline, baseline);
      });
    }
  }

  // Dashed, dotted, dash-dotted in the order in which they come first; whole lines are of curves.
  FigureStroke StrokeOfSpecies(const std::string& name) {
    const auto found = std::find(species_.begin(), species_.end(), name);
    const auto place = static_cast<std::size_t>(std::distance(species_.begin(), found));
    if (found == species_.end()) species_.push_back(name);
    return StrokeOf(1 + place % (kFigureStrokes - 1));
  }

  bool HasCurve(const FigureSet& set) const {
    const bool drawn = choices_.content == FigureContent::kData ||
                       choices_.content == FigureContent::kLocalWeights;
    return drawn && choices_.curves && FitOf(set) != nullptr;
  }

  // A key whose text the user has emptied is left out.
  void AddKey(FigureKey key) {
    key.text = Offer(key.text);
    if (!key.text.empty()) figure_.keys.push_back(std::move(key));
  }

  void ListKeys() {
    if (sets_.size() <= kLegendRoom) {
      for (std::size_t k = 0; k < sets_.size(); ++k) {
        AddKey({.look = LookOf(sets_[k]), .line = HasCurve(sets_[k]), .text = names_[k]});
      }
    } else {
      ListSpeedsAndChannels();
    }
    for (const std::string& name : species_) {
      AddKey({.look = {kGrey, FigureSymbol::kCircle, StrokeOfSpecies(name)},
              .symbol = false,
              .text = name,
              .thin = true});
    }
  }

  // But what the panels bear already as their titles.
  void ListSpeedsAndChannels() {
    const bool bySpeed = looks_ == FigureLooks::kBySpeed;
    const std::size_t speeds = panels_ == FigurePanels::kBySpeed ? 0 : speeds_.size();
    std::size_t channels = panels_ == FigurePanels::kByChannel ? 0 : channels_.size();
    if (bySpeed && channels > kFigureSymbols) {
      figure_.remarks.push_back("The legend names no channels: " + std::to_string(channels) +
                                " of them share " + std::to_string(kFigureSymbols) + " symbols.");
      channels = 0;
    }
    const std::size_t entries = bySpeed ? speeds + channels : sets_.size();
    if (entries > kLegendRoom) {
      figure_.remarks.push_back("There is no legend, as it would have " + std::to_string(entries) +
                                " entries; the most are " + std::to_string(kLegendRoom) + ".");
      return;
    }
    if (speeds > 0) ListSpeeds();
    if (channels > 0) ListChannels();
  }

  void ListSpeeds() {
    const bool lines = std::any_of(sets_.begin(), sets_.end(),
                                   [&](const FigureSet& set) { return HasCurve(set); });
    for (const int speed : speeds_) {
      const std::size_t place = PlaceIn(speeds_, speed);
      AddKey({.look = {ColorOf(place), FigureSymbol::kCircle, StrokeOf(place)},
              .symbol = !lines,
              .line = lines,
              .text = SpeedText(speed)});
    }
  }

  void ListChannels() {
    for (const ChannelKey& channel : channels_) {
      const auto one = std::find_if(sets_.begin(), sets_.end(), [&](const FigureSet& set) {
        return KeyOf(*set.dataset) == channel;
      });
      AddKey({.look = {kGrey, SymbolOf(PlaceIn(channels_, channel)), FigureStroke::kSolid},
              .line = false,
              .text = ChannelText(*one->dataset, severalCells_)});
    }
  }

  std::vector<FigureSet> sets_;
  const FitState* fit_;
  const FigureChoices& choices_;
  std::vector<const Dataset*> datasets_;
  std::set<int> speeds_;
  std::set<ChannelKey> channels_;
  FigurePanels panels_ = FigurePanels::kOne;
  FigureLooks looks_ = FigureLooks::kBySpeed;
  bool severalCells_ = false;
  bool severalWavelengths_ = false;
  std::vector<std::string> names_;    // of the sets, before the user's own
  std::vector<std::string> species_;  // that are shown, in the order of their strokes
  int dropped_ = 0;                   // points or windows without a logarithm
  Figure figure_;
};

}  // namespace

FigureLook FigureLookOf(std::size_t number) {
  // Colours and symbols share no factor, so that all their pairs come before one comes again.
  const std::size_t round = number / (kPalette.size() * kFigureSymbols) % 2;
  const std::size_t color = number % kPalette.size() + round * kPalette.size();
  return {ColorOf(color), SymbolOf(number), StrokeOf(number)};
}

Figure MakeFigure(const std::vector<FigureSet>& sets, const FitState* fit,
                  const FigureChoices& choices) {
  return FigureMaker(sets, fit, choices).Make();
}

}  // namespace quorvane

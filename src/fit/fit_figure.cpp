#include "fit/fit_figure.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <tuple>
#include <utility>

#include "fit/figure_words.h"
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
  FigureMaker(const std::vector<FigureSet>& sets, const FitState* fit, const FigureChoices& choices)
      : sets_(sets), fit_(fit), choices_(choices) {
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
    NameSets();
    SetTitles();
    FillCells();
    ListKeys();
    if (dropped_ > 0) {
      figure_.remarks.push_back(
          "Points at or below the baseline have no logarithm and are not "
          "shown: " +
          std::to_string(dropped_) + ".");
    }
    return std::move(figure_);
  }

 private:
  const FitState* FitOf(const FigureSet& set) const { return set.fitted > 0 ? fit_ : nullptr; }

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
    const bool logarithm = choices_.signal == FigureSignal::kLogarithm;
    figure_.title = choices_.title;
    figure_.leftTitle = Offer(logarithm ? LogSignalTitle(datasets_) : SignalTitle(datasets_));
    figure_.bottomTitle =
        Offer(choices_.abscissa == FigureAbscissa::kPsi
                  ? "(r\xC2\xB2 \xE2\x88\x92 r\xE2\x82\x80\xC2\xB2)/2 (cm\xC2\xB2)"
                  : "Radius (cm)");
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

  void FillCells() {
    FigurePanels panels = choices_.panels;
    const std::size_t wanted = panels == FigurePanels::kByChannel ? channels_.size()
                               : panels == FigurePanels::kBySpeed ? speeds_.size()
                                                                  : 1;
    if (wanted > kMostFigureCells) {
      panels = FigurePanels::kOne;
      figure_.remarks.push_back("All datasets share one panel, as there would be " +
                                std::to_string(wanted) + " panels; the most are " +
                                std::to_string(kMostFigureCells) + ".");
    }
    figure_.cells.resize(panels == FigurePanels::kOne ? 1 : std::max<std::size_t>(wanted, 1));
    double reach = 0.0;
    for (std::size_t k = 0; k < sets_.size(); ++k) {
      const Dataset& dataset = *sets_[k].dataset;
      FigureCell& cell = figure_.cells[PlaceOf(dataset, panels)];
      if (panels != FigurePanels::kOne) cell.title = Offer(CellTitle(dataset));
      cell.series.push_back(SeriesOf(k));
      for (const double y : cell.series.back().residuals.y) {
        if (std::isfinite(y)) reach = std::max(reach, std::abs(y));
      }
    }
    if (reach > 0.0) figure_.residualReach = reach;
  }

  FigureLook LookOf(const FigureSet& set) const {
    if (choices_.looks == FigureLooks::kByDataset) return FigureLookOf(set.number);
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
    const Dataset& dataset = *set.dataset;
    const FitState* fit = FitOf(set);
    FigureSeries series{.name = Shown(names_[k]), .number = set.number, .look = LookOf(set)};
    const double baseline = fit != nullptr ? fit->FitA(set.fitted) : dataset.Offset;
    for (std::size_t i = 0; i < static_cast<std::size_t>(dataset.NumPoints); ++i) {
      const bool good = dataset.Good[i] != kFalse;
      if (!good && !choices_.leftOut) continue;
      const double x = Abscissa(dataset.R[i], dataset);
      if (!Add(good ? series.data : series.leftOut, x, dataset.C[i], baseline)) ++dropped_;
    }
    if (fit != nullptr) AddFit(series, *fit, set, baseline);
    return series;
  }

  void AddFit(FigureSeries& series, const FitState& fit, const FigureSet& set, double baseline) {
    const int first = fit.SetFirstPoint(set.fitted);
    for (int i = first; i < first + fit.SetPointCount(set.fitted); ++i) {
      if (fit.PointKind(i) != 0) continue;
      const double x = Abscissa(fit.FitR(i), *set.dataset);
      if (choices_.curves) Add(series.curve, x, fit.FitYCalc(i), baseline);
      if (choices_.residuals) series.residuals.Add(x, fit.FitY(i) - fit.FitYCalc(i));
    }
  }

  bool HasCurve(const FigureSet& set) const { return choices_.curves && FitOf(set) != nullptr; }

  // A key whose text the user has emptied is left out.
  void AddKey(const FigureLook& look, bool symbol, bool line, const std::string& text) {
    std::string shown = Offer(text);
    if (!shown.empty()) figure_.keys.push_back({look, symbol, line, std::move(shown)});
  }

  void ListKeys() {
    if (sets_.size() > kLegendRoom) {
      if (choices_.looks == FigureLooks::kBySpeed) ListSpeedsAndChannels();
      return;
    }
    for (std::size_t k = 0; k < sets_.size(); ++k) {
      AddKey(LookOf(sets_[k]), true, HasCurve(sets_[k]), names_[k]);
    }
  }

  void ListSpeedsAndChannels() {
    if (speeds_.size() + channels_.size() > kLegendRoom) return;
    const bool lines = std::any_of(sets_.begin(), sets_.end(),
                                   [&](const FigureSet& set) { return HasCurve(set); });
    for (const int speed : speeds_) {
      const std::size_t place = PlaceIn(speeds_, speed);
      AddKey({ColorOf(place), FigureSymbol::kCircle, StrokeOf(place)}, !lines, lines,
             SpeedText(speed));
    }
    for (const ChannelKey& channel : channels_) {
      const auto one = std::find_if(sets_.begin(), sets_.end(), [&](const FigureSet& set) {
        return KeyOf(*set.dataset) == channel;
      });
      AddKey({kGrey, SymbolOf(PlaceIn(channels_, channel)), FigureStroke::kSolid}, true, false,
             ChannelText(*one->dataset, severalCells_));
    }
  }

  const std::vector<FigureSet>& sets_;
  const FitState* fit_;
  const FigureChoices& choices_;
  std::vector<const Dataset*> datasets_;
  std::set<int> speeds_;
  std::set<ChannelKey> channels_;
  bool severalCells_ = false;
  bool severalWavelengths_ = false;
  std::vector<std::string> names_;  // of the sets, before the user's own
  int dropped_ = 0;                 // points without a logarithm
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

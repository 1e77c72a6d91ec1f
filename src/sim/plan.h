// A planned experiment: what is expected of a sample, and how it would be measured.
#pragma once

#include <array>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "fit/fit_page.h"
#include "fit/model_parameters.h"
#include "fit/models.h"
#include "scan/channel_windows.h"

namespace quorvane {

struct ExperimentPlan {
  const Model* model = &FirstModel();
  // The truth that is expected: shared parameters, vbar and density.
  FitPage truth = {};
  // Whether a fit would look for it, in the order of SharedParameters; else it counts as known.
  std::array<bool, SharedParameters.size()> fitted = AllTrue();

  std::vector<double> speeds = {};      // rpm; all of these are scanned
  std::vector<double> candidates = {};  // instead: the best `choose` of these are looked for
  int choose = 0;

  // A solution column each, molar as monomer; of B as many, or one for all columns.
  std::vector<double> loads = {};
  std::vector<double> loadsB = {};
  // Signal units/mole, a wavelength each: every column is scanned at all of them. With a second
  // component the scans of a column are linked, that is, they share their reference concentrations.
  std::vector<double> extCoeff = {};
  std::vector<double> extCoeffB = {};

  double noise = 0.005;                                         // rms, signal units
  double mostSignal = std::numeric_limits<double>::infinity();  // points above are left out
  std::optional<Centerpiece> centerpiece = {};  // instead of meniscus and base: see ColumnOf
  double meniscus = 6.85;                       // cm
  double base = 7.15;                           // cm
  int points = 200;                             // a scan, evenly from meniscus to base
  double temperature = 20.0;                    // deg C
  std::vector<std::string> notes = {};  // on its constants; they stand behind the result's remarks
  int check = 0;                        // so many experiments are simulated and fitted; none: 0

  bool Fits(const SharedParameter& parameter) const;
  // The parameters of the model that a fit would look for, in the order of the model.
  std::vector<const ModelParameter*> Fitted() const;
  bool TwoComponents() const { return model->secondComponent; }
  double LoadB(std::size_t column) const { return loadsB[loadsB.size() == 1 ? 0 : column]; }

 private:
  static constexpr std::array<bool, SharedParameters.size()> AllTrue() {
    std::array<bool, SharedParameters.size()> all{};
    all.fill(true);
    return all;
  }
};

// Position of a shared parameter in SharedParameters.
std::size_t PlaceOf(const SharedParameter& parameter);

struct SolutionColumn {
  double meniscus = 0.0;  // cm
  double base = 0.0;      // cm
};

// Where the column of load `column`, from 0, stands. The loads fill the channels of a centerpiece
// one after the other, cell after cell.
SolutionColumn ColumnOf(const ExperimentPlan& plan, std::size_t column);

// Speeds whose best are looked for; none where all are scanned.
inline bool Chooses(const ExperimentPlan& plan) {
  return !plan.candidates.empty();
}

// How many choices of speeds there are, at most `most` + 1.
std::size_t CountChoices(const ExperimentPlan& plan, std::size_t most);

inline constexpr std::size_t kMostChoices = 200'000;
inline constexpr int kMostChecks = 100'000;

// Why a plan cannot be worked out: the key of a plan file that is to blame, in `table` "" or
// "parameters", and a sentence.
struct PlanRefusal {
  std::string key;
  std::string message;
  std::string table = {};
};

// The first rule that the plan breaks; nothing if it may be worked out.
std::optional<PlanRefusal> RefusalOf(const ExperimentPlan& plan);

}  // namespace quorvane

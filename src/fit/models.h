// The catalogue of models: one entry each, from which page, fit, report, error analysis, jobs and
// windows take all that they say of a model.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "base/array1.h"
#include "fit/model_parameters.h"
#include "fit/model_terms.h"
#include "fit/species.h"
#include "fit/step_rule.h"

namespace quorvane {

struct FitState;

// Model value at flat point i, parameter vector a; the routine stores its name in CurrentProc.
using FuncsRoutine = void (*)(FitState& fit, int i, const Array1<double>& a, double& result);

// FUNCSk of fit.FitModel: its signal at flat point i, from 1. y = baseline + sum over species, see
// model_terms.h; at a mass conservation point the target times mean over loading concentration.
void FUNCS(FitState& fit, int i, const Array1<double>& a, double& result);

// A shared parameter as one model has it.
struct ModelParameter {
  const SharedParameter* shared;
  std::string_view name;         // in FitParamNames
  std::string_view caption;      // in the windows of the error analysis, as they show it
  std::string_view tag;          // in its line of the report: "-A" of a weight, "K1" of a constant
  bool sigma = true;             // of a weight: whether the report gives its sigma
  std::string_view symbol = {};  // of a constant: as a formula, see Reaction
  std::string_view k = {};       // of a constant: its label on the page, where it is not K1 to K3
};

// The model as chemistry, for the report and the guide. In these texts "_" stands before a
// subscript and "^" before a superscript: one letter or number, or several in parentheses, which
// go with it.
struct Reaction {
  std::string_view equation;
  std::string_view constants = {};  // definitions; empty without association
};

// A model that another one becomes when `parameter` has `value`: minus infinity, of a ln K, is a
// limit that no value reaches.
struct SimplerModel {
  std::string_view name;
  const SharedParameter* parameter;
  double value;

  bool LimitOnly() const;
};

struct Model {
  int index = -1;         // in the list of models and in an archive
  std::string_view name;  // in the list of models and in a job
  Reaction reaction = {};
  std::string_view funcsName;                       // "FUNCS0"
  std::string_view partialsName;                    // "PARTIALS0"
  std::span<const ModelParameter> parameters = {};  // behind the per-dataset block, in order
  bool secondComponent = false;
  bool cellEnds = false;                  // whether it needs meniscus and base of the column
  bool kRatios = false;                   // whether the ln K behind the first may be given as
                                          // ratios to it
  std::span<const Species> species = {};  // of a model that is a sum over fixed species
  TermsBuilder terms = SpeciesTerms;      // null for a model that is no sum over species
  FuncsRoutine funcs = FUNCS;
  StepRule steps = {};  // of the derivatives
  std::span<const SimplerModel> simpler = {};
};

// The models that lists offer, by their index from 0.
std::span<const Model> Models();

// Their names, in the same order.
const std::vector<std::string_view>& ModelNames();

// The model with that index: one of Models(), or the one that no list offers; null for any other.
const Model* FindModel(int modelIndex);

// The model of that name among Models(), or null.
const Model* FindModel(std::string_view name);

// The parameter of `model` with that record, or null.
const ModelParameter* FindParameter(const Model& model, const SharedParameter& shared);

// How `model` becomes `other`, by its entry; null if it does not.
const SimplerModel* FindSimpler(const Model& model, const Model& other);

}  // namespace quorvane

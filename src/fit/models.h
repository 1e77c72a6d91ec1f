// The catalogue of models: numbering, names, parameters and routines.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "base/array1.h"
#include "fit/fit_setup.h"
#include "fit/model_terms.h"
#include "fit/species.h"

struct FitState;

// Names in the order of the model list, index 0 to 10.
inline constexpr std::array<std::string_view, 11> ModelNames = {"Ideal",
                                                                "Nonideal",
                                                                "Monomer-Nmer",
                                                                "Monomer-Nmer-Mmer",
                                                                "Inc.Monomer & Monomer-Nmer",
                                                                "Monomer-Nmer & Inc.Nmer",
                                                                "A+B<>AB",
                                                                "A+B<>AB+B<>AB2",
                                                                "A+B<>AB+B<>AB2+B<>AB3",
                                                                "Isodesmic Self-association",
                                                                "nA<>An , An+B<>AnB"};

// Model value at flat point i, parameter vector a; the routine stores its name in CurrentProc.
using FuncsRoutine = void (*)(FitState& fit, int i, const Array1<double>& a, double& result);

// A parameter shared by all datasets: its name in the fit, where the page keeps it, its check box.
struct SharedParameter {
  std::string_view name;
  double FitPage::*field;
  CheckState FitSetup::*check;
};

struct Model {
  std::string_view funcsName;     // "FUNCS0"
  std::string_view partialsName;  // "PARTIALS0"
  FuncsRoutine funcs;
  TermsBuilder terms;  // null for a model that is no sum over species
  double firstStep;    // f0 of the derivative: first step over the parameter's value
  double stepAtZero;   // z: first step of a parameter that is 0
  bool secondComponent;
  std::span<const SharedParameter> parameters;  // behind the per-dataset block, in order
  std::span<const Species> species = {};        // of a model that is a sum over fixed species
  bool kRatios = false;  // the ln K behind the first may be given as ratios to it
};

// The routines of a model index: 0 to 10, or 14, which no list offers; null for any other.
const Model* FindModel(int modelIndex);

// Whether the model has a component B (indices 6, 7, 8 and 10).
bool HasSecondComponent(int modelIndex);

// Index of the model with that name, or -1.
int ModelIndexOf(std::string_view name);

// Whether the model needs a cell's ends (indices 4 and 5).
bool NeedsCellEnds(int modelIndex);

// Signal of the model at flat point i, from 1. y = baseline + sum over species, see model_terms.h;
// at a mass conservation point the target times mean over loading concentration.
void FUNCS0(FitState& fit, int i, const Array1<double>& a, double& result);
void FUNCS1(FitState& fit, int i, const Array1<double>& a, double& result);
void FUNCS2(FitState& fit, int i, const Array1<double>& a, double& result);
void FUNCS3(FitState& fit, int i, const Array1<double>& a, double& result);
void FUNCS4(FitState& fit, int i, const Array1<double>& a, double& result);
void FUNCS5(FitState& fit, int i, const Array1<double>& a, double& result);
void FUNCS6(FitState& fit, int i, const Array1<double>& a, double& result);
void FUNCS7(FitState& fit, int i, const Array1<double>& a, double& result);
void FUNCS8(FitState& fit, int i, const Array1<double>& a, double& result);
void FUNCS9(FitState& fit, int i, const Array1<double>& a, double& result);
void FUNCS10(FitState& fit, int i, const Array1<double>& a, double& result);
void FUNCS11(FitState& fit, int i, const Array1<double>& a, double& result);

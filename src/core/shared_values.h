// The values of the parameter page that all datasets of a fit share: labels, shown texts, entry.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/page_entry.h"
#include "core/program_state.h"

enum class SharedForm { kPlain, kWeight, kWeightB, kFirstK, kFurtherK };

struct SharedValue {
  const char* control;  // "MWB": lblMWB, txtMWB and chkMWB
  const char* name;     // in labels and messages
  SharedForm form;
  double FitPage::*field;
  CheckState FitSetup::*check;
};

inline constexpr std::array<SharedValue, 9> SharedValues = {{
    {"MWB", "MW", SharedForm::kWeight, &FitPage::ModelMW, &FitSetup::chkMWB},
    {"MWB2", "MW", SharedForm::kWeightB, &FitPage::ModelMWB, &FitSetup::chkMWB2},
    {"VirialC", "B*M, Virial Coef.", SharedForm::kPlain, &FitPage::ModelVirial,
     &FitSetup::chkVirialC},
    {"N1mer", "N-mer", SharedForm::kPlain, &FitPage::ModelN1, &FitSetup::chkN1mer},
    {"N2mer", "M-mer", SharedForm::kPlain, &FitPage::ModelN2, &FitSetup::chkN2mer},
    {"Alpha", "Alpha", SharedForm::kPlain, &FitPage::ModelAlpha, &FitSetup::chkAlpha},
    {"LnK1", "K1", SharedForm::kFirstK, &FitPage::ModelLnK1, &FitSetup::chkLnK1},
    {"LnK2", "K2", SharedForm::kFurtherK, &FitPage::ModelLnK2, &FitSetup::chkLnK2},
    {"LnK3", "K3", SharedForm::kFurtherK, &FitPage::ModelLnK3, &FitSetup::chkLnK3},
}};

bool IsAssociationConstant(const SharedValue& value);

// Whether the model of the page has the value.
bool HasValue(const FitSetup& setup, const SharedValue& value);

// The caption of its label in the display modes of `module`.
std::string LabelOf(const SharedValue& value, const QuorvaneModule& module);

// The text of its box. A value without a display form (a K beyond double, a weight where vbar rho
// is 1) shows the description of the fault.
std::string TextOf(const SharedValue& value, const QuorvaneModule& module);

// Takes the text of its box. A value that could not be shown is refused too.
Refusal Enter(const SharedValue& value, QuorvaneModule& module, std::string_view text);

// The numbers that its box takes in the display modes of `module`.
std::string TakenBy(const SharedValue& value, const QuorvaneModule& module);

// Switches K2 and K3 to the ratios K2/K1 and K3/K1 of what the boxes show, held, and back. Both are
// refused with nothing changed if a value is beyond double.
Refusal ConstrainShownRatios(QuorvaneModule& module);
Refusal ReleaseShownRatios(QuorvaneModule& module);

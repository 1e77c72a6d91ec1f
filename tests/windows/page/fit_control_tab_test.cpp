// Faults caught here: a value stored in the form in which it is shown, a refusal that changes
// something or says the wrong words, a control that a model should not have.
#include <QDialog>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <clocale>
#include <cmath>

#include "windows/page/fit_control_tab_fixture.h"

using namespace quorvane;

namespace {

using enum KDisplay;

constexpr double kLn10 = 2.302585092994046;

constexpr const char* kIllegal = "Illegal Value Entered";

struct RefusedEntry {
  KDisplay KFormat;
  bool constrained;
  const char* box;
  const char* typed;
  const char* text;
  const char* remark;  // its beginning
};

const std::vector<RefusedEntry> kRefused = {
    {kLn, false, "txtLnK1", "1,5", kIllegal, "LnK1 takes any number, such as 0.5 or 1.5E-6."},
    {kPlain, false, "txtLnK1", "0", "K must be >0 !", "K1 takes a number above 0."},
    {kPlain, false, "txtLnK2", "0", "K2 must be greater than 0!", "K2 "},
    {kLn, true, "txtLnK3", "-1", "K3/K1 must be greater than 0!", "K3/K1 takes a number above 0."},
    {kLog10, false, "txtLnK1", "1e308", "Overflow", "LogK1 "},
    {kLn, false, "txtOffset(1)", "0x1", kIllegal, "Baseline of row 2 takes any number"},
    {kLn, false, "txtRefConc(1)", "0", kIllegal, "Ref.Conc.A of row 2 takes a number above 0."},
    {kLn, false, "txtALoad(1)", "-0.1", kIllegal, "[A]load of row 2 takes 0 or a number above it."},
    {kLn, false, "lblRunSpeed(1)", "0", kIllegal, "Speed of row 2 takes a number above 0."},
    {kLn, false, "lblDegC", "warm", kIllegal, "Temperature takes any number"},
    {kLn, false, "txtLinkTo(1)", "3", kIllegal, "Link To of row 2 "},
};

}  // namespace

TEST_F(FitControlTabTest, ValuesAreShownAndStoredInTheirForms) {
  SetUp(8, 1);
  page.Vbar = 0.75;
  page.VbarB = 0.5;
  struct Case {
    bool buoyant;
    KDisplay KFormat;
    const char* box;
    const char* typed;
    double FitPage::*field;
    double stored;
    const char* shown;
  };
  const std::vector<Case> cases = {
      {true, kLn, "txtMWB", "8000", &FitPage::ModelMW, 8000.0, "8.000E+3"},
      {false, kLn, "txtMWB", "8000", &FitPage::ModelMW, 2000.0, "8.000E+3"},
      {false, kLn, "txtMWB2", "50", &FitPage::ModelMWB, 25.0, "50.0000"},
      {true, kLn, "txtLnK1", "-1.5", &FitPage::ModelLnK1, -1.5, "-1.5000"},
      {true, kLog10, "txtLnK1", "6", &FitPage::ModelLnK1, 6.0 * kLn10, "6.0000"},
      {true, kPlain, "txtLnK2", "1e6", &FitPage::ModelLnK2, 6.0 * kLn10, "1.000E+6"},
      {true, kPlain, "txtLnK3", ".01", &FitPage::ModelLnK3, -2.0 * kLn10, "1.000E-2"},
  };
  for (const Case& c : cases) {
    session.Module.Preferences.UseBuoyantMW = c.buoyant;
    session.Module.Preferences.KFormat = c.KFormat;
    tab.RefreshDisplay();
    Type(c.box, c.typed);
    EXPECT_NEAR(page.*c.field, c.stored, 1e-12 * std::fabs(c.stored)) << c.box << c.typed;
    EXPECT_EQ(Text(c.box), c.shown);
  }
  // Three changes of the display bring the first text back and leave the value alone.
  page.ModelLnK1 = 14.123456;
  for (const KDisplay display : {kLn, kLog10, kPlain, kLn}) {
    session.Module.Preferences.KFormat = display;
    tab.RefreshDisplay();
  }
  EXPECT_EQ(Text("txtLnK1"), "14.1235");
  EXPECT_EQ(page.ModelLnK1, 14.123456);
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(FitControlTabTest, RefusalsKeepTheValueAndTheFocus) {
  SetUp(8, 2);
  session.Module.Preferences.UseBuoyantMW = false;
  QString remark;
  session.Remark = [&remark](const QString& text) { remark = text; };
  Click("chkUseMC");
  for (const RefusedEntry& c : kRefused) {
    session.Module.Preferences.KFormat = c.KFormat;
    tab.RefreshDisplay();
    if (setup.ConstrainKRatios != c.constrained) Click("chkConstrainKratios");
    const std::string before = Text(c.box);
    dialogs.messages.clear();
    Type(c.box, c.typed);
    ASSERT_EQ(dialogs.messages.size(), 1u) << c.box << c.typed;
    EXPECT_EQ(dialogs.messages[0].title, "Parameter Entry Error");
    EXPECT_EQ(LastMessage(), c.text);
    EXPECT_TRUE(remark.startsWith(c.remark)) << remark.toStdString();
    EXPECT_EQ(Text(c.box), before);
    EXPECT_TRUE(Find(c.box)->hasFocus());
  }
  Type("txtALoad(1)", "0");
  EXPECT_EQ(Scan(1).ALoad, 0.0);
  EXPECT_EQ(remark, "");
}

TEST_F(FitControlTabTest, ValuesBeyondTheirFormAreNoCrash) {
  SetUp(2, 1);
  page.Vbar = 1.0;
  page.ModelLnK1 = 800.0;
  session.Module.Preferences.UseBuoyantMW = false;
  session.Module.Preferences.KFormat = kPlain;
  tab.RefreshDisplay();
  EXPECT_EQ(Text("txtMWB"), "Division by zero");
  EXPECT_EQ(Text("txtLnK1"), "Overflow");
  Type("txtMWB", "50000");
  EXPECT_EQ(LastMessage(), "Division by zero");
  EXPECT_EQ(page.ModelMW, 7500.0);
}

TEST_F(FitControlTabTest, EachModelShowsItsOwnControls) {
  AddScans(2);
  const std::vector<std::string> cases = {
      "chkCalcConcs",
      "chkCalcConcs txtVirialC",
      "chkCalcConcs txtN1mer LnK1",
      "chkCalcConcs txtN1mer LnK1 txtN2mer LnK2",
      "chkCalcConcs txtN1mer LnK1 txtAlpha txtRmen(1) txtRbase(1)",
      "chkCalcConcs txtN1mer LnK1 txtAlpha txtRmen(1) txtRbase(1)",
      "txtMWB2 LnK1",
      "txtMWB2 LnK1 LnK2 chkConstrainKratios",
      "txtMWB2 LnK1 LnK2 LnK3 chkConstrainKratios",
      "chkCalcConcs LnKi",
      "txtMWB2 txtN1mer LnKs LnKh",
  };
  for (std::size_t model = 0; model < cases.size(); ++model) {
    ASSERT_TRUE(tab.SetupFit(*FindModel(static_cast<int>(model))));
    QStringList expected = QString::fromStdString(cases[model]).split(' ');
    const bool two = expected.contains("txtMWB2");
    if (two)
      expected << "chkUseMC"
               << "txtRefConc2(1)"
               << "txtExtCoeff2(1)"
               << "txtLinkTo(1)";
    for (const std::string name :
         {"txtMWB2", "txtVirialC", "txtN1mer", "txtN2mer", "txtAlpha", "lblLnK1", "lblLnK2",
          "lblLnK3", "chkCalcConcs", "chkUseMC", "chkConstrainKratios", "txtRefConc2(1)",
          "txtExtCoeff2(1)", "txtALoad(1)", "txtRmen(1)", "txtRbase(1)", "txtLinkTo(1)"}) {
      const bool isK = name.starts_with("lbl");
      const QString key = isK ? Find<QLabel>(name)->text() : QString::fromStdString(name);
      EXPECT_EQ(Find(name)->isVisible(), expected.contains(key)) << model << " " << name;
    }
    EXPECT_EQ(Find<QLabel>("lblMWB")->text(), two ? "Buoy. MW-A" : "Buoy. MW");
    EXPECT_EQ(Find<QLabel>("lblRef")->text(), two ? "Ref.Conc.A" : "Ref.Conc.");
    EXPECT_EQ(Find<QLabel>("lblRmen")->text(), two ? "[A]load" : "R[men.]");
  }
  session.Module.Store.UseData[1] = false;
  ASSERT_TRUE(tab.SetupFit(*FindModel(10)));
  EXPECT_FALSE(Find("lblLinkTo")->isVisible());
  EXPECT_EQ(tab.findChild<QWidget*>("txtOffset(1)"), nullptr);
}

TEST_F(FitControlTabTest, ConstrainedRatiosComeBackAsTheyWere) {
  SetUp(7, 1);
  page.ModelLnK2 = 15.5;
  tab.ShowValues();
  Click("chkLnK1");
  Click("chkConstrainKratios");
  EXPECT_EQ(Find<QLabel>("lblLnK2")->text(), "K2/K1");
  EXPECT_EQ(Text("txtLnK2"), "4.4817");
  EXPECT_EQ(Find<QCheckBox>("chkLnK2")->checkState(), Qt::PartiallyChecked);
  EXPECT_FALSE(Find("chkLnK2")->isEnabled());
  session.Module.Preferences.KFormat = kPlain;
  tab.RefreshDisplay();
  EXPECT_EQ(Text("txtLnK2"), "4.4817");
  Click("chkConstrainKratios");
  EXPECT_NEAR(page.ModelLnK2, 15.5, 5e-4);  // half a unit in the fourth digit of K1
  EXPECT_NEAR(page.ModelLnK3, 24.0, 5e-4);
  EXPECT_EQ(Find<QLabel>("lblLnK2")->text(), "K2");
  EXPECT_EQ(Find<QCheckBox>("chkLnK2")->checkState(), Qt::Unchecked);  // as chkLnK1
  page.ModelLnK2 = 15.5 + 800.0;
  Click("chkConstrainKratios");
  EXPECT_EQ(LastMessage(), "Overflow");
  EXPECT_FALSE(setup.ConstrainKRatios || Find<QCheckBox>("chkConstrainKratios")->isChecked());
}

TEST_F(FitControlTabTest, HoldsAsManyDatasetsAsAFit) {
  EXPECT_FALSE(tab.SetupFit(*FindModel(0)));
  EXPECT_EQ(host.messages.at(0).text, "No datasets were chosen to be fitted!");
  SetUp(0, 101);
  auto* last = Find<QLineEdit>("txtRefConc(100)");
  EXPECT_TRUE(last->visibleRegion().isEmpty());
  Find<QScrollBar>("tabVScroll2")->setValue(100000);
  EXPECT_FALSE(last->visibleRegion().isEmpty());
  AddScans(1);
  EXPECT_FALSE(tab.SetupFit(*FindModel(1)));
  EXPECT_EQ(LastMessage(), "Subscript out of range.  At most 101 datasets can be fitted together.");
  EXPECT_EQ(Find<QLabel>("lblUseModel")->text(), "Ideal");
  session.Module.Store.Datasets.clear();
  tab.ShowValues();
}

TEST_F(FitControlTabTest, AnEntryIsStoredBeforeTheFitStarts) {
  SetUp(0, 1);
  const QSignalSpy fits(&tab, &FitControlTab::FitRequested);
  const QSignalSpy adjustments(&tab, &FitControlTab::RefConcRequested);
  auto* box = Find<QLineEdit>("txtRefConc(0)");
  box->setText("0.25");
  Find<QPushButton>("cmdFitMe")->click();
  EXPECT_EQ(Scan(0).RefConc, 0.25);
  EXPECT_EQ(fits.count(), 1);
  box->setText("no");
  Find<QPushButton>("cmdFitMe")->click();
  EXPECT_EQ(fits.count(), 1);
  Click("txtRefConc(0)", {}, Qt::RightButton);
  QTest::mouseDClick(box, Qt::LeftButton);
  EXPECT_EQ(adjustments.count(), 2);
}

TEST_F(FitControlTabTest, NumbersHaveAPointInEveryLocale) {
  QLocale::setDefault(QLocale(QLocale::German));
  const bool german = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
  SetUp(0, 1);
  Type("txtOffset(0)", " 1.5 ");
  Type("lblDegC", "4.25");
  Type("lblRunSpeed(0)", "12000.5");
  EXPECT_EQ(Scan(0).Offset, 1.5);
  EXPECT_EQ(setup.DegC, 4.25);
  EXPECT_EQ(Scan(0).Speed, 12000);
  EXPECT_EQ(Text("txtOffset(0)") + " " + Text("lblDegC"), "1.5000 4.25");
  if (german) std::setlocale(LC_NUMERIC, "C");
  QLocale::setDefault(QLocale::c());
}

TEST_F(FitControlTabTest, TheNonidealModelWarnsUntilToldNotTo) {
  session.Module.Preferences.ShowNIWarning = true;
  SetUp(1, 1);
  auto* warning = Find<QDialog>("frmNIWarn");
  EXPECT_TRUE(warning->isVisible() && warning->isModal());
  warning->findChild<QCheckBox*>("chkDontShow")->setChecked(true);
  warning->findChild<QPushButton*>("cmdOK")->click();
  EXPECT_FALSE(warning->isVisible() || session.Module.Preferences.ShowNIWarning);
}

TEST_F(FitControlTabTest, SaysWhichMolecularWeightsThePageMeans) {
  SetUp(0, 1);
  const auto line = [&] {
    return (Find<QLabel>("lblWeight")->text() + "|" + Find<QLabel>("lblWeightRemark")->text())
        .toStdString();
  };
  page.Vbar = 0.73;
  page.Density = 1.0;
  Type("txtMWB", "8100");
  EXPECT_EQ(line(), "MW = 30,000 Da|");
  EXPECT_EQ(Find<QAbstractButton>("cmdWeightVbar")->text(), "vbar 0.73");
  EXPECT_EQ(Find<QAbstractButton>("cmdWeightDensity")->text(), "density 1.00");
  EXPECT_FALSE(Find<QAbstractButton>("cmdWeightVbarB")->isVisible());
  page.Vbar = page.Density = 1e300;  // each within its bounds
  tab.ShowValues();
  EXPECT_EQ(line(), "MW: none|(vbar density is beyond all numbers)");
  page.Vbar = 0.73;
  page.Density = 1.0;
  page.ModelMW = 16200.0;  // as a fit leaves it
  tab.ShowValues();
  EXPECT_EQ(line(), "MW = 60,000 Da|");
  page.Density = 1.4;  // as a dialog leaves it
  tab.RefreshDisplay();
  EXPECT_EQ(line(), "MW: none|(1 - vbar density is -0.022, not above 0)");
  page.Density = 1.0;
  page.VbarB = 0.75;
  page.ModelMWB = 10000.0;
  ASSERT_TRUE(tab.SetupFit(*FindModel(6)));
  EXPECT_EQ(line(), "MW(A) = 60,000 Da, MW(B) = 40,000 Da|");
  EXPECT_TRUE(Find<QAbstractButton>("cmdWeightVbarB")->isVisible());
  QSignalSpy asked(&tab, &FitControlTab::ConstantRequested);
  for (const char* name : {"cmdWeightVbar", "cmdWeightVbarB", "cmdWeightDensity"}) {
    Find<QAbstractButton>(name)->click();
  }
  ASSERT_EQ(asked.size(), 3);
  EXPECT_EQ(asked[1][0].value<Constant>(), Constant::kVbarB);
}

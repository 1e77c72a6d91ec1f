// Faults caught here: a power of ten or of the concentration lost, a column of the table shifted,
// water counted once for each component, a concentration beyond the fitted range that passes.
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "solution/buffer_density.h"
#include "solution/molar_mass.h"
#include "solution/solution_fault.h"
#include "solution/tables.h"

using namespace quorvane;

namespace {

std::string FaultOf(const std::string& buffer) {
  try {
    ReadBuffer(buffer);
  } catch (const SolutionFault& fault) {
    return fault.what();
  }
  return "none";
}

}  // namespace

// Kell's table, J. Chem. Eng. Data 20, 97 (1975).
TEST(WaterDensity, IsThePublishedOne) {
  const std::pair<double, double> cases[] = {{0, 0.9998396},  {4, 0.9999720},  {20, 0.9982041},
                                             {25, 0.9970449}, {40, 0.9922158}, {100, 0.9583637}};
  for (const auto& [degC, density] : cases) EXPECT_NEAR(WaterDensity(degC), density, 1e-7) << degC;
}

TEST(BufferDensity, IsTheSumOfTheIncrements) {
  const struct {
    const char* buffer;
    double degC;
    double density;
    double tolerance;
  } cases[] = {
      {"water", 20, 0.998234, 1e-12},
      // A sum made by another program.
      {"NaCl = 150 mM, Tris=0.02 M, EDTA=1mM", 20, 1.0051734, 1e-7},
      {"Sodium phosphate, di-basic = 30 mM,NaH2PO4 = 20000 uM, nacl = 100 mM", 4, 1.0101905, 1e-7},
      {"GdnHCl = 6 M", 25, 1.1409426, 1e-7},
      {"Glycerol = 1 M, HEPES = 50 \xC2\xB5M", 10, 1.0207061, 1e-7},
      {"sodium tungstate = 300 mM", 20, 1.0766892, 1e-7},
      // 10 g of sucrose, 6.305 g of glycerol in 100 ml, by the formulas' masses.
      {"10 % w/v sucrose", 20, 1.0366663, 1e-7},
      {"NaCl = 9 g/l, 5 % glycerol (v/v)", 4, 1.0207127, 1e-7},
      // Published.
      {"NaCl = 1 M", 20, 1.0384, 3e-4},
      {"KCl = 1 M", 20, 1.0443, 1e-4},
      {"sucrose = 0.5 M", 20, 1.0638, 1e-4},
      {"guanidine hydrochloride = 6 M", 20, 1.142, 4e-4},
  };
  for (const auto& test : cases) {
    EXPECT_NEAR(BufferDensity(ReadBuffer(test.buffer), test.degC), test.density, test.tolerance)
        << test.buffer;
  }
}

// A slip in a row shows as a jump where the next concentration lies, or as a density no solution
// has; a wrong formula as a percentage by mass at the end of the range that is no round one.
TEST(BufferComponents, HaveDensitiesOfSolutions) {
  EXPECT_EQ(BufferComponents().size(), 103U);
  for (const auto& row : tables::RowsOf(tables::kBuffers)) EXPECT_EQ(row[1], "mM") << row[0];
  int round = 0;
  for (const BufferComponent& component : BufferComponents()) {
    if (!component.unusable.empty()) continue;
    const double rho = kWaterDensity20 + DensityIncrement({&component, component.greatest});
    EXPECT_TRUE(rho > 0.78 && rho < 1.85) << component.name << " " << rho;
    EXPECT_EQ(&FindComponent(component.name), &component);
    for (const std::string& name : component.otherNames) {
      EXPECT_EQ(&FindComponent(name), &component) << name;
    }
    if (!component.molarMass) continue;
    const double percent = component.greatest * *component.molarMass / (10.0 * rho);
    if (std::fabs(percent - std::round(percent)) < 0.06) ++round;
    if (component.liquidDensity && percent > 99.0) {
      EXPECT_NEAR(rho, *component.liquidDensity, 0.001) << component.name;
    }
  }
  EXPECT_EQ(round, 85);
  EXPECT_NEAR(MolarMass("K4Fe(CN)6"), 4 * 39.098 + 55.845 + 6 * (12.011 + 14.007), 1e-9);
  for (const char* formula : {"Xx", "(Na", "Na)", "nA"}) {
    EXPECT_THROW(MolarMass(formula), std::invalid_argument) << formula;
  }
}

TEST(ReadBuffer, TakesNamesWithCommasAndGivesItsTextBack) {
  const std::string text = "Sodium phosphate, di-basic = 0.25 M, gdnhcl=6 M,tris =0.35 mM,";
  const std::string whole = BufferText(ReadBuffer(text));
  EXPECT_EQ(whole,
            "Sodium phosphate, di-basic = 250 mM, Guanidine hydrochloride = 6 M, "
            "Tris(hydroxymethyl)aminomethane = 0.35 mM");
  EXPECT_EQ(BufferText(ReadBuffer(whole)), whole);
  EXPECT_EQ(BufferText(ReadBuffer(" Water ")), "water");
  // As recipes are written, pasted from a page.
  const std::string pasted =
      "20\xC2\xA0mM Tris\xC2\xB7HCl,\n0.5 % (v/v) Glycerol, 7 % urea "
      "(w/v),2g/l\tNa\xE2\x82\x82HPO4";
  const std::string told = BufferText(ReadBuffer(pasted));
  EXPECT_EQ(told,
            "Tris(hydroxymethyl)aminomethane = 20 mM, Glycerol = 0.5 % v/v, Urea = 7 % w/v, "
            "Sodium phosphate, di-basic = 2 g/l");
  EXPECT_EQ(BufferText(ReadBuffer(told)), told);
}

TEST(ReadBuffer, NamesWhatIsWrong) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "the buffer is empty"},
      {"  ", "the buffer is empty"},
      {"NaCl", "\"NaCl\": NAME = 20 mM is wanted"},
      {"NaCl = 1 M, KCl", "\"KCl\": NAME"},
      {"= 1 M", "a name is wanted beside \"1 M\""},
      {"0,5 M NaCl", "numbers have a decimal point"},
      {"20 mM Tris, pH 8", "\"pH 8\": leave the pH out"},
      {"20 mM Tris (pH 8)", "leave the pH out"},
      {"--- = 1 M", "no component \"---\""},
      {"PBS", "NaCl = 137 mM, KCl = 2.7 mM"},
      {"5 % D2O", "measure the density"},
      {"5 mM MOPS", "no component \"MOPS\", nor a name near it; left out, each mg/ml"},
      {"NaCk = 1 M", "no component \"NaCk\"; the nearest names are Sodium chloride (NaCl)"},
      {"Na3HPO4 = 1 M", "Sodium phosphate, di-basic (Na2HPO4)"},
      {"NaCl = 0.1", "with a decimal point, is wanted"},
      {"NaCl = 0,1 M", "Sodium chloride = 0: a concentration"},
      {"NaCl = mM", "such as 20 mM, 0.1 M or 5 % w/v"},
      {"NaCl = 1e999 M", "such as 20 mM, 0.1 M or 5 % w/v"},
      {"glycerol = 5 %",
       "percent of what? \"5 % w/v\" is 5 g in 100 ml, 542.924 mM; \"5 % v/v\" is"},
      {"10 % w/w sucrose", "w/v and v/v are known; \"10 % w/v\""},
      {"5 % v/v NaCl", "v/v is for liquids; \"5 % w/v\""},
      {"1 % w/v inulin", "it has no single molar mass"},
      {"-5 % glycerol", "a concentration above 0"},
      {"127 % w/v glycerol", "known up to 126.1 % w/v (13.694 M)"},
      {"NaCl = -1 mM", "a concentration above 0"},
      {"NaCl = 0 M", "a concentration above 0"},
      {"NaCl = 5.33 M", "Sodium chloride = 5.33 M: densities are known up to 5.326 M"},
      {"EDTA = 1e9 mM", "up to 184 mM"},
      {"TCA = 1 M", "Trichloroacetic acid = 1 M: not used"},
      {"NaCl = 1 M, Sodium Chloride = 1 M", "Sodium chloride stands in the buffer twice"},
  };
  for (const auto& [buffer, says] : cases) {
    EXPECT_NE(FaultOf(buffer).find(says), std::string::npos) << buffer << " | " << FaultOf(buffer);
  }
  EXPECT_EQ(FaultOf("NaCl = 5.326 M"), "none");
  EXPECT_LT(FaultOf(std::string(1U << 20U, 'x') + " = 1 M").size(), 300U);
}

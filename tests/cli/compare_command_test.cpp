// Faults caught here: a key of the contract that is missing, fits of other points compared, a
// damaged or older file that is taken for a good one, numbers that differ from those of the fit.
#include "cli/command_fixture.h"

using namespace quorvane;

namespace {

class CompareCommandTest : public CommandTest {
 protected:
  // Fits `model` to the scan and leaves the result as `name`.
  void FitAs(const std::string& name, const std::string& model, const std::string& more = "") {
    ASSERT_EQ(Analyze("[[load]]\nfile = \"a.RA3\"\n[fit]\nrepeat = \"rest\"\nmodel = \"" + model +
                      "\"\n" + more),
              0)
        << err.str();
    std::filesystem::rename(folder / "out.json", folder / name);
  }
  void SetUp() override {
    WriteScan("a.RA3");
    FitAs("ideal.json", "Ideal");
    FitAs("nonideal.json", "Nonideal");
  }
  int Compare(std::vector<std::string> files) {
    std::vector<std::string> arguments = {"compare", "--json", Path("out.json")};
    for (const std::string& file : files) arguments.push_back(Path(file));
    return Run(std::move(arguments));
  }
  // The fit as `analyze` left it, changed by a JSON patch that removes or replaces.
  void Patch(const std::string& name, const std::string& operations) const {
    const auto whole = nlohmann::json::parse(ReadText(folder / "nonideal.json"));
    folder.Write(name, whole.patch(nlohmann::json::parse(operations)).dump());
  }
};

TEST_F(CompareCommandTest, TestsTheRestrictedFitInTheFullOne) {
  ASSERT_EQ(Compare({"nonideal.json", "ideal.json"}), 0) << err.str();
  const nlohmann::json all = Result();
  const nlohmann::json fit = nlohmann::json::parse(ReadText(folder / "nonideal.json"))["fit"];
  const nlohmann::json& first = all["fits"][0];
  EXPECT_EQ(first["model"], "Nonideal");
  for (const char* key : {"aicc", "bic", "fitted_parameters", "degrees_of_freedom"}) {
    EXPECT_EQ(first[key], fit[key]) << key;
  }
  EXPECT_EQ(first["chi_squared"], fit["best_sum"]);
  EXPECT_EQ(first["at_rest"], true);
  EXPECT_TRUE(first["runs_z"].is_number());
  const nlohmann::json& test = all["tests"].at(0);
  EXPECT_EQ(test["restricted"], 1);
  EXPECT_EQ(test["full"], 0);
  const double full = first["chi_squared"];
  const double restricted = all["fits"][1]["chi_squared"];
  EXPECT_NEAR(test["f"], (restricted - full) / (full / 56.0), 1e-9);
  EXPECT_EQ(test["denominator"], 56);
  EXPECT_NE(out.str().find("AICc = n ln(S/n)"), std::string::npos);
}

TEST_F(CompareCommandTest, ReadsOlderFiles) {
  ASSERT_EQ(Compare({"nonideal.json", "ideal.json"}), 0);
  const nlohmann::json known = Result();
  Patch("older.json", R"([{"op": "remove", "path": "/fit/points_digest"},
                          {"op": "remove", "path": "/fit/best_sum"},
                          {"op": "remove", "path": "/fit/rest"}])");
  ASSERT_EQ(Compare({"older.json", "ideal.json"}), 0) << err.str();
  EXPECT_NEAR(Result()["tests"][0]["f"], known["tests"][0]["f"], 1e-6);
  EXPECT_TRUE(Result()["fits"][0]["at_rest"].is_null());
}

TEST_F(CompareCommandTest, RefusesWhatCannotBeCompared) {
  FitAs("fewer.json", "Ideal", "[[dataset]]\nnumber = 1\ndelete_outside = [6.41, 6.60]\n");
  folder.Write("torn.json", ReadText(folder / "ideal.json").substr(0, 900));
  folder.Write("deep.json", std::string(100000, '['));
  folder.Write("huge.json", "{\"fit\": {\"model\": \"Ideal\", \"points\": 1e999}}");
  folder.Write("list.json", "[1, 2]");
  const auto replaced = [](const char* key, const char* value) {
    return std::string(R"([{"op": "replace", "path": "/fit/)") + key + R"(", "value": )" + value +
           "}]";
  };
  Patch("bare.json", R"([{"op": "remove", "path": "/fit/points_digest"},
                         {"op": "remove", "path": "/fit/curves"}])");
  Patch("other.json", replaced("points_digest", "\"0\""));
  Patch("unknown.json", replaced("model", "\"Ideal gas\""));
  Patch("many.json", replaced("points", "1e300"));
  Patch("value.json", replaced("parameters/0/value", "\"1\""));
  Patch("short.json", replaced("parameters", "[]"));
  Patch("lists.json", replaced("curves/0/r", "[6.4]"));
  for (const auto& [file, status, part] :
       std::initializer_list<std::tuple<const char*, int, const char*>>{
           {"fewer.json", 1, "fits of different points (60 points and 57)"},
           {"other.json", 1, "other radii or signals"},
           {"gone.json", 3, "gone.json: cannot be read"},
           {"torn.json", 3, "is damaged JSON at byte"},
           {"deep.json", 3, "is damaged JSON at byte"},
           {"huge.json", 3, "is damaged JSON"},
           {"list.json", 3, "\"fit\" is missing"},
           {"bare.json", 3, "\"fit.points_digest\" is missing"},
           {"unknown.json", 3, "\"fit.model\" is no model of this program"},
           {"many.json", 3, "\"fit.points\" is no whole number"},
           {"value.json", 3, "\"fit.parameters[0].value\" is no number"},
           {"short.json", 3, "has not the parameters of its model"},
           {"lists.json", 3, "has lists of different lengths"}}) {
    std::filesystem::remove(folder / "out.json");
    EXPECT_EQ(Compare({"ideal.json", file}), status) << file;
    EXPECT_NE(err.str().find(part), std::string::npos) << file << ": " << err.str();
    EXPECT_FALSE(std::filesystem::exists(folder / "out.json")) << file;
  }
  EXPECT_EQ(Compare({"ideal.json"}), 2);
}

TEST_F(CompareCommandTest, RefusesAFitThatDidNotFinish) {
  EXPECT_EQ(Analyze("[[load]]\nfile = \"a.RA3\"\n[fit]\nmodel = \"Ideal\"\ntime_limit = 1e-9\n"),
            1);
  EXPECT_EQ(Run({"compare", Path("ideal.json"), Path("out.json")}), 3);
  EXPECT_NE(err.str().find("\"fit\" was stopped"), std::string::npos) << err.str();
}

}  // namespace

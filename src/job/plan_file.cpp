#include "job/plan_file.h"

#include <cmath>

#include "job/job_fit.h"
#include "job/job_solution.h"
#include "job/load_words.h"
#include "job/toml_reader.h"
#include "job/toml_writer.h"

namespace quorvane {

namespace {

// A number, or a list of numbers.
std::vector<double> OneOrMany(TableReader& table, const char* key) {
  if (table.IsList(key)) return *table.Numbers(key);
  const std::optional<double> one = table.Number(key);
  return one ? std::vector<double>{*one} : std::vector<double>{};
}

template <class Value>
void Take(const std::optional<Value>& value, Value& member) {
  if (value) member = *value;
}

double Wanted(TableReader& table, const char* key, const char* what) {
  const std::optional<double> value = table.Number(key);
  if (!value) table.Fail(key, what);
  return *value;
}

void ReadTruth(TableReader& table, ExperimentPlan& plan) {
  std::optional<TableReader> parameters = table.Table("parameters");
  if (!parameters) table.Fail("parameters", "a table with the expected values is wanted");
  for (const ModelParameter& parameter : plan.model->parameters) {
    const SharedParameter& shared = *parameter.shared;
    std::optional<TableReader> entry = parameters->Table(shared.name);
    if (!entry) {
      parameters->Fail(shared.name, "the model wants its expected value: { value = ... }");
    }
    plan.truth.*shared.field = Wanted(*entry, "value", "the expected value is wanted");
    plan.fitted[PlaceOf(shared)] = entry->Flag("fit").value_or(true);
    entry->RefuseUnknownKeys();
  }
  for (const SharedParameter& shared : SharedParameters) {
    const bool known = FindParameter(*plan.model, shared) != nullptr;
    if (!known && parameters->Has(shared.name)) {
      parameters->Fail(shared.name, "the model has no such parameter");
    }
  }
  parameters->RefuseUnknownKeys();
}

void ReadSpeeds(TableReader& table, ExperimentPlan& plan) {
  Take(table.Numbers("speeds"), plan.speeds);
  Take(table.Numbers("candidates"), plan.candidates);
  const std::optional<int> choose = table.Integer("choose");
  if (choose.has_value() != table.Has("candidates")) {
    table.Fail("choose", "it says how many of the candidates are chosen; both or neither");
  }
  plan.choose = choose.value_or(0);
}

void ReadCell(TableReader& table, ExperimentPlan& plan) {
  const std::optional<double> meniscus = table.Number("meniscus");
  const std::optional<double> base = table.Number("base");
  const std::optional<std::string> centerpiece = table.Text("centerpiece");
  const bool ends = meniscus && base;
  if (ends == centerpiece.has_value() || meniscus.has_value() != base.has_value()) {
    table.Fail("meniscus", "meniscus and base are wanted, or centerpiece instead of both");
  }
  Take(meniscus, plan.meniscus);
  Take(base, plan.base);
  if (centerpiece) plan.centerpiece = CenterpieceOf(*centerpiece, table);
  Take(table.Integer("points"), plan.points);
}

void ReadConstants(TableReader& table, const std::filesystem::path& folder, ExperimentPlan& plan) {
  Take(table.Number("temperature"), plan.temperature);
  Take(table.Number("vbar"), plan.truth.Vbar);
  Take(table.Number("density"), plan.truth.Density);
  const std::optional<JobSolution> solution = ReadSolution(table, folder);
  if (!solution) return;
  SolutionValues values = ValuesAt(*solution, plan.temperature);
  Take(values.vbar, plan.truth.Vbar);
  Take(values.density, plan.truth.Density);
  plan.notes = std::move(values.remarks);
}

ExperimentPlan ReadTable(TableReader& table, const std::filesystem::path& folder) {
  ExperimentPlan plan;
  plan.model = &ReadModel(table);
  ReadTruth(table, plan);
  ReadSpeeds(table, plan);
  plan.loads = OneOrMany(table, "loads");
  plan.loadsB = OneOrMany(table, "loads_b");
  plan.extCoeff = OneOrMany(table, "ext_coeff");
  plan.extCoeffB = OneOrMany(table, "ext_coeff_b");
  plan.noise = Wanted(table, "noise", "the rms noise is wanted, in signal units");
  Take(table.Number("most_signal"), plan.mostSignal);
  ReadCell(table, plan);
  ReadConstants(table, folder, plan);
  Take(table.Integer("check"), plan.check);
  table.RefuseUnknownKeys();
  return plan;
}

void RequireRules(TableReader& table, const ExperimentPlan& plan) {
  const std::optional<PlanRefusal> refusal = RefusalOf(plan);
  if (!refusal) return;
  if (refusal->table.empty()) table.Fail(refusal->key, refusal->message);
  table.Table(refusal->table)->Fail(refusal->key, refusal->message);
}

void WriteOneOrMany(const char* key, const std::vector<double>& values, TomlWriter& out) {
  if (values.size() == 1) out.Key(key, values.front());
  if (values.size() > 1) out.Key(key, values);
}

void WriteSpeeds(const ExperimentPlan& plan, TomlWriter& out) {
  const std::vector<double>& speeds = Chooses(plan) ? plan.candidates : plan.speeds;
  std::vector<std::int64_t> whole;
  whole.reserve(speeds.size());
  for (const double speed : speeds) whole.push_back(std::llround(speed));
  out.Key(Chooses(plan) ? "candidates" : "speeds", whole);
  if (Chooses(plan)) out.Key("choose", plan.choose);
}

}  // namespace

ExperimentPlan PlanOf(const TomlFile& file, const std::filesystem::path& folder) {
  TableReader table(file.name, "", file.table);
  ExperimentPlan plan = ReadTable(table, folder);
  RequireRules(table, plan);
  return plan;
}

ExperimentPlan ReadPlan(const std::filesystem::path& path) {
  return PlanOf(ReadToml(path), path.parent_path());
}

ExperimentPlan ParsePlan(std::string_view text, const std::string& name,
                         const std::filesystem::path& folder) {
  return PlanOf(ParseToml(text, name), folder);
}

std::string PlanText(const ExperimentPlan& plan) {
  TomlWriter out;
  out.Key("model", plan.model->name);
  WriteSpeeds(plan, out);
  out.Key("loads", plan.loads);
  if (!plan.loadsB.empty()) out.Key("loads_b", plan.loadsB);
  WriteOneOrMany("ext_coeff", plan.extCoeff, out);
  WriteOneOrMany("ext_coeff_b", plan.extCoeffB, out);
  out.Key("noise", plan.noise);
  if (std::isfinite(plan.mostSignal)) out.Key("most_signal", plan.mostSignal);
  if (plan.centerpiece) {
    out.Key("centerpiece", WordOf(*plan.centerpiece));
  } else {
    out.Key("meniscus", plan.meniscus);
    out.Key("base", plan.base);
  }
  out.Key("points", plan.points);
  out.Key("temperature", plan.temperature);
  out.Key("vbar", plan.truth.Vbar);
  out.Key("density", plan.truth.Density);
  if (plan.check > 0) out.Key("check", plan.check);
  out.Table("parameters");
  for (const ModelParameter& parameter : plan.model->parameters) {
    toml::table entry;
    entry.insert("value", plan.truth.*parameter.shared->field);
    if (!plan.Fits(*parameter.shared)) entry.insert("fit", false);
    out.Write(parameter.shared->name, entry);
  }
  return out.Text();
}

}  // namespace quorvane

#include "windows/sim/plan_tables.h"

#include <QObject>
#include <QStringList>
#include <vector>

#include "base/number_format.h"
#include "windows/controls/result_grid.h"

namespace quorvane {

namespace {

QString Shown(const std::optional<double>& value) {
  return value ? QString::fromStdString(FormatParam(*value)) : QStringLiteral("-");
}

QString Pattern(const std::optional<double>& value, const char* pattern) {
  return value ? QString::fromStdString(FormatNumber(*value, pattern)) : QStringLiteral("-");
}

QString SpeedsText(const std::vector<double>& speeds) {
  QStringList texts;
  for (const double speed : speeds) texts << Pattern(speed, "#,##0");
  return texts.join(QStringLiteral(" + "));
}

QString NameOf(const ExpectedError& error) {
  const std::string_view name = error.parameter->shared->name;
  return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

QStringList ErrorRow(const PlanResult& result, std::size_t k) {
  const ExpectedError& error = result.errors[k];
  QStringList row = {NameOf(error), Shown(error.value), Shown(error.sd),
                     Pattern(PercentOf(error), "0.00")};
  for (const auto& value : result.correlations[k]) row << Pattern(value, "0.000");
  return row;
}

}  // namespace

void ShowErrors(QTableWidget& grid, const PlanResult& result,
                const std::optional<PlanCheck>& check) {
  QStringList heads = {QObject::tr("Parameter"), QObject::tr("Value"),
                       QObject::tr("Standard error"), QObject::tr("Error, %")};
  for (const ExpectedError& error : result.errors) {
    heads << QObject::tr("with %1").arg(NameOf(error));
  }
  if (check) heads << QObject::tr("Scatter / error") << QObject::tr("Bias / error");
  std::vector<QStringList> rows;
  for (std::size_t k = 0; k < result.errors.size(); ++k) {
    QStringList row = ErrorRow(result, k);
    if (check) {
      const bool has = k < check->parameters.size();
      const CheckedError found = has ? check->parameters[k] : CheckedError{};
      row << Pattern(found.ratio, "0.00") << Pattern(found.bias, "+0.00;-0.00");
    }
    rows.push_back(row);
  }
  FillGrid(grid, heads, rows, 1);
}

void ShowScans(QTableWidget& grid, const ExperimentPlan& plan, const PlanResult& result) {
  const bool two = plan.TwoComponents();
  const bool many = plan.extCoeff.size() > 1;
  QStringList heads = {QObject::tr("Speed"), QObject::tr("Load")};
  if (two) heads << QObject::tr("Load of B");
  if (many) heads << QObject::tr("Wavelength");
  heads << QObject::tr("Lowest") << QObject::tr("Highest") << QObject::tr("Points")
        << QObject::tr("Sigma, 1/cm^2");
  std::vector<QStringList> rows;
  for (const PlannedScan& scan : result.scans) {
    QStringList row = {Pattern(scan.speed, "#,##0"), Shown(scan.load)};
    if (two) row << Shown(scan.loadB);
    if (many) row << QString::number(scan.wavelength + 1);
    const bool any = scan.points > 0;
    row << (any ? Shown(scan.lowest) : QStringLiteral("-"))
        << (any ? Shown(scan.highest) : QStringLiteral("-")) << QString::number(scan.points)
        << Pattern(scan.sigma, "0.00");
    rows.push_back(row);
  }
  FillGrid(grid, heads, rows, 0);
}

void ShowRanking(QTableWidget& grid, const PlanResult& result) {
  QStringList heads = {QObject::tr("Speeds"), QObject::tr("Score")};
  for (const ExpectedError& error : result.errors) {
    heads << QObject::tr("Error of %1").arg(NameOf(error));
  }
  std::vector<QStringList> rows;
  for (const SpeedChoice& choice : result.ranking) {
    QStringList row = {SpeedsText(choice.speeds), Shown(choice.score)};
    for (const auto& sd : choice.sd) row << Shown(sd);
    rows.push_back(row);
  }
  FillGrid(grid, heads, rows, 1);
}

}  // namespace quorvane

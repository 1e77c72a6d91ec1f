#include "windows/fits/comparison_window.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include "base/number_format.h"
#include "plot/chart_widget.h"
#include "stats/comparison_table.h"
#include "windows/controls/control_names.h"
#include "windows/controls/grid_text.h"

namespace quorvane {

namespace {

constexpr std::size_t kMostCurves = 6;  // more panels could not be read

std::vector<NamedFit> NamedFits(const std::vector<HistoryEntry>& entries) {
  std::vector<NamedFit> fits;
  for (const HistoryEntry& entry : entries) fits.push_back({entry.name, &entry.kept->summary});
  return fits;
}

// The tests and what follows from them, then the formulas.
QString TextOf(const FitComparison& comparison) {
  QStringList parts;
  for (const FitPair& pair : comparison.pairs) {
    QString part = QString::fromStdString(pair.sentence);
    if (pair.test) {
      part = QObject::tr("F(%1, %2) = %3, probability %4\n%5")
                 .arg(pair.test->numerator)
                 .arg(pair.test->denominator)
                 .arg(QString::fromStdString(FormatParam(pair.test->f)),
                      QString::fromStdString(ShownProbability(pair.test->probability)), part);
    }
    parts << part;
  }
  for (const std::string& remark : comparison.remarks) parts << QString::fromStdString(remark);
  parts << QString(kAICcFormula) + '\n' + kBICFormula + '\n' + kFFormula + '\n' +
               QObject::tr(
                   "n points, S sum of squares, k fitted parameters (and 1 for the noise "
                   "in the criteria)");
  return parts.join("\n\n");
}

}  // namespace

ComparisonWindow::ComparisonWindow(Session& session, QWidget* parent)
    : QWidget(parent), session_(session) {
  BuildWidgets();
  ConnectSignals();
}

void ComparisonWindow::BuildWidgets() {
  setObjectName("frmCompareFits");
  setWindowTitle(tr("Comparison of Fits"));
  gridComparison_ = Named(new QTableView, "gridComparison");
  gridComparison_->setAccessibleName(tr("Fits side by side"));
  gridComparison_->setModel(&rows_);
  gridComparison_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  gridComparison_->setTabKeyNavigation(false);
  gridComparison_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
  mnuCopyComparison_ = Named(new QAction(tr("Copy"), gridComparison_), "mnuCopyComparison");
  mnuCopyComparison_->setShortcut(QKeySequence::Copy);
  mnuCopyComparison_->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  gridComparison_->addAction(mnuCopyComparison_);
  gridComparison_->setContextMenuPolicy(Qt::ActionsContextMenu);
  txtComparison_ = Named(new QPlainTextEdit, "txtComparison");
  txtComparison_->setAccessibleName(tr("What follows from the comparison"));
  txtComparison_->setReadOnly(true);
  txtComparison_->setTabChangesFocus(true);
  cmbComparedSet_ = Named(new QComboBox, "cmbComparedSet");
  auto* label = new QLabel(tr("Residuals of"));
  label->setBuddy(cmbComparedSet_);
  chart_ = Named(new ChartWidget, "chartComparison");
  auto* pick = new QHBoxLayout;
  pick->addWidget(label);
  pick->addWidget(cmbComparedSet_, 1);
  auto* right = new QWidget;
  auto* below = new QVBoxLayout(right);
  below->setContentsMargins(0, 0, 0, 0);
  below->addLayout(pick);
  below->addWidget(chart_, 1);
  auto* left = new QSplitter(Qt::Vertical);
  left->setChildrenCollapsible(false);
  left->addWidget(gridComparison_);
  left->addWidget(txtComparison_);
  left->setStretchFactor(0, 3);
  left->setStretchFactor(1, 2);
  auto* parts = new QSplitter(Qt::Horizontal);
  parts->setChildrenCollapsible(false);
  parts->addWidget(left);
  parts->addWidget(right);
  parts->setStretchFactor(0, 3);
  parts->setStretchFactor(1, 2);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(parts);
}

void ComparisonWindow::ConnectSignals() {
  connect(mnuCopyComparison_, &QAction::triggered, this,
          [this] { QGuiApplication::clipboard()->setText(GridText(*gridComparison_)); });
  connect(cmbComparedSet_, &QComboBox::currentIndexChanged, this, &ComparisonWindow::ShowResiduals);
}

void ComparisonWindow::Compare(const std::vector<std::size_t>& places) {
  entries_.clear();
  curves_.clear();
  for (const std::size_t place : places) {
    entries_.push_back(session_.Module.Fits.Entries()[place]);
    const bool whole = entries_.back().packed != nullptr;
    curves_.push_back(whole ? FittedCurves(session_.Module.Fits.Fit(place)->state)
                            : std::vector<FittedCurve>());
  }
  session_.Module.Fits.MarkCompared(places);
  ShowTable();
  ListDatasets();
}

void ComparisonWindow::ShowTable() {
  const std::vector<NamedFit> fits = NamedFits(entries_);
  const std::string refusal = RefusalOfComparison(fits);
  std::optional<FitComparison> comparison;
  if (refusal.empty()) comparison = CompareFits(fits);
  txtComparison_->setPlainText(comparison ? TextOf(*comparison) : QString::fromStdString(refusal));
  const std::vector<ComparisonRow> rows = ComparisonRows(fits, comparison ? &*comparison : nullptr);
  rows_.clear();
  QStringList names;
  for (const NamedFit& fit : fits) names << QString::fromStdString(fit.name);
  QStringList labels;
  for (const ComparisonRow& row : rows) {
    labels << QString::fromStdString(row.name);
    QList<QStandardItem*> cells;
    for (const std::string& cell : row.cells) {
      cells << new QStandardItem(QString::fromStdString(cell));
    }
    rows_.appendRow(cells);
  }
  rows_.setHorizontalHeaderLabels(names);
  rows_.setVerticalHeaderLabels(labels);
  // A few share the width; more scroll.
  constexpr int kMostShared = 3;
  const bool few = rows_.columnCount() <= kMostShared;
  gridComparison_->horizontalHeader()->setSectionResizeMode(few ? QHeaderView::Stretch
                                                                : QHeaderView::Interactive);
  if (!few) gridComparison_->resizeColumnsToContents();
  QTimer::singleShot(0, gridComparison_, &QTableView::resizeRowsToContents);  // once it is shown
}

// By position in the fits; of different points there is nothing to lay one over the other.
void ComparisonWindow::ListDatasets() {
  const int before = cmbComparedSet_->currentIndex();
  const bool alike = RefusalOfComparison(NamedFits(entries_)).empty();
  {
    const QSignalBlocker quiet(cmbComparedSet_);
    cmbComparedSet_->clear();
    if (alike) {
      for (const ScanName& scan : entries_.front().kept->scans) {
        cmbComparedSet_->addItem(QString::fromStdString(scan.name));
      }
    }
    if (before >= 0 && before < cmbComparedSet_->count()) cmbComparedSet_->setCurrentIndex(before);
  }
  ShowResiduals();
}

void ComparisonWindow::ShowResiduals() {
  const int set = cmbComparedSet_->currentIndex();
  std::vector<NamedCurve> curves;
  for (std::size_t k = 0; set >= 0 && k < entries_.size(); ++k) {
    const auto place = static_cast<std::size_t>(set);
    if (place < curves_[k].size()) curves.push_back({entries_[k].name, curves_[k][place]});
  }
  std::string name = cmbComparedSet_->currentText().toStdString();
  if (curves.size() > kMostCurves) {
    curves.resize(kMostCurves);
    name += tr(" (the first %1 fits)").arg(kMostCurves).toStdString();
  }
  chart_->SetChart(curves.empty() ? Chart() : PlotComparedResiduals(name, curves));
}

PrintContent ComparisonWindow::Printed() const {
  if (entries_.empty()) return {};
  return PrintedGrid{windowTitle(), &rows_};
}

QSize ComparisonWindow::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 165, fontMetrics().height() * 38};
}

}  // namespace quorvane

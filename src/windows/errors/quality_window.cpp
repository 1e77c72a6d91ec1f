#include "windows/errors/quality_window.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>

#include "base/arithmetic.h"
#include "core/program_state.h"
#include "windows/controls/control_names.h"
#include "windows/controls/dataset_tip.h"
#include "windows/controls/grid_text.h"

namespace quorvane {

namespace {

std::vector<RowName> NamesOf(const FitQuality& quality, const std::vector<Dataset>& datasets) {
  std::vector<RowName> names;
  for (const SetQuality& set : quality.sets) {
    const Dataset& dataset = datasets.at(static_cast<std::size_t>(set.dataset - 1));
    names.push_back({QString::fromStdString(NameOf(dataset)), DatasetTip(dataset)});
  }
  return names;
}

QString RemarkText(const FitQuality& quality, const std::optional<RestVerdict>& rest) {
  QStringList lines;
  for (const std::string& remark : QualityRemarks(quality, rest)) {
    lines << QStringLiteral("\u2022 ") + QString::fromStdString(remark);
  }
  if (lines.isEmpty()) return QObject::tr("Nothing speaks against this fit.");
  return lines.join('\n');
}

}  // namespace

QualityWindow::QualityWindow(QWidget* parent) : QWidget(parent) {
  BuildWidgets();
  ConnectSignals();
  Clear();
}

void QualityWindow::BuildWidgets() {
  setObjectName("frmFitQuality");
  setWindowTitle(tr("Fit Quality"));
  gridQuality_ = Named(new QTableView, "gridQuality");
  gridQuality_->setAccessibleName(tr("Residuals of each dataset"));
  gridQuality_->setModel(&rows_);
  gridQuality_->setTabKeyNavigation(false);
  gridQuality_->setSelectionBehavior(QAbstractItemView::SelectRows);
  gridQuality_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
  gridQuality_->horizontalHeader()->setStretchLastSection(true);
  mnuCopyQuality_ = Named(new QAction(tr("Copy"), gridQuality_), "mnuCopyQuality");
  mnuCopyQuality_->setShortcut(QKeySequence::Copy);
  mnuCopyQuality_->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  gridQuality_->addAction(mnuCopyQuality_);
  gridQuality_->setContextMenuPolicy(Qt::ActionsContextMenu);
  txtQualityRemarks_ = Named(new QPlainTextEdit, "txtQualityRemarks");
  txtQualityRemarks_->setAccessibleName(tr("Remarks"));
  txtQualityRemarks_->setReadOnly(true);
  txtQualityRemarks_->setTabChangesFocus(true);
  auto* parts = new QSplitter(Qt::Vertical);
  parts->setChildrenCollapsible(false);
  parts->addWidget(gridQuality_);
  parts->addWidget(txtQualityRemarks_);
  parts->setStretchFactor(0, 3);
  parts->setStretchFactor(1, 2);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(parts);
}

void QualityWindow::ConnectSignals() {
  connect(mnuCopyQuality_, &QAction::triggered, this, &QualityWindow::CopyRows);
}

void QualityWindow::ShowFit(const QuorvaneModule& module) {
  if (!module.LastFit) return Clear();
  try {
    const FitQuality quality =
        CalcFitQuality(module.LastFit->state, module.FitPage, module.ConstantsSet,
                       module.Preferences.CriticalCCCValue);
    rows_.Show(quality, NamesOf(quality, module.Store.Datasets));
    txtQualityRemarks_->setPlainText(RemarkText(quality, module.LastFit->rest));
    gridQuality_->resizeColumnsToContents();
    hasFit_ = true;
  } catch (const ArithmeticFault& fault) {
    Clear();
    txtQualityRemarks_->setPlainText(
        tr("The residuals of this fit have no statistics: %1.").arg(fault.what()));
  }
}

void QualityWindow::Clear() {
  hasFit_ = false;
  rows_.Clear();
  txtQualityRemarks_->setPlainText(
      tr("There is no finished fit, or the page has been changed since. Run the fit again."));
}

PrintContent QualityWindow::Printed() const {
  if (!hasFit_) return {};
  return PrintedGrid{windowTitle(), &rows_};
}

QSize QualityWindow::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 124, fontMetrics().height() * 28};
}

void QualityWindow::CopyRows() const {
  QGuiApplication::clipboard()->setText(GridText(*gridQuality_));
}

}  // namespace quorvane

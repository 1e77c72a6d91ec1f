#include "windows/graphs/graphs_window.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <exception>

#include "core/graph_store.h"
#include "plot/chart_widget.h"
#include "windows/controls/child_window.h"
#include "windows/graphs/chart_clipboard.h"
#include "windows/graphs/export_dialog.h"

namespace quorvane {

namespace {

constexpr QSize kLeastSize(6000, 3000);  // twips

}  // namespace

GraphsWindow::GraphsWindow(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  BuildWidgets();
  connect(TeeChartList_, &QComboBox::currentIndexChanged, this, &GraphsWindow::ShowChoice);
  connect(cmdExport_, &QPushButton::clicked, this, &GraphsWindow::Export);
  connect(cmdCopy_, &QPushButton::clicked, this, &GraphsWindow::Copy);
  Refresh();
}

void GraphsWindow::BuildWidgets() {
  setObjectName("frmGraphs");
  setWindowTitle(tr("Export Graphs"));
  setMinimumSize(FromTwips(*this, kLeastSize));
  TeeChartList_ = new QComboBox;
  TeeChartList_->setObjectName("TeeChartList");
  TeeChartList_->setAccessibleName(tr("Graphs"));
  TeeChartList_->setMaxVisibleItems(20);
  cmdExport_ = new QPushButton(tr("&Export..."));
  cmdExport_->setObjectName("cmdExportGraph");
  cmdCopy_ = new QPushButton(tr("&Copy Picture"));
  cmdCopy_->setObjectName("cmdCopyGraph");
  ExportTChart_ = new ChartWidget;
  ExportTChart_->setObjectName("ExportTChart");
  ExportTChart_->setMinimumSize(160, 90);  // below the least window
  // A kept graph is looked at as it is: no zoom.
  ExportTChart_->setAttribute(Qt::WA_TransparentForMouseEvents);
  auto* top = new QHBoxLayout;
  top->addWidget(TeeChartList_, 1);
  top->addWidget(cmdExport_);
  top->addWidget(cmdCopy_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addLayout(top);
  layout->addWidget(ExportTChart_, 1);
}

void GraphsWindow::Refresh() {
  const int choice = std::max(0, TeeChartList_->currentIndex());
  const int graphs = session_.Module.NumGraphs();
  {
    const QSignalBlocker quiet(TeeChartList_);
    TeeChartList_->clear();
    for (int k = 1; k <= graphs; ++k) TeeChartList_->addItem(tr("Graph #%1").arg(k));
    TeeChartList_->setCurrentIndex(choice < graphs ? choice : std::min(0, graphs - 1));
  }
  ShowChoice();
}

void GraphsWindow::ShowGraph(int number) {
  TeeChartList_->setCurrentIndex(number - 1);
}

void GraphsWindow::ShowChoice() {
  const int index = TeeChartList_->currentIndex();
  ExportTChart_->SetChart(index < 0 ? Chart() : GraphAt(session_.Module, index + 1));
  const bool drawn = !ExportTChart_->GetChart().panels.empty();
  cmdExport_->setEnabled(drawn);
  cmdCopy_->setEnabled(drawn);
}

PrintContent GraphsWindow::Printed() const {
  return ExportTChart_;
}

void GraphsWindow::mouseDoubleClickEvent(QMouseEvent* event) {
  if (cmdExport_->isEnabled() && ExportTChart_->geometry().contains(event->pos())) Export();
}

void GraphsWindow::Export() {
  const QString name = tr("Graph %1").arg(TeeChartList_->currentIndex() + 1);
  auto* dialog = new ExportDialog(session_, ExportTChart_->GetChart(), name, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->open();
}

void GraphsWindow::Copy() {
  CopyChart(ExportTChart_->GetChart(), {}, session_.Ask, this);
}

}  // namespace quorvane

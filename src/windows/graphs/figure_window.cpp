#include "windows/graphs/figure_window.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>
#include <exception>

#include "base/quiet_host.h"
#include "core/page/figure_sets.h"
#include "core/settings/settings.h"
#include "plot/chart_csv.h"
#include "plot/figure_widget.h"
#include "windows/controls/busy_pointer.h"
#include "windows/controls/child_window.h"
#include "windows/controls/control_names.h"
#include "windows/controls/dataset_tip.h"
#include "windows/graphs/chart_clipboard.h"
#include "windows/graphs/figure_options.h"

namespace quorvane {

namespace {

constexpr int kMarkSide = 16;  // pixels, of a mark in the list
constexpr const char* kChoicesKey = "FigureChoices";

}  // namespace

FigureWindow::FigureWindow(Session& session, QWidget* parent)
    : QWidget(parent), session_(session), options_(new FigureOptions(this)) {
  BuildWidgets();
  ConnectSignals();
}

void FigureWindow::BuildWidgets() {
  setObjectName("frmFigure");
  setWindowTitle(tr("Figure"));
  picture_ = Named(new FigureWidget, "picFigure");
  picture_->setAccessibleName(tr("Figure"));
  picture_->setToolTip(tr("Drag to the right to zoom into a panel, to the left for all points"));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(picture_, 1);
  layout->addWidget(BuildSide());
}

QWidget* FigureWindow::BuildSide() {
  auto* tabs = Named(new QTabWidget, "tabFigure");
  tabs->addTab(BuildDatasets(), tr("Data"));
  tabs->addTab(options_->LayoutPage(), tr("Layout"));
  tabs->addTab(options_->TextsPage(), tr("Texts"));
  lblRemark_ = Named(new QLabel, "lblFigureRemark");
  lblRemark_->setWordWrap(true);
  lblRemark_->hide();
  auto* side = new QWidget;
  side->setFixedWidth(fontMetrics().averageCharWidth() * 47);
  auto* layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(tabs, 1);
  layout->addWidget(lblRemark_);
  layout->addWidget(BuildButtons());
  return side;
}

QWidget* FigureWindow::BuildDatasets() {
  auto* page = new QWidget;
  sets_ = Named(new QListWidget, "lisFigureSets");
  sets_->setAccessibleName(tr("Datasets"));
  cmdAll_ = Named(new QPushButton(tr("&All")), "cmdFigureAll");
  cmdNone_ = Named(new QPushButton(tr("&None")), "cmdFigureNone");
  auto* choose = new QHBoxLayout;
  choose->addWidget(cmdAll_);
  choose->addWidget(cmdNone_);
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(sets_, 1);
  layout->addLayout(choose);
  layout->addWidget(options_->ShownParts());
  return page;
}

QWidget* FigureWindow::BuildButtons() {
  cmdZoomOut_ = Named(new QPushButton(tr("&Zoom Out")), "cmdFigureZoomOut");
  cmdExport_ = Named(new QPushButton(tr("&Export...")), "cmdFigureExport");
  cmdCopy_ = Named(new QPushButton(tr("&Copy Picture")), "cmdFigureCopy");
  cmdNumbers_ = Named(new QPushButton(tr("Save Num&bers...")), "cmdFigureNumbers");
  cmdNumbers_->setToolTip(tr("All plotted numbers as a table (CSV)"));
  options_->Formats()->setAccessibleName(tr("Format"));
  auto* buttons = new QWidget;
  auto* grid = new QGridLayout(buttons);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->addWidget(options_->Formats(), 0, 0);
  grid->addWidget(cmdExport_, 0, 1);
  grid->addWidget(cmdCopy_, 1, 0);
  grid->addWidget(cmdNumbers_, 1, 1);
  grid->addWidget(cmdZoomOut_, 2, 0);
  for (const int column : {0, 1}) grid->setColumnStretch(column, 1);
  return buttons;
}

void FigureWindow::ConnectSignals() {
  connect(sets_, &QListWidget::itemChanged, this, &FigureWindow::Draw);
  connect(cmdAll_, &QPushButton::clicked, this, [this] { CheckAll(true); });
  connect(cmdNone_, &QPushButton::clicked, this, [this] { CheckAll(false); });
  connect(options_, &FigureOptions::AxesChanged, this, [this] { zoomed_.clear(); });
  connect(options_, &FigureOptions::Changed, this, &FigureWindow::Draw);
  connect(picture_, &FigureWidget::ZoomWanted, this, [this](int cell, const ChartArea& area) {
    zoomed_[picture_->GetFigure().cells[static_cast<std::size_t>(cell)].title] = area;
    Draw();
  });
  const auto zoomOut = [this] {
    zoomed_.clear();
    Draw();
  };
  connect(picture_, &FigureWidget::ZoomOutWanted, this, zoomOut);
  connect(cmdZoomOut_, &QPushButton::clicked, this, zoomOut);
  connect(cmdExport_, &QPushButton::clicked, this, &FigureWindow::Export);
  connect(cmdNumbers_, &QPushButton::clicked, this, &FigureWindow::SaveNumbers);
  connect(cmdCopy_, &QPushButton::clicked, this, &FigureWindow::Copy);
}

QSize FigureWindow::sizeHint() const {
  return FromTwips(*this, {15600, 9000});
}

void FigureWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!choicesTaken_) {
    const QSignalBlocker quiet(options_);
    options_->TakeLine(QString::fromStdString(LoadArrangement(session_.Settings, kChoicesKey)));
    choicesTaken_ = true;
  }
  Refresh();
}

// What cannot be kept is no loss that needs a word.
void FigureWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  QuietHost quiet;
  if (choicesTaken_) {
    SaveArrangement(kChoicesKey, options_->Line().toStdString(), session_.Settings, quiet);
  }
}

void FigureWindow::Refresh() {
  if (!isVisible()) return;
  if (!session_.Module.Figure) {  // of this experiment: texts and zoom were those of another
    options_->ForgetTexts();
    zoomed_.clear();
  }
  ListDatasets();
  options_->SetFitted(session_.Module.LastFit != nullptr);
  Draw();
}

void FigureWindow::ListDatasets() {
  const QSignalBlocker quiet(sets_);
  std::map<FigureScan, Qt::CheckState> checks;
  for (int k = 0; k < sets_->count(); ++k)
    checks[listed_[std::size_t(k)]] = sets_->item(k)->checkState();
  sets_->clear();
  listed_.clear();
  for (const Dataset& dataset : session_.Module.Store.Datasets) {
    const auto known = checks.find(listed_.emplace_back(dataset));
    const QString name = QString::fromStdString(NameOf(dataset));
    auto* item = new QListWidgetItem(QStringLiteral("%1: %2").arg(listed_.size()).arg(name), sets_);
    item->setToolTip(DatasetTip(dataset));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(known != checks.end() ? known->second
                        : IsBlank(dataset)    ? Qt::Unchecked
                                              : Qt::Checked);
  }
}

void FigureWindow::CheckAll(bool on) {
  {
    const QSignalBlocker quiet(sets_);
    for (int k = 0; k < sets_->count(); ++k) {
      sets_->item(k)->setCheckState(on ? Qt::Checked : Qt::Unchecked);
    }
  }
  Draw();
}

std::vector<int> FigureWindow::Checked() const {
  std::vector<int> places;
  for (int k = 0; k < sets_->count(); ++k) {
    if (sets_->item(k)->checkState() == Qt::Checked) places.push_back(k);
  }
  return places;
}

// So that the report can show the same.
void FigureWindow::KeepSetup() {
  FigureSetup setup{.choices = options_->Choices()};
  for (int k = 0; k < sets_->count(); ++k) {
    const bool shown = sets_->item(k)->checkState() == Qt::Checked;
    if (!shown) setup.hidden.insert(listed_[static_cast<std::size_t>(k)]);
  }
  session_.Module.Figure = std::move(setup);
}

Figure FigureWindow::Drawn() const {
  const QuorvaneModule& module = session_.Module;
  FigureChoices choices = options_->Choices();
  const bool withFit = choices.content != FigureContent::kData || choices.curves ||
                       choices.residuals || choices.species ||
                       choices.signal == FigureSignal::kLogarithm;
  const FitState* fit = nullptr;
  if (module.LastFit) {
    fit = &module.LastFit->state;
    choices.trueWeights = module.LastFit->constantsSet.Vbar && module.LastFit->constantsSet.Density;
  }
  Figure figure = MakeFigure(FigureSets(module, Checked(), withFit), fit, choices);
  for (FigureCell& cell : figure.cells) {
    const auto zoom = zoomed_.find(cell.title);
    if (zoom != zoomed_.end()) cell.view = zoom->second;
  }
  return figure;
}

void FigureWindow::Draw() {
  if (!isVisible()) return;
  KeepSetup();
  Figure figure = Drawn();
  ShowLooks(figure);
  options_->ListTexts(figure);
  QStringList remarks;
  for (const std::string& remark : figure.remarks) remarks += QString::fromStdString(remark);
  lblRemark_->setText(remarks.join(u'\n'));
  lblRemark_->setVisible(!remarks.isEmpty());
  bool drawn = false;
  for (const FigureCell& cell : figure.cells) drawn = drawn || !cell.series.empty();
  for (QPushButton* button : {cmdExport_, cmdCopy_, cmdNumbers_}) button->setEnabled(drawn);
  cmdZoomOut_->setEnabled(!zoomed_.empty());
  const FigureSize size = SizeOf(figure);
  options_->ShowHeight(size.height);
  picture_->SetFigure(std::move(figure), size);
}

// The marks of the datasets that are shown, beside their names.
void FigureWindow::ShowLooks(const Figure& figure) {
  const QSignalBlocker quiet(sets_);
  QPixmap none(kMarkSide, kMarkSide);
  none.fill(Qt::transparent);
  for (int k = 0; k < sets_->count(); ++k) sets_->item(k)->setIcon(none);
  for (const FigureCell& cell : figure.cells) {
    for (const FigureSeries& series : cell.series) {
      sets_->item(int(series.number))->setIcon(MarkPicture(series.look, kMarkSide));
    }
  }
}

PrintContent FigureWindow::Printed() const {
  return picture_;
}

template <class Content>
void FigureWindow::Save(const QString& filter, const QString& name, Content content) {
  const QString file =
      session_.Ask.SaveFile(this, {tr("Save"), ToQString(session_.CurrentFolder), filter, name});
  if (file.isEmpty()) return;
  try {
    const BusyPointer busy;
    WriteWholeFile(ToPath(file), content(ToPath(file)));
    session_.CurrentFolder = ToPath(file).parent_path();
  } catch (const std::exception& fault) {
    session_.Ask.ShowMessage(this, "", QString::fromUtf8(fault.what()), MessageIcon::kExclamation);
  }
}

void FigureWindow::Export() {
  const FigureFile chosen = options_->File();
  const struct {
    QString filter;
    QString name;
  } kinds[] = {{tr("PNG picture (*.png)"), tr("Figure.png")},
               {tr("SVG drawing (*.svg)"), tr("Figure.svg")},
               {tr("PDF document (*.pdf)"), tr("Figure.pdf")}};
  const auto& kind = kinds[static_cast<std::size_t>(chosen.format)];
  Save(kind.filter, kind.name, [&](const std::filesystem::path& file) {
    const PictureFormat format = PictureFormatOf(file).value_or(chosen.format);
    return RenderFigure(picture_->GetFigure(), format, picture_->PageSize(), chosen.dpi);
  });
}

void FigureWindow::SaveNumbers() {
  Save(tr("Comma-separated values (*.csv)"), tr("Figure.csv"),
       [this](const std::filesystem::path&) { return ChartCsv(NumbersOf(picture_->GetFigure())); });
}

void FigureWindow::Copy() {
  CopyFigure(picture_->GetFigure(), picture_->PageSize(), session_.Ask, this);
}

}  // namespace quorvane

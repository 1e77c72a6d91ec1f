#include "windows/errors/error_analysis_window.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "base/files.h"
#include "base/number_format.h"
#include "core/report/report_errors.h"
#include "plot/chart_widget.h"
#include "stats/error_plots.h"
#include "stats/error_tables.h"
#include "windows/controls/control_names.h"
#include "windows/controls/result_grid.h"
#include "windows/errors/error_choices.h"
#include "windows/graphs/chart_clipboard.h"
#include "windows/graphs/export_dialog.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

constexpr int kParameter = Qt::UserRole;  // of a row: the place of its parameter in FitA

void Fill(QTableWidget& grid, const ReportTable* table) {
  constexpr int kFirstNumber = 2;
  QStringList heads;
  std::vector<QStringList> rows;
  if (table != nullptr) {
    for (const std::string& head : table->head) heads << QString::fromStdString(head);
    for (const std::vector<ReportText>& cells : table->rows) {
      QStringList& row = rows.emplace_back();
      for (const ReportText& cell : cells) row << QString::fromStdString(cell.text);
    }
  }
  FillGrid(grid, heads, rows, kFirstNumber);
}

}  // namespace

ErrorAnalysisWindow::ErrorAnalysisWindow(Session& session, QWidget* parent)
    : QWidget(parent), session_(session) {
  BuildWidgets();
  ConnectSignals();
  Outdate();
}

void ErrorAnalysisWindow::BuildWidgets() {
  setObjectName("frmErrorAnalysis");
  setWindowTitle(tr("Error Analysis"));
  choices_ = new ErrorChoices(session_);
  auto* left = new QWidget;
  auto* side = new QVBoxLayout(left);
  side->setContentsMargins(0, 0, 0, 0);
  side->addWidget(choices_, 1);
  side->addWidget(BuildRun());
  auto* parts = new QSplitter(Qt::Horizontal);
  parts->setChildrenCollapsible(false);
  parts->addWidget(left);
  parts->addWidget(BuildResults());
  parts->setStretchFactor(0, 0);
  parts->setStretchFactor(1, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(parts);
}

QWidget* ErrorAnalysisWindow::BuildRun() {
  constexpr int kSteps = 1000;
  cmdCalcErrors_ = Named(new QPushButton(tr("&Calculate")), "cmdCalcErrors");
  cmdStopErrors_ = Named(new QPushButton(tr("&Stop")), "cmdStopErrors");
  cmdStopErrors_->setToolTip(tr("Ends the analysis with what is done"));
  prgErrors_ = Named(new QProgressBar, "prgErrors");
  prgErrors_->setRange(0, kSteps);
  auto* box = new QWidget;
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdCalcErrors_);
  buttons->addWidget(cmdStopErrors_);
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(buttons);
  layout->addWidget(prgErrors_);
  return box;
}

QWidget* ErrorAnalysisWindow::BuildResults() {
  lblErrors_ = Named(new QLabel, "lblErrors");
  lblErrors_->setWordWrap(true);
  gridErrors_ = ResultGrid("gridErrors", tr("Limits of the parameters"));
  gridDerived_ = ResultGrid("gridDerived", tr("Derived quantities"));
  tabErrors_ = Named(new QTabWidget, "tabErrors");
  tabErrors_->addTab(gridErrors_, tr("Limits"));
  tabErrors_->addTab(gridDerived_, tr("Derived Quantities"));
  cmbErrorPicture_ = Named(new QComboBox, "cmbErrorPicture");
  cmbErrorPicture_->setAccessibleName(tr("Picture"));
  teeErrors_ = Named(new ChartWidget, "teeErrors");
  cmdCopyErrors_ = Named(new QPushButton(tr("Copy Pict&ure")), "cmdCopyErrors");
  cmdExportErrors_ = Named(new QPushButton(tr("E&xport...")), "cmdExportErrors");
  cmdSaveErrors_ = Named(new QPushButton(tr("Save &Tables...")), "cmdSaveErrors");
  cmdSaveErrors_->setToolTip(tr("Limits, profiles, replicates and surfaces as CSV files"));
  auto* foot = new QHBoxLayout;
  foot->addWidget(cmbErrorPicture_, 1);
  for (QPushButton* button : {cmdCopyErrors_, cmdExportErrors_, cmdSaveErrors_}) {
    foot->addWidget(button);
  }
  auto* picture = new QWidget;
  auto* below = new QVBoxLayout(picture);
  below->setContentsMargins(0, 0, 0, 0);
  below->addLayout(foot);
  below->addWidget(teeErrors_, 1);
  auto* parts = new QSplitter(Qt::Vertical);
  parts->setChildrenCollapsible(false);
  parts->addWidget(tabErrors_);
  parts->addWidget(picture);
  parts->setStretchFactor(0, 2);
  parts->setStretchFactor(1, 3);
  auto* box = new QWidget;
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(lblErrors_);
  layout->addWidget(parts, 1);
  return box;
}

void ErrorAnalysisWindow::ConnectSignals() {
  connect(cmdCalcErrors_, &QPushButton::clicked, this, [this] {
    if (const std::optional<ErrorRequest> request = choices_->Request()) {
      emit CalculateRequested(*request);
    }
  });
  connect(cmdStopErrors_, &QPushButton::clicked, this, &ErrorAnalysisWindow::StopRequested);
  connect(gridErrors_, &QTableWidget::itemSelectionChanged, this, &ErrorAnalysisWindow::FollowRow);
  connect(cmbErrorPicture_, &QComboBox::currentIndexChanged, this,
          &ErrorAnalysisWindow::ShowPicture);
  connect(cmdCopyErrors_, &QPushButton::clicked, this,
          [this] { CopyChart(teeErrors_->ShownChart(), {}, session_.Ask, this); });
  connect(cmdExportErrors_, &QPushButton::clicked, this, &ErrorAnalysisWindow::ExportPicture);
  connect(cmdSaveErrors_, &QPushButton::clicked, this, &ErrorAnalysisWindow::SaveTables);
}

void ErrorAnalysisWindow::TakeFit() {
  fit_ = session_.Module.LastFit;
  found_ = {};
  choices_->ShowFit(fit_->state);
  lblErrors_->setText(
      tr("Choose parameters and methods, then press \"Calculate\". The limits are around the fit "
         "at rest."));
  FillTables();
  FillPictures();
  UpdateButtons();
}

void ErrorAnalysisWindow::Outdate() {
  fit_.reset();
  lblErrors_->setText(found_.parameters.empty() && found_.surfaces.empty()
                          ? tr("There is no finished fit, or the page has been changed since. Run "
                               "the fit again.")
                          : tr("These are the errors of an earlier fit: the page has been changed "
                               "since."));
  UpdateButtons();
}

void ErrorAnalysisWindow::SetRunning(bool on) {
  running_ = on;
  if (on) {
    sinceStart_.start();
    prgErrors_->setValue(0);
    prgErrors_->setFormat(tr("0 %"));
    cmdStopErrors_->setEnabled(true);
    cmdStopErrors_->setFocus();
  }
  UpdateButtons();
}

void ErrorAnalysisWindow::ShowShare(double share) {
  if (!running_) return;
  constexpr double kWorthTelling = 0.02;
  prgErrors_->setValue(static_cast<int>(share * prgErrors_->maximum()));
  const int percent = static_cast<int>(100.0 * share);
  if (share < kWorthTelling) {
    prgErrors_->setFormat(tr("%1 %").arg(percent));
    return;
  }
  const double seconds = static_cast<double>(sinceStart_.elapsed()) / 1000.0;
  const double left = seconds * (1.0 - share) / share;
  prgErrors_->setFormat(tr("%1 %, about %2 s left").arg(percent).arg(static_cast<int>(left) + 1));
}

void ErrorAnalysisWindow::ShowErrors(const ErrorAnalysis& found) {
  found_ = found;
  QString text;
  if (!found.error.empty()) {
    text = QString::fromStdString(found.error);
  } else {
    QStringList lines = {tr("Around the fit at rest: sum of squares %1, %2 degrees of freedom.")
                             .arg(QString::fromStdString(FormatNumber(found.sum, "0.0000E+00")))
                             .arg(found.freedom)};
    if (found.stopped) lines << tr("Stopped before the end.");
    // How it was found is for the report; what speaks against it for everybody.
    const std::vector<std::string> paragraphs = ErrorParagraphs(found);
    for (std::size_t k = 1; k < paragraphs.size(); ++k) {
      lines << QString::fromStdString(paragraphs[k]);
    }
    text = lines.join(QStringLiteral(" "));
    lblErrors_->setToolTip(QString::fromStdString(paragraphs.front()));
  }
  lblErrors_->setText(text);
  prgErrors_->setFormat(
      tr("%1 s").arg(QString::number(static_cast<double>(sinceStart_.elapsed()) / 1000.0, 'f', 2)));
  prgErrors_->setValue(found.stopped ? prgErrors_->value() : prgErrors_->maximum());
  FillTables();
  FillPictures();
  UpdateButtons();
}

void ErrorAnalysisWindow::FillTables() {
  const std::vector<ReportTable> tables =
      found_.parameters.empty() ? std::vector<ReportTable>() : ErrorTables(found_);
  Fill(*gridErrors_, tables.empty() ? nullptr : &tables[0]);
  Fill(*gridDerived_, tables.size() < 2 ? nullptr : &tables[1]);
  tabErrors_->setTabEnabled(1, tables.size() > 1);
  for (int row = 0; row < gridErrors_->rowCount(); ++row) {
    const std::string name = gridErrors_->item(row, 0)->text().toStdString();
    const auto named =
        std::find_if(found_.parameters.begin(), found_.parameters.end(),
                     [&](const ParameterErrors& errors) { return errors.name == name; });
    if (named != found_.parameters.end()) {
      gridErrors_->item(row, 0)->setData(kParameter, named->parameter);
    }
  }
}

void ErrorAnalysisWindow::AddPicture(const ParameterErrors& errors,
                                     const std::optional<ParameterReplicates>& found,
                                     const QString& name) {
  if (!found || found->values.empty()) return;
  pictures_.push_back({tr("%1: %2").arg(name, QString::fromStdString(errors.name)),
                       errors.parameter, [&errors, &found, title = name.toStdString()] {
                         return PlotReplicates(errors, *found, title);
                       }});
}

void ErrorAnalysisWindow::FillPictures() {
  pictures_.clear();
  for (const ParameterErrors& errors : found_.parameters) {
    if (errors.profile && !errors.profile->curve.empty()) {
      pictures_.push_back({tr("Profile: %1").arg(QString::fromStdString(errors.name)),
                           errors.parameter,
                           [this, &errors] { return PlotProfile(found_, errors); }});
    }
    AddPicture(errors, errors.monteCarlo, tr("Monte Carlo"));
    AddPicture(errors, errors.bootstrap, tr("Bootstrap"));
  }
  for (const ErrorSurface& surface : found_.surfaces) {
    const QString name =
        tr("Surface: %1, %2")
            .arg(QString::fromStdString(surface.xName), QString::fromStdString(surface.yName));
    pictures_.push_back({name, 0, [this, &surface] { return PlotSurface(found_, surface); }});
  }
  const QSignalBlocker quiet(cmbErrorPicture_);
  cmbErrorPicture_->clear();
  for (const Picture& picture : pictures_) cmbErrorPicture_->addItem(picture.name);
  ShowPicture();
}

void ErrorAnalysisWindow::ShowPicture() {
  const auto place = static_cast<std::size_t>(cmbErrorPicture_->currentIndex());
  teeErrors_->SetChart(place < pictures_.size() ? pictures_[place].draw() : Chart{});
}

// The picture of the parameter and method whose row is chosen.
void ErrorAnalysisWindow::FollowRow() {
  const int row = gridErrors_->currentRow();
  if (row < 0 || gridErrors_->item(row, 0) == nullptr) return;
  const int parameter = gridErrors_->item(row, 0)->data(kParameter).toInt();
  const QString method = gridErrors_->item(row, 1)->text();
  int first = -1;
  for (std::size_t k = 0; k < pictures_.size(); ++k) {
    if (pictures_[k].parameter != parameter) continue;
    if (first < 0) first = static_cast<int>(k);
    if (!pictures_[k].name.startsWith(method, Qt::CaseInsensitive)) continue;
    first = static_cast<int>(k);
    break;
  }
  if (first >= 0) cmbErrorPicture_->setCurrentIndex(first);
}

// One file for each kind of table that there is, named after the first.
void ErrorAnalysisWindow::SaveTables() {
  const QString name =
      session_.Ask.SaveFile(this, {tr("Save Tables"), ToQString(session_.CurrentFolder),
                                   tr("Tables (*.csv)"), QStringLiteral("errors.csv")});
  if (name.isEmpty()) return;
  const std::filesystem::path path = ToPath(name);
  const auto beside = [&](const std::string& what) {
    return path.parent_path() /
           PathFromText(PathText(path.stem()) + "-" + what + PathText(path.extension()));
  };
  const auto has = [&](auto member) {
    return std::any_of(found_.parameters.begin(), found_.parameters.end(),
                       [&](const ParameterErrors& errors) { return (errors.*member).has_value(); });
  };
  try {
    WriteWholeFile(path, ErrorLimitsTable(found_));
    if (has(&ParameterErrors::profile)) {
      WriteWholeFile(beside("profiles"), ErrorCurvesTable(found_));
    }
    if (has(&ParameterErrors::monteCarlo) || has(&ParameterErrors::bootstrap)) {
      WriteWholeFile(beside("replicates"), ErrorReplicatesTable(found_));
    }
    int number = 0;
    for (const ErrorSurface& surface : found_.surfaces) {
      WriteWholeFile(beside("surface-" + std::to_string(++number)), ErrorSurfaceTable(surface));
    }
  } catch (const FileFault& fault) {
    session_.Ask.ShowMessage(this, tr("Save Tables"), QString::fromUtf8(fault.what()),
                             MessageIcon::kExclamation);
    return;
  }
  session_.CurrentFolder = path.parent_path();
}

void ErrorAnalysisWindow::ExportPicture() {
  auto* dialog =
      new ExportDialog(session_, teeErrors_->ShownChart(), cmbErrorPicture_->currentText(), this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->open();
}

void ErrorAnalysisWindow::UpdateButtons() {
  const bool found = !found_.parameters.empty() || !found_.surfaces.empty();
  choices_->setEnabled(!running_ && fit_ != nullptr);
  cmdCalcErrors_->setEnabled(!running_ && fit_ != nullptr);
  cmdStopErrors_->setEnabled(running_);
  cmbErrorPicture_->setEnabled(!pictures_.empty());
  cmdCopyErrors_->setEnabled(!pictures_.empty());
  cmdExportErrors_->setEnabled(!running_ && !pictures_.empty());
  cmdSaveErrors_->setEnabled(!running_ && found);
}

PrintContent ErrorAnalysisWindow::Printed() const {
  if (pictures_.empty()) return {};
  return teeErrors_;
}

}  // namespace quorvane

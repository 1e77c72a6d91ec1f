#include "windows/frame/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <algorithm>

#include "core/new_experiment.h"
#include "core/settings/settings.h"
#include "windows/commands/error_commands.h"
#include "windows/commands/experiment_commands.h"
#include "windows/commands/fit_commands.h"
#include "windows/commands/job_commands.h"
#include "windows/commands/option_commands.h"
#include "windows/commands/print_commands.h"
#include "windows/commands/report_commands.h"
#include "windows/commands/rest_judge.h"
#include "windows/controls/child_area.h"
#include "windows/controls/child_window.h"
#include "windows/data/choose_scans_window.h"
#include "windows/data/data_window.h"
#include "windows/data/import_window.h"
#include "windows/data/source_files_tab.h"
#include "windows/errors/correlation_window.h"
#include "windows/errors/error_analysis_window.h"
#include "windows/errors/quality_window.h"
#include "windows/fits/comparison_window.h"
#include "windows/fits/fits_window.h"
#include "windows/frame/about_window.h"
#include "windows/frame/app_icon.h"
#include "windows/frame/connections.h"
#include "windows/frame/help_window.h"
#include "windows/frame/main_menus.h"
#include "windows/frame/window_place.h"
#include "windows/graphs/figure_window.h"
#include "windows/graphs/graphs_window.h"
#include "windows/log/log_window.h"
#include "windows/match/match_window.h"
#include "windows/page/preview_window.h"
#include "windows/page/set_ref_conc_window.h"
#include "windows/session/autosave.h"
#include "windows/session/data_files.h"
#include "windows/session/recovery.h"
#include "windows/session/unsaved_mark.h"
#include "windows/session/window_host.h"
#include "windows/sim/plan_window.h"
#include "windows/sim/sim_window.h"

namespace quorvane {

namespace {

constexpr float kCoefficientsWidth = 8000.0F;  // of frmCCCs at first, twips
constexpr float kCoefficientsHeight = 6000.0F;

}  // namespace

MainWindow::MainWindow(Session& session, QWidget* parent)
    : QMainWindow(parent),
      session_(session),
      area_(new ChildArea),
      log_(new LogWindow(session)),
      host_(std::make_unique<WindowHost>(session, *log_, *this)),
      data_(new DataWindow(session, *host_)),
      graphs_(new GraphsWindow(session)),
      coefficients_(new CorrelationWindow),
      quality_(new QualityWindow),
      fitList_(new FitsWindow(session)),
      comparison_(new ComparisonWindow(session)),
      analysis_(new ErrorAnalysisWindow(session)),
      preview_(new PreviewWindow(session, *host_)),
      figure_(new FigureWindow(session)),
      chooseScans_(new ChooseScansWindow(session, data_->SourceFiles())),
      setRefConc_(new SetRefConcWindow(session, *host_)),
      status_(new QLabel(QStringLiteral(" "))),
      escape_(new QShortcut(Qt::Key_Escape, this)) {
  setObjectName("frmMain");
  setWindowIcon(AppIcon());
  setAcceptDrops(true);
  setCentralWidget(area_);
  status_->setObjectName("sbStatusBar");
  statusBar()->addWidget(status_, 1);
  AddChildren();
  experiments_ = new ExperimentCommands(AllWindows(), this);
  options_ = new OptionCommands(AllWindows(), this);
  fits_ = new FitCommands(AllWindows(), this);
  errors_ = new ErrorCommands(AllWindows(), *fits_, *coefficients_, *quality_, *analysis_, this);
  prints_ = new PrintCommands(AllWindows(), *area_, this);
  reports_ = new ReportCommands(AllWindows(), this);
  jobs_ = new JobCommands(AllWindows(), this);
  autosave_ = new Autosave(session_, *log_, this);
  unsaved_ = new UnsavedMark(session_, this);
  judge_ = new RestJudge(session_, this);
  const CommandSet commands{*experiments_, *options_, *fits_, *errors_,
                            *prints_,      *reports_, *jobs_};
  menus_ = new MainMenus(*this, AllWindows(), commands);
  ConnectMenus();
  ConnectFrame();
  ConnectKeys();
  ConnectParts({AllWindows(), commands, *menus_, *coefficients_, *quality_, *analysis_, *preview_,
                *figure_, *setRefConc_, *fitList_, *comparison_, *autosave_, *unsaved_, *judge_});
  RestorePlace(*this, session.Settings);
  LogHead(*host_);
  session_.Module.ExperimentOpen = false;  // the head lines are no work of the user
  menus_->SetLogWritten(false);
  data_->ShowNewStore();
  data_->SourceFiles().RefreshDirectory();
  unsaved_->Clean();
  ShowTitle();
}

MainWindow::~MainWindow() {
  qApp->removeEventFilter(this);
}

WindowSet MainWindow::AllWindows() {
  return {session_, *host_, *log_, *data_, *graphs_, *this};
}

void MainWindow::AddChildren() {
  dataChild_ = AddChild(data_, false);
  logChild_ = AddChild(log_, false);
  graphsChild_ = AddChild(graphs_, true);
  coefficientsChild_ = AddChild(coefficients_, true);
  AddChild(quality_, true)->hide();
  AddChild(fitList_, true)->hide();
  AddChild(comparison_, true)->hide();
  AddChild(analysis_, true)->hide();
  AddChild(preview_, true)->hide();
  AddChild(figure_, true)->hide();
  AddChild(chooseScans_, true)->hide();
  AddChild(setRefConc_, true)->hide();
}

// Data window and log cannot be closed; closing another child of the program hides it.
QMdiSubWindow* MainWindow::AddChild(QWidget* widget, bool closable) {
  QMdiSubWindow* child = area_->AddChild(widget);
  child->setWindowIcon(AppIcon());
  if (!closable) {
    child->setWindowFlags(Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowMinMaxButtonsHint);
  }
  connect(child, &QMdiSubWindow::windowStateChanged, this, &MainWindow::ActivateShownChild,
          Qt::QueuedConnection);
  return child;
}

// A child that was hidden leaves none active, and the keys without a window.
void MainWindow::ActivateShownChild() {
  if (!isActiveWindow() || area_->activeSubWindow() != nullptr) return;
  const QList<QMdiSubWindow*> children = area_->subWindowList(QMdiArea::ActivationHistoryOrder);
  const auto shown = [](const QMdiSubWindow* c) { return c->isVisible() && !c->isMinimized(); };
  const auto last = std::find_if(children.rbegin(), children.rend(), shown);
  if (last != children.rend()) area_->setActiveSubWindow(*last);
}

void MainWindow::ConnectMenus() {
  connect(menus_, &MainMenus::SimulationChosen, this, &MainWindow::ShowSimulation);
  connect(menus_, &MainMenus::PlanChosen, this, &MainWindow::ShowPlan);
  connect(menus_, &MainMenus::MatchChosen, this, &MainWindow::ShowMatch);
  connect(menus_, &MainMenus::ImportChosen, this, &MainWindow::ShowImport);
  connect(menus_, &MainMenus::ChooseScansChosen, chooseScans_, &ChooseScansWindow::Open);
  connect(experiments_, &ExperimentCommands::FolderDropped, chooseScans_, &ChooseScansWindow::Open);
  connect(menus_, &MainMenus::NewWindowChosen, this, &MainWindow::NewDocument);
  connect(menus_, &MainMenus::CascadeChosen, area_, &ChildArea::Cascade);
  connect(menus_, &MainMenus::TileChosen, area_, &ChildArea::Tile);
  connect(menus_, &MainMenus::ArrangeIconsChosen, area_, &ChildArea::ArrangeIcons);
  connect(menus_, &MainMenus::HelpChosen, this, &MainWindow::ShowHelp);
  connect(menus_, &MainMenus::AboutChosen, this, &MainWindow::ShowAbout);
}

// What the frame itself does when its parts report.
void MainWindow::ConnectFrame() {
  connect(options_, &OptionCommands::Changed, this, [this] {
    menus_->Update();
    if (sim_ != nullptr) sim_->RefreshDisplay();
  });
  connect(fits_, &FitCommands::CalculatingChanged, this, &MainWindow::SetCalculating);
  connect(fits_, &FitCommands::CalculationEnded, this, [this] {
    menus_->Update();
    if (closeAfterStop_) QTimer::singleShot(0, this, &MainWindow::close);
  });
  connect(chooseScans_, &ChooseScansWindow::MatchRequested, this,
          [this](const std::vector<std::filesystem::path>& paths) {
            ShowMatch();
            match_->LoadSeries(paths);
          });
  connect(host_.get(), &WindowHost::ProgressReported, status_, &QLabel::setText);
  connect(host_.get(), &WindowHost::FailureReported, status_, &QLabel::setText);
  connect(unsaved_, &UnsavedMark::Changed, this, &MainWindow::ShowTitle);
  connect(experiments_, &ExperimentCommands::NameChanged, this, &MainWindow::ShowTitle);
  connect(autosave_, &Autosave::Failed, this, [this] { ShowRemark({}); });
  const QPointer<MainWindow> self(this);  // the session may outlive this window, or have another
  session_.CommitPending = [self] { return self == nullptr || self->CommitPending(); };
  session_.Remark = [self](const QString& text) {
    if (self) self->ShowRemark(text);
  };
}

void MainWindow::ConnectKeys() {
  connect(escape_, &QShortcut::activated, fits_, &FitCommands::Stop);
  escape_->setEnabled(false);
  qApp->installEventFilter(this);
#if !defined(Q_OS_WIN)  // there the desktop knows this key
  auto* menuKey = new QShortcut(Qt::SHIFT | Qt::Key_F10, this);
  menuKey->setContext(Qt::ApplicationShortcut);
  connect(menuKey, &QShortcut::activated, this, &MainWindow::OpenContextMenu);
#endif
}

// A command begins: what was said of the last one goes.
bool MainWindow::CommitPending() {
  ShowRemark({});
  return data_->CommitPending() && (sim_ == nullptr || sim_->CommitPending());
}

void MainWindow::ShowRemark(const QString& text) {
  const QString& unkept = autosave_->Failure();
  const QString standing = unkept.isEmpty() ? " " : tr("Unsaved work is not kept: %1").arg(unkept);
  status_->setText(text.isEmpty() ? standing : text);
}

// Not every keyboard has the menu key.
void MainWindow::OpenContextMenu() {
  QWidget* focus = QApplication::focusWidget();
  if (focus == nullptr) return;
  const QPoint caret = focus->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
  QContextMenuEvent event(QContextMenuEvent::Keyboard, caret, focus->mapToGlobal(caret));
  QApplication::sendEvent(focus, &event);
}

void MainWindow::ShowTitle() {
  const QString name = experiments_->Name().replace("[*]", "[*][*]");  // a star of its own
  setWindowTitle(name.isEmpty() ? tr("Quorvane[*]") : tr("%1[*] - Quorvane").arg(name));
  setWindowModified(unsaved_->Unsaved());
}

void MainWindow::KeepUnsavedWork(const std::filesystem::path& folder,
                                 std::chrono::milliseconds interval) {
  autosave_->Start(folder,
                   OfferUnsavedWork(
                       folder, *host_,
                       [this](const std::string& title, const std::string& text) {
                         return session_.Ask.OfferWork(this, QString::fromStdString(title),
                                                       QString::fromStdString(text));
                       },
                       [this](ReadExperiment&& read) { experiments_->Resume(std::move(read)); }),
                   interval);
}

// The log's clicks, scrolling and the moves of windows stay possible.
void MainWindow::SetCalculating(bool on) {
  status_->setText(QStringLiteral(" "));
  menus_->SetCalculating(on);
  escape_->setEnabled(on);
  data_->SetCalculating(on);
  setRefConc_->setEnabled(!on);
  graphs_->setEnabled(!on);
  if (sim_ != nullptr) sim_->SetCalculating(on);
  if (planning_ != nullptr) planning_->setEnabled(!on);
  if (match_ != nullptr) match_->setEnabled(!on);
  if (import_ != nullptr) import_->setEnabled(!on);
  coefficients_->setEnabled(!on);
  figure_->setEnabled(!on);
  chooseScans_->setEnabled(!on);
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (arranged_) return;
  arranged_ = true;
  QTimer::singleShot(0, this, &MainWindow::ArrangeFirst);
}

// Sub-windows take a size only once they are shown.
void MainWindow::ArrangeFirst() {
  dataChild_->show();
  logChild_->show();
  graphsChild_->hide();
  coefficientsChild_->hide();
  coefficientsChild_->resize(ToPixels(kCoefficientsWidth), ToPixels(kCoefficientsHeight));
  const QRect room = area_->Room();
  coefficientsChild_->move(std::max(0, room.width() - coefficientsChild_->width()), room.top());
  const int dataWidth =
      std::max(std::clamp(data_->sizeHint().width() + 12, room.width() / 2, room.width() * 3 / 5),
               data_->WholeSize().width() + dataChild_->width() - data_->width());
  dataChild_->setGeometry(room.left(), room.top(), dataWidth, room.height());
  logChild_->setGeometry(room.left() + dataWidth, room.top(), room.width() - dataWidth,
                         room.height());
  area_->setActiveSubWindow(dataChild_);
}

void MainWindow::NewDocument() {
  auto* document = new LogWindow(session_, LogWindow::Role::kDocument);
  document->setObjectName(QStringLiteral("frmDocument(%1)").arg(++documents_));
  document->setWindowTitle(tr("Document %1").arg(documents_));
  connect(document, &LogWindow::Clicked, fits_, &FitCommands::Stop);
  QMdiSubWindow* child = area_->AddChild(document);
  child->setAttribute(Qt::WA_DeleteOnClose);
  child->show();
}

// Closing the simulator hides it: entries and data stay until the program ends.
void MainWindow::ShowSimulation() {
  if (sim_ == nullptr) {
    sim_ = new SimWindow(session_, *host_);
    ConnectSimulation();
    QMdiSubWindow* child = AddChild(sim_, true);
    child->show();
    child->resize(child->sizeHint().boundedTo(area_->viewport()->size()));
  }
  auto* child = qobject_cast<QMdiSubWindow*>(sim_->parentWidget());
  if (child->isMinimized()) child->showNormal();
  sim_->show();  // closing has hidden both
  child->show();
  area_->setActiveSubWindow(child);
}

// Closing the plan hides it: its entries stay.
void MainWindow::ShowPlan() {
  if (planning_ == nullptr) {
    planning_ = new PlanWindow(session_, *host_);
    connect(planning_, &PlanWindow::SeriesWritten, this, &MainWindow::TakeSeries);
    QMdiSubWindow* child = AddChild(planning_, true);
    child->show();
    child->resize(child->sizeHint().boundedTo(area_->viewport()->size()));
  }
  ShowChild(*planning_);
}

// Closing the match window ends it; the next one begins anew.
void MainWindow::ShowMatch() {
  if (match_ == nullptr) {
    match_ = new MatchWindow(session_, *host_);
    QMdiSubWindow* child = AddChild(match_, true);
    child->setAttribute(Qt::WA_DeleteOnClose);
    child->show();
    child->resize(child->sizeHint().boundedTo(area_->viewport()->size()));
  }
  auto* child = qobject_cast<QMdiSubWindow*>(match_->parentWidget());
  if (child->isMinimized()) child->showNormal();
  area_->setActiveSubWindow(child);
}

// Closing the import window hides it: its texts and choices stay.
void MainWindow::ShowImport() {
  if (import_ == nullptr) {
    import_ = new ImportWindow(session_);
    connect(import_, &ImportWindow::Imported, this, [this](const QStringList& paths, bool load) {
      data_->SourceFiles().FollowSave();
      if (load) data_->SourceFiles().LoadImported(paths);
    });
    QMdiSubWindow* child = AddChild(import_, true);
    child->show();
    child->resize(child->sizeHint().boundedTo(area_->viewport()->size()));
  }
  ShowChild(*import_);
  import_->Begin();
}

void MainWindow::ConnectSimulation() {
  connect(sim_, &SimWindow::CalculatingChanged, this, [this](bool on) {
    SetCalculating(on);
    menus_->DisableStop();  // a simulation runs to its end
    if (!on && closeAfterStop_) QTimer::singleShot(0, this, &MainWindow::close);
  });
  connect(sim_, &SimWindow::SeriesWritten, this, &MainWindow::TakeSeries);
  connect(sim_, &SimWindow::PlanRequested, this, &MainWindow::ShowPlan);
  connect(sim_, &SimWindow::FileSaved, this, [this] { data_->SourceFiles().FollowSave(); });
}

void MainWindow::TakeSeries(const QStringList& files, bool load) {
  data_->SourceFiles().FollowSave();
  if (load) data_->SourceFiles().LoadWhole(files);
}

void MainWindow::ShowHelp(bool search) {
  if (help_ == nullptr) {
    help_ = new HelpWindow(this);
    if (!help_->ShowGuide(FindDataFile(session_.ProgramFolder, "docs/user-guide.md"))) {
      delete help_;
      help_ = nullptr;
      session_.Ask.ShowMessage(this, {},
                               tr("Unable to display Help Contents. There is no Help "
                                  "associated with this project."),
                               MessageIcon::kNone);
      return;
    }
  }
  help_->show();
  help_->raise();
  help_->activateWindow();
  if (search) help_->BeginSearch();
}

void MainWindow::ShowAbout() {
  auto* about = new AboutWindow(SettingsFile(), this);
  about->setAttribute(Qt::WA_DeleteOnClose);
  about->open();
}

bool MainWindow::MayClose() {
  if (closeAfterStop_) return true;  // was asked while the calculation ran
  return experiments_->AskToDiscard(tr("Exit Program?"), {});
}

// A child window that closes, as that of a fit's progress, takes the star off the frame's title.
void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::ModifiedChange && isWindowModified() != unsaved_->Unsaved()) {
    setWindowModified(unsaved_->Unsaved());
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!MayClose()) {
    event->ignore();
    return;
  }
  if (session_.Calculating) {  // ends first; the windows are in use until then
    closeAfterStop_ = true;
    fits_->Stop();
    event->ignore();
    return;
  }
  log_->SaveFont(*host_);
  SaveSettings(session_.Module, session_.CurrentFolder, session_.Settings, *host_);
  SavePlace(*this, session_.Settings, *host_);
  if (help_ != nullptr) help_->close();
  errors_->CloseForFit();
  autosave_->End();
  event->accept();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  const auto* widget = qobject_cast<QWidget*>(watched);
  const bool drag = event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove ||
                    event->type() == QEvent::Drop;
  if (drag && widget != nullptr && widget->window() == this && HandleDrop(event)) return true;
  return QMainWindow::eventFilter(watched, event);
}

// Files dropped on any part of the frame are loaded, whatever the widget under the pointer.
bool MainWindow::HandleDrop(QEvent* event) {
  auto* drop = static_cast<QDropEvent*>(event);
  const auto busy = [this] { return session_.Calculating || QApplication::activeModalWidget(); };
  const QList<QUrl> urls = drop->mimeData()->urls();
  const bool files =
      std::any_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
  if (!files || busy()) return false;
  drop->acceptProposedAction();
  if (event->type() != QEvent::Drop) return true;
  QStringList paths;
  for (const QUrl& url : urls) {
    if (url.isLocalFile()) paths.push_back(url.toLocalFile());
  }
  // After the drop has ended: a question would block the program that files were dragged from.
  QTimer::singleShot(0, this, [this, paths, busy] {
    if (!busy()) experiments_->OpenDropped(paths);
  });
  return true;
}

}  // namespace quorvane

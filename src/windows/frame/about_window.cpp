#include "windows/frame/about_window.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/program_state.h"
#include "windows/controls/control_names.h"
#include "windows/frame/app_icon.h"
#include "windows/frame/system_information.h"

namespace quorvane {

namespace {

constexpr int kIconSide = 64;

}  // namespace

AboutWindow::AboutWindow(const std::filesystem::path& settingsFile, QWidget* parent)
    : QDialog(parent) {
  BuildWidgets(settingsFile);
  ConnectSignals();
  ShowSystem(false);
}

void AboutWindow::BuildWidgets(const std::filesystem::path& settingsFile) {
  setObjectName("frmAbout");
  setWindowTitle(tr("About Quorvane"));
  auto* icon = Named(new QLabel, "picIcon");
  icon->setPixmap(AppIcon().pixmap(QSize(kIconSide, kIconSide), devicePixelRatio()));
  auto* text = Named(
      new QLabel(tr("<h2>Quorvane</h2><p>Version %1</p><p>Analysis of sedimentation-equilibrium "
                    "experiments<br>of an analytical ultracentrifuge.</p><p>Licence: "
                    "GPL-3.0-or-later</p>")
                     .arg(QString::fromLatin1(ProgramVersion()))),
      "lblVersion");
  text->setTextInteractionFlags(Qt::TextSelectableByMouse);
  txtSysInfo_ = Named(new QPlainTextEdit(SystemInformation(settingsFile)), "txtSysInfo");
  txtSysInfo_->setAccessibleName(tr("System information"));
  txtSysInfo_->setReadOnly(true);
  txtSysInfo_->setTabChangesFocus(true);
  txtSysInfo_->setFixedHeight(txtSysInfo_->fontMetrics().lineSpacing() *
                              (txtSysInfo_->document()->blockCount() + 2));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  cmdOK_ = Named(buttons->button(QDialogButtonBox::Ok), "cmdOK");
  cmdSysInfo_ =
      Named(buttons->addButton(tr("&System Info..."), QDialogButtonBox::ActionRole), "cmdSysInfo");
  cmdCopySysInfo_ = Named(buttons->addButton(tr("&Copy System Info"), QDialogButtonBox::ActionRole),
                          "cmdCopySysInfo");
  cmdCopySysInfo_->setToolTip(tr("For a report of a fault"));
  auto* head = new QHBoxLayout;
  head->setSpacing(20);
  head->addWidget(icon, 0, Qt::AlignTop);
  head->addWidget(text, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->setContentsMargins(20, 20, 20, 16);
  layout->setSpacing(14);
  layout->addLayout(head);
  layout->addWidget(txtSysInfo_);
  layout->addWidget(buttons);
}

void AboutWindow::ConnectSignals() {
  connect(cmdOK_, &QPushButton::clicked, this, &QDialog::accept);
  connect(cmdSysInfo_, &QPushButton::clicked, this,
          [this] { ShowSystem(txtSysInfo_->isHidden()); });
  connect(cmdCopySysInfo_, &QPushButton::clicked, this,
          [this] { QGuiApplication::clipboard()->setText(txtSysInfo_->toPlainText()); });
}

void AboutWindow::ShowSystem(bool shown) {
  txtSysInfo_->setVisible(shown);
  cmdCopySysInfo_->setVisible(shown);
  txtSysInfo_->setMinimumWidth(fontMetrics().averageCharWidth() * 72);
}

}  // namespace quorvane

#include "windows/about_window.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSysInfo>
#include <QThread>
#include <QVBoxLayout>

#include "core/program_state.h"

namespace {

QString SystemInformation() {
  return QStringLiteral("System: %1\nProcessor: %2, %3 cores\nQt: %4\n")
      .arg(QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(),
           QString::number(QThread::idealThreadCount()), QString::fromLatin1(qVersion()));
}

}  // namespace

AboutWindow::AboutWindow(QWidget* parent) : QDialog(parent) {
  setObjectName("frmAbout");
  setWindowTitle(tr("About Quorvane"));
  auto* text = new QLabel(
      tr("<h2>Quorvane</h2><p>Version %1</p><p>Analysis of sedimentation-equilibrium experiments "
         "of an analytical ultracentrifuge.</p><p>Licence: GPL-3.0-or-later</p>")
          .arg(QString::fromLatin1(ProgramVersion())));
  text->setObjectName("lblVersion");
  auto* system = new QPlainTextEdit(SystemInformation());
  system->setObjectName("txtSysInfo");
  system->setReadOnly(true);
  system->hide();
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  buttons->button(QDialogButtonBox::Ok)->setObjectName("cmdOK");
  QPushButton* more = buttons->addButton(tr("System Info..."), QDialogButtonBox::ActionRole);
  more->setObjectName("cmdSysInfo");
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text);
  layout->addWidget(system);
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(more, &QPushButton::clicked, this, [this, system] {
    system->setVisible(!system->isVisible());
    adjustSize();
  });
}

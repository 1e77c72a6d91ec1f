#include "windows/sim/sim_data_tab.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "base/text.h"
#include "windows/controls/busy_pointer.h"
#include "windows/controls/control_names.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

// The text of the box with the line ends of the file.
std::string FileText(const QPlainTextEdit& box) {
  return box.toPlainText().replace('\n', "\r\n").toStdString();
}

}  // namespace

SimDataTab::SimDataTab(Session& session, Simulator& simulator, QWidget* parent)
    : QWidget(parent), session_(session), simulator_(simulator) {
  BuildWidgets();
  connect(cmdSaveSimData_, &QPushButton::clicked, this, &SimDataTab::Save);
  connect(rtbSimulData_, &QPlainTextEdit::textChanged, this,
          [this] { simulator_.Text = FileText(*rtbSimulData_); });
}

void SimDataTab::BuildWidgets() {
  rtbSimulData_ = Named(new QPlainTextEdit, "rtbSimulData");
  rtbSimulData_->setAccessibleName(tr("Simulated scan"));
  QFont font(QStringLiteral("Courier New"), rtbSimulData_->font().pointSize());
  font.setStyleHint(QFont::TypeWriter);
  rtbSimulData_->setFont(font);
  rtbSimulData_->setLineWrapMode(QPlainTextEdit::NoWrap);
  rtbSimulData_->setTabChangesFocus(true);  // a scan file with a TAB would be refused
  cmdSaveSimData_ = Named(new QPushButton(tr("Sa&ve...")), "cmdSaveSimData");
  auto* top = new QHBoxLayout;
  top->addWidget(new QLabel(tr("The scan file. What you change here is saved with it.")), 1);
  top->addWidget(cmdSaveSimData_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addWidget(rtbSimulData_, 1);
}

void SimDataTab::ShowText() {
  if (FileText(*rtbSimulData_) == simulator_.Text) return;
  const QSignalBlocker quiet(rtbSimulData_);
  rtbSimulData_->setPlainText(QString::fromStdString(simulator_.Text));
}

void SimDataTab::Save() {
  if (simulator_.Text.empty()) {
    session_.Ask.ShowMessage(window(), tr("Save"), tr("The data box is empty."),
                             MessageIcon::kExclamation);
    return;
  }
  const bool absorbance = simulator_.Inputs.saveAs == SimFileKind::kRA8;
  const QString filter = absorbance ? tr("RA8 (*.RA8)") : tr("IP8 (*.IP8)");
  const QString file =
      session_.Ask.SaveFile(window(), {tr("Save"), ToQString(session_.CurrentFolder), filter, ""});
  if (file.isEmpty()) return;
  try {
    const BusyPointer busy;
    WriteWholeFile(ToPath(file), Utf8ToCp1252(simulator_.Text));
  } catch (const FileFault& fault) {
    session_.Ask.ShowMessage(window(), "", QString::fromUtf8(fault.what()),
                             MessageIcon::kExclamation);
    return;
  }
  emit Saved();
}

}  // namespace quorvane

#include "windows/page/hint_window.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/settings/settings.h"
#include "windows/controls/control_names.h"
#include "windows/session/session.h"

namespace quorvane {

HintWindow::HintWindow(Session& session, Host& host, QWidget* parent)
    : QDialog(parent),
      session_(session),
      host_(host),
      Check1_(Named(new QCheckBox(tr("Don't show this again")), "Check1")) {
  setObjectName("frmGraphicalRefC");
  setWindowTitle(tr("Hint"));
  setAttribute(Qt::WA_ShowWithoutActivating);
  auto* text = new QLabel(
      tr("Double click on any \"Ref. Conc.\" textbox to graphically adjust the reference "
         "concentration(s) for the selected dataset. "));
  text->setObjectName("lblHint");
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  text->setMinimumWidth(fontMetrics().averageCharWidth() * 55);
  auto* ok = Named(new QPushButton(tr("OK")), "Command1");
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, &HintWindow::Confirm);
  auto* foot = new QHBoxLayout;
  foot->addWidget(Check1_);
  foot->addStretch();
  foot->addWidget(ok);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text, 1);
  layout->addLayout(foot);
}

void HintWindow::Confirm() {
  if (Check1_->isChecked()) session_.Module.Preferences.ShowHints = false;
  SaveShowHints(session_.Module, session_.Settings, host_);
  accept();
}

}  // namespace quorvane

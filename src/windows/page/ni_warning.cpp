#include "windows/page/ni_warning.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quorvane {

NIWarning::NIWarning(bool& showAgain, QWidget* parent)
    : QDialog(parent),
      showAgain_(showAgain),
      chkDontShow_(new QCheckBox(tr("Don't show this again"))) {
  setObjectName("frmNIWarn");
  setWindowTitle(tr("Nonideality :: Warning"));
  auto* text = new QLabel(tr(
      "The value for the nonideality parameter, B*M, is calculated using the value for the buoyant "
      "molecular weight, the partial specific volume (vbar), and the solvent density.  In order to "
      "accurately determine this nonideality term, the correct values should be used for the vbar "
      "and density.  Please enter the correct values for vbar (default = 0.730) and density "
      "(default = 1.000) using the \"Options|Set vbar\" and \"Options|Set density\" menu choices "
      "of the Main Window.\r\nIn addition, you must use the correct extinction coefficient in "
      "order to obtain B*M in the usual units of Liters/gram."));
  text->setObjectName("lblNIWarning");
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  text->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
  chkDontShow_->setObjectName("chkDontShow");
  auto* ok = new QPushButton(tr("OK"));
  ok->setObjectName("cmdOK");
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, &NIWarning::Confirm);
  auto* foot = new QHBoxLayout;
  foot->addWidget(chkDontShow_);
  foot->addStretch();
  foot->addWidget(ok);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text, 1);
  layout->addLayout(foot);
}

void NIWarning::Confirm() {
  if (chkDontShow_->isChecked()) showAgain_ = false;
  accept();
}

}  // namespace quorvane

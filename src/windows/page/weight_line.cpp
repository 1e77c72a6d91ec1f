#include "windows/page/weight_line.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <algorithm>

#include "core/page/page_weights.h"
#include "windows/controls/control_names.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

struct ConstantButton {
  Constant constant;
  const char* name;
  const char* toolTip;
};

constexpr std::array<ConstantButton, 3> kButtons = {
    {{Constant::kVbar, "cmdWeightVbar",
      QT_TRANSLATE_NOOP("QObject", "Set the partial specific volume, ml/g")},
     {Constant::kVbarB, "cmdWeightVbarB",
      QT_TRANSLATE_NOOP("QObject", "Set the partial specific volume of B, ml/g")},
     {Constant::kDensity, "cmdWeightDensity",
      QT_TRANSLATE_NOOP("QObject", "Set the density of the solvent, g/ml")}}};

}  // namespace

WeightLine::WeightLine(Session& session, QWidget* parent)
    : QWidget(parent),
      session_(session),
      lblWeight_(Named(new QLabel, "lblWeight")),
      lblWeightRemark_(Named(new QLabel, "lblWeightRemark")) {
  setToolTip(tr("Molecular weight = buoyant weight / (1 - vbar density)"));
  lblWeight_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(lblWeight_);
  layout->addWidget(Named(new QLabel(tr("with")), "lblWeightWith"));
  for (std::size_t k = 0; k < kButtons.size(); ++k) {
    buttons_[k] = Named(new QToolButton, kButtons[k].name);
    buttons_[k]->setToolTip(QObject::tr(kButtons[k].toolTip));
    buttons_[k]->setFocusPolicy(Qt::StrongFocus);
    layout->addWidget(buttons_[k]);
    connect(buttons_[k], &QToolButton::clicked, this,
            [this, k] { emit ConstantRequested(kButtons[k].constant); });
  }
  layout->addWidget(lblWeightRemark_, 1);
  ShowWeights();
}

void WeightLine::ShowWeights() {
  const QuorvaneModule& module = session_.Module;
  QString text;
  QString remark;
  for (const PageWeight& weight : PageWeights(module)) {
    text += (text.isEmpty() ? "" : ", ") + QString::fromStdString(weight.text);
    if (remark.isEmpty()) remark = QString::fromStdString(weight.remark);
  }
  lblWeight_->setText(text);
  lblWeightRemark_->setText(remark.isEmpty() ? "" : "(" + remark + ")");
  const std::vector<Constant> used = ConstantsOfWeights(module);
  for (std::size_t k = 0; k < kButtons.size(); ++k) {
    const Constant constant = kButtons[k].constant;
    buttons_[k]->setText(QString::fromStdString(ConstantText(module, constant)));
    buttons_[k]->setVisible(std::find(used.begin(), used.end(), constant) != used.end());
  }
}

}  // namespace quorvane

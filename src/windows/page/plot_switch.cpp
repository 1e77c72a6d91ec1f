#include "windows/page/plot_switch.h"

#include <QHBoxLayout>
#include <QRadioButton>

#include "windows/controls/control_names.h"

namespace quorvane {

PlotSwitch::PlotSwitch(const char* name, QWidget* parent)
    : QWidget(parent),
      data_(Named(new QRadioButton(tr("Data")), ElementName(name, 0))),
      deviations_(Named(new QRadioButton(tr("Deviations")), ElementName(name, 1))) {
  data_->setToolTip(tr("The data with the curve of the model"));
  deviations_->setToolTip(
      tr("Data minus curve, against the radius, the points of mass conservation as well"));
  data_->setChecked(true);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(data_);
  layout->addWidget(deviations_);
  connect(deviations_, &QRadioButton::toggled, this, &PlotSwitch::Changed);
}

bool PlotSwitch::Deviations() const {
  return deviations_->isChecked();
}

}  // namespace quorvane

#include "windows/page/model_block.h"

#include <QGridLayout>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>
#include <array>

#include "core/page/page_parts.h"
#include "core/page/row_values.h"
#include "fit/models.h"
#include "windows/controls/display_captions.h"
#include "windows/controls/page_controls.h"
#include "windows/controls/value_box.h"
#include "windows/session/box_entry.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

// Where the group of a parameter stands in the block: weights, stoichiometries and constants side
// by side.
struct GroupPlace {
  const SharedParameter& value;
  int row;
  int column;
};

// In the order of the Tab key; two that no model has together may share a place.
constexpr std::array<GroupPlace, SharedParameters.size()> kGroupPlaces = {{{shared::kMW, 0, 0},
                                                                           {shared::kMWB, 1, 0},
                                                                           {shared::kVirialC, 1, 0},
                                                                           {shared::kN1, 0, 1},
                                                                           {shared::kN2, 1, 1},
                                                                           {shared::kAlpha, 1, 1},
                                                                           {shared::kLnK1, 0, 2},
                                                                           {shared::kLnK2, 1, 2},
                                                                           {shared::kLnK3, 2, 2}}};
constexpr int kColumnsOfGroup = 4;  // label, box, check box, gap
constexpr int kSwitchColumn = 3 * kColumnsOfGroup;

QString ControlName(const char* prefix, const SharedParameter& value) {
  return QLatin1String(prefix) + QLatin1String(value.control);
}

}  // namespace

ModelBlock::ModelBlock(Session& session, FocusMarker& marker, QWidget* parent)
    : QWidget(parent),
      session_(session),
      marker_(marker),
      lblUseModel_(new QLabel),
      lblDegC_(new ValueBox),
      chkCalcConcs_(new PageCheckBox(tr("Calculate Loading Conc."))),
      chkUseMC_(new PageCheckBox),
      lblUseMC_(new ClickLabel(tr("Use Mass Conservation"))),
      chkConstrainKratios_(new PageCheckBox) {
  lblUseModel_->setObjectName("lblUseModel");
  lblUseModel_->setAlignment(Qt::AlignCenter);
  QFont bold = lblUseModel_->font();
  bold.setBold(true);
  lblUseModel_->setFont(bold);
  auto* grid = new QGridLayout;
  grid->setVerticalSpacing(2);
  grid->setColumnStretch(kSwitchColumn - 1, 1);
  BuildGroups(*grid);
  BuildTemperature(*grid);
  BuildSwitches(*grid);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(lblUseModel_);
  layout->addLayout(grid);
  layout->addStretch();
}

void ModelBlock::BuildGroups(QGridLayout& grid) {
  for (const GroupPlace& place : kGroupPlaces) {
    const Group& group = groups_.emplace_back(BuildGroup(place.value));
    const int column = place.column * kColumnsOfGroup;
    grid.addWidget(group.label, place.row, column);
    grid.addWidget(group.box, place.row, column + 1);
    grid.addWidget(group.check, place.row, column + 2);
    grid.setColumnMinimumWidth(column + 3, 2 * fontMetrics().averageCharWidth());
    BindGroup(group);
    ConnectPopups(group);
  }
}

ModelBlock::Group ModelBlock::BuildGroup(const SharedParameter& value) {
  const Group group = {&value, new QLabel, new ValueBox, new PageCheckBox};
  group.label->setObjectName(ControlName("lbl", value));
  group.label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  group.box->setObjectName(ControlName("txt", value));
  group.check->setObjectName(ControlName("chk", value));
  group.check->setToolTip(tr("Check to Fit Parameter"));
  group.label->setBuddy(group.box);  // names it for screen readers
  ShapeNumberBox(*group.box);
  marker_.Watch(group.check);
  return group;
}

void ModelBlock::BuildTemperature(QGridLayout& grid) {
  auto* caption = new QLabel(tr("Temperature"));
  caption->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  caption->setBuddy(lblDegC_);
  lblDegC_->setObjectName("lblDegC");
  lblDegC_->setToolTip(tr("Temperature in deg C"));
  ShapeNumberBox(*lblDegC_);
  FitSetup& setup = session_.Module.Setup;
  BindEntry(*lblDegC_, session_,
            {.enter = [&setup](const std::string& text) { return EnterTemperature(setup, text); },
             .shown = [&setup] { return TemperatureText(setup); },
             .name = [caption] { return caption->text(); },
             .taken = [] { return kTakesAnyNumber; }});
  grid.addWidget(caption, 0, kSwitchColumn);
  grid.addWidget(lblDegC_, 0, kSwitchColumn + 1);
  grid.addWidget(new QLabel(tr("\u00B0C")), 0, kSwitchColumn + 2);
}

void ModelBlock::BuildSwitches(QGridLayout& grid) {
  chkCalcConcs_->setObjectName("chkCalcConcs");
  chkUseMC_->setObjectName("chkUseMC");
  chkUseMC_->setAccessibleName(lblUseMC_->text());
  lblUseMC_->setObjectName("lblUseMC");
  chkConstrainKratios_->setObjectName("chkConstrainKratios");
  auto* massConservation = new QHBoxLayout;
  massConservation->setSpacing(style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing));
  massConservation->addWidget(chkUseMC_);
  massConservation->addWidget(lblUseMC_, 1);
  grid.addWidget(chkCalcConcs_, 1, kSwitchColumn, 1, 3);
  grid.addLayout(massConservation, 1, kSwitchColumn, 1, 3);
  grid.addWidget(chkConstrainKratios_, 2, kSwitchColumn, 1, 3);
  FitSetup& setup = session_.Module.Setup;
  connect(chkCalcConcs_, &PageCheckBox::clicked, this, [this, &setup](bool on) {
    setup.CalcLoadingConcs = on;
    emit PartsChanged();
  });
  connect(chkUseMC_, &PageCheckBox::clicked, this, [this, &setup](bool on) {
    setup.UseMassConservation = on;
    emit PartsChanged();
  });
  connect(lblUseMC_, &ClickLabel::Clicked, chkUseMC_, &PageCheckBox::click);
  connect(chkConstrainKratios_, &PageCheckBox::clicked, this, &ModelBlock::Constrain);
  for (PageCheckBox* box : {chkCalcConcs_, chkUseMC_, chkConstrainKratios_}) marker_.Watch(box);
}

void ModelBlock::BindGroup(const Group& group) {
  QuorvaneModule& module = session_.Module;
  const SharedParameter& value = *group.value;
  BindEntry(*group.box, session_,
            {.enter =
                 [this, &module, &value](const std::string& text) {
                   Refusal refusal = Enter(value, module, text);
                   emit ValuesChanged();
                   return refusal;
                 },
             .shown = [&module, &value] { return TextOf(value, module); },
             .name = [label = group.label] { return label->text(); },
             .taken = [&module, &value] { return TakenBy(value, module); }});
  connect(group.check, &PageCheckBox::clicked, this, [this, &module, &value](bool on) {
    TellEntryError(session_, window(), SetCheck(value, module.Setup, on));
  });
}

// The right button on labels and on the boxes of constants chooses how these are shown.
void ModelBlock::ConnectPopups(const Group& group) {
  const bool constant = group.value->kind == ParameterKind::kLnK;
  if (!constant && group.value->kind != ParameterKind::kWeight) return;
  group.label->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(group.label, &QLabel::customContextMenuRequested, this,
          [this, constant, label = group.label] {
            if (constant) AskKDisplay(label);
            if (!constant) AskMwDisplay(label);
          });
  if (!constant) return;
  connect(group.box, &ValueBox::RightReleased, this, [this, box = group.box] {
    if (box->Commit()) AskKDisplay(box);
  });
}

void ModelBlock::ShowAll() {
  const FitSetup& setup = session_.Module.Setup;
  lblUseModel_->setText(QString::fromUtf8(setup.FitModel->name.data()));
  lblDegC_->ShowStored(QString::fromStdString(TemperatureText(setup)));
  for (const Group& group : groups_) ShowGroup(group);
  ShowSwitches();
  emit ValuesChanged();
}

void ModelBlock::ShowGroup(const Group& group) {
  const QuorvaneModule& module = session_.Module;
  const CheckState state = module.Setup.*group.value->check;
  group.label->setText(QString::fromStdString(LabelOf(*group.value, module)));
  group.check->setAccessibleName(tr("Fit %1").arg(group.label->text()));
  group.box->ShowStored(QString::fromStdString(TextOf(*group.value, module)));
  group.check->ShowState(state);
  group.check->setEnabled(!RefusalOfFitting(*group.value, module.Setup.ConstrainKRatios));
  const bool shown = HasValue(module.Setup, *group.value);
  group.label->setVisible(shown);
  group.box->setVisible(shown);
  group.check->setVisible(shown);
}

void ModelBlock::ShowSwitches() {
  const FitSetup& setup = session_.Module.Setup;
  const PageParts parts = PartsOf(setup);
  chkCalcConcs_->setVisible(parts.calcConcs);
  chkCalcConcs_->setChecked(setup.CalcLoadingConcs);
  chkUseMC_->setVisible(parts.massConservation);
  chkUseMC_->setChecked(setup.UseMassConservation);
  lblUseMC_->setVisible(parts.massConservation);
  chkConstrainKratios_->setVisible(parts.constrain);
  chkConstrainKratios_->setText(QString::fromStdString(ConstrainCaption(setup)));
  chkConstrainKratios_->setChecked(setup.ConstrainKRatios);
}

void ModelBlock::Constrain(bool on) {
  QuorvaneModule& module = session_.Module;
  for (const Group& group : groups_) {
    if (group.box->Commit()) continue;
    chkConstrainKratios_->setChecked(!on);
    return;
  }
  const Refusal refusal = on ? ConstrainShownRatios(module) : ReleaseShownRatios(module);
  ShowAll();
  if (!refusal) emit RatiosSwitched();
  TellEntryError(session_, window(), refusal);
}

std::vector<QWidget*> ModelBlock::InTabOrder() const {
  std::vector<QWidget*> order;
  for (const Group& group : groups_) {
    order.push_back(group.box);
    order.push_back(group.check);
  }
  for (QWidget* control :
       std::initializer_list<QWidget*>{lblDegC_, chkCalcConcs_, chkUseMC_, chkConstrainKratios_}) {
    order.push_back(control);
  }
  return order;
}

void ModelBlock::AskKDisplay(const QWidget* at) {
  struct Entry {
    KDisplay display;
    const char* name;
  };
  static constexpr std::array<Entry, 3> kEntries = {{{KDisplay::kLn, "popmnuDispLnK"},
                                                     {KDisplay::kLog10, "popmnuDispLogK"},
                                                     {KDisplay::kPlain, "popmnuDispK"}}};
  QMenu* menu = MakePopup("mnuKDisplay", tr("KDisplayOptions"), this);
  for (const Entry& entry : kEntries) {
    QAction* action =
        menu->addAction(CaptionOf(entry.display), this,
                        [this, display = entry.display] { emit KDisplayChosen(display); });
    action->setObjectName(entry.name);
    action->setCheckable(true);
    action->setChecked(session_.Module.Preferences.KFormat == entry.display);
  }
  menu->popup(at->mapToGlobal(at->rect().bottomLeft()));
}

void ModelBlock::AskMwDisplay(const QWidget* at) {
  QMenu* menu = MakePopup("mnuMWDisplay", tr("MWDisplayOptions"), this);
  const auto add = [&](const char* name, const QString& caption, bool buoyant) {
    QAction* action =
        menu->addAction(caption, this, [this, buoyant] { emit MwDisplayChosen(buoyant); });
    action->setObjectName(name);
    action->setCheckable(true);
    action->setChecked(session_.Module.Preferences.UseBuoyantMW == buoyant);
  };
  add("popmnuDispMW", WeightCaption(false), false);
  add("popmnuDispMWB", WeightCaption(true), true);
  menu->popup(at->mapToGlobal(at->rect().bottomLeft()));
}

}  // namespace quorvane

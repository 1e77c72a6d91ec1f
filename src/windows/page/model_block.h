// The part of the parameter page that all datasets share: model, parameters, temperature, switches.
#pragma once

#include <QWidget>
#include <vector>

#include "base/k_display.h"
#include "core/page/shared_values.h"

class QGridLayout;
class QLabel;

namespace quorvane {

class ClickLabel;
class FocusMarker;
class PageCheckBox;
class ValueBox;
struct Session;

class ModelBlock : public QWidget {
  Q_OBJECT
 public:
  ModelBlock(Session& session, FocusMarker& marker, QWidget* parent = nullptr);

  // Labels, boxes and switches as the session stands.
  void ShowAll();

  // The controls that take the focus, in order.
  std::vector<QWidget*> InTabOrder() const;

 signals:
  // A value was entered, or all were shown anew.
  void ValuesChanged();
  // chkUseMC or chkCalcConcs was clicked.
  void PartsChanged();
  // chkConstrainKratios was clicked: the boxes of K2 and K3 hold ratios now, or no longer.
  void RatiosSwitched();
  void KDisplayChosen(KDisplay display);
  void MwDisplayChosen(bool buoyant);

 private:
  struct Group {
    const SharedParameter* value;
    QLabel* label;
    ValueBox* box;
    PageCheckBox* check;
  };

  void BuildGroups(QGridLayout& grid);
  Group BuildGroup(const SharedParameter& value);
  void BuildTemperature(QGridLayout& grid);
  void BuildSwitches(QGridLayout& grid);
  void BindGroup(const Group& group);
  void ConnectPopups(const Group& group);
  void ShowGroup(const Group& group);
  void ShowSwitches();
  void Constrain(bool on);
  void AskKDisplay(const QWidget* at);
  void AskMwDisplay(const QWidget* at);

  Session& session_;
  FocusMarker& marker_;
  QLabel* lblUseModel_;
  std::vector<Group> groups_;  // in the order of the Tab key
  ValueBox* lblDegC_;
  PageCheckBox* chkCalcConcs_;
  PageCheckBox* chkUseMC_;
  ClickLabel* lblUseMC_;
  PageCheckBox* chkConstrainKratios_;
};

}  // namespace quorvane

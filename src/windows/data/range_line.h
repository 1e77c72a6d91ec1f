// The line of the tab "Edit" on which the range of radii to keep is typed and spread.
#pragma once

#include <QWidget>
#include <optional>

#include "core/page/kept_range.h"

class QCheckBox;
class QLineEdit;
class QPushButton;

namespace quorvane {

class RangeLine : public QWidget {
  Q_OBJECT
 public:
  explicit RangeLine(QWidget* parent = nullptr);

  // The range that stands in the dataset shown. Bounds that were typed stay as they are while the
  // range that they made stands, and so does what was typed and not taken yet.
  void ShowKept(const std::optional<RadiusSpan>& kept);

  // Another dataset is shown, whose range comes next.
  void Forget();

  // The range of the boxes. A box whose text was not changed stands for all digits of its radius.
  Refusal Read(RadiusSpan& span) const;

  // The boxes hold what was not taken yet.
  bool IsChanged() const;

  // The range of the boxes was taken; `kept` is what stands by it.
  void Take(const RadiusSpan& span, const std::optional<RadiusSpan>& kept);

  ChannelReach Reach() const;

  // Puts the keyboard into the first box.
  void FocusBounds();

  // `editable`: the dataset shown takes a range. `undo`: the last "Same Channel" can be taken back.
  void SetAvailable(bool editable, bool undo);

 signals:
  void KeepRequested();
  void SameChannelRequested();
  void UndoSameChannelRequested();

 protected:
  // With nothing typed the keys of undo and redo are those of the tab.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildWidgets();
  QPushButton* MakeButton(const char* name, const QString& caption, const QString& toolTip,
                          void (RangeLine::*requested)());
  QLineEdit* MakeBox(const char* name, const QString& toolTip);

  RadiusSpan shown_;  // that the texts stand for
  QString fromText_;  // of shown_
  QString toText_;
  std::optional<RadiusSpan> kept_;  // of the dataset when they were shown
  QLineEdit* txtKeepFrom_;
  QLineEdit* txtKeepTo_;
  QPushButton* cmdKeepRange_;
  QPushButton* cmdSameChannel_;
  QCheckBox* chkAllCells_;
  QPushButton* cmdUndoSameChannel_;
};

}  // namespace quorvane

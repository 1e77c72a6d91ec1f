// Controls that several tabs of the match window have.
#pragma once

#include <QGroupBox>
#include <array>
#include <string>
#include <vector>

#include "match/match.h"
#include "match/match_series.h"

class QListWidget;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace quorvane {

// A whole number from 1 with its arrows: `name` is the control's, `textName` that of its box.
QSpinBox* MakeStepBox(const char* name, const char* textName, int value);

// `keys` press it, and its tip says so.
QPushButton* MakeButton(const char* name, const QString& caption, const QString& tip,
                        const char* keys);

// A line for each scan: its name, its colour in the plots, and to the right its speed and time.
void ListScans(QListWidget& list, const MatchSeries& series);

// "Use Fitted Offsets": which shifts the deviations are shown after.
class OffsetChoice : public QGroupBox {
  Q_OBJECT
 public:
  // `buttons` names the array of option buttons, `labels` the texts beside them. "None" is chosen.
  OffsetChoice(const char* name, const char* buttons, const std::array<QString, 3>& labels);

  Offsets Chosen() const;
  void Choose(Offsets offsets);

 signals:
  void Changed();

 private:
  std::array<QRadioButton*, 3> buttons_;
};

}  // namespace quorvane

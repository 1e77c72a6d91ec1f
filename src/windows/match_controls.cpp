#include "windows/match_controls.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include "match/match_plots.h"
#include "windows/control_names.h"
#include "windows/page_controls.h"

QSpinBox* MakeStepBox(const char* name, const char* textName, int value) {
  constexpr int kMost = 9999;
  auto* box = Named(new QSpinBox, name);
  Named(box->findChild<QLineEdit*>(), textName);
  box->setRange(1, kMost);
  box->setValue(value);
  return box;
}

QPushButton* MakeButton(const char* name, const QString& caption, const QString& tip,
                        const char* keys) {
  auto* button = Named(new QPushButton(caption), name);
  const QKeySequence shortcut(QString::fromLatin1(keys));
  button->setShortcut(shortcut);
  button->setToolTip(tip + " (" + shortcut.toString(QKeySequence::NativeText) + ")");
  return button;
}

void ListScans(QListWidget& list, const std::vector<std::string>& names) {
  constexpr int kSide = 12;  // pixels
  const std::vector<ChartColor> colors = ScanColors(names.size());
  list.clear();
  for (std::size_t i = 0; i < names.size(); ++i) {
    const int bgr = static_cast<int>(colors[i]);
    QPixmap square(kSide, kSide);
    square.fill(Qt::white);  // a frame, without which black is lost on a dark list
    QPainter(&square).fillRect(square.rect().adjusted(1, 1, -1, -1),
                               QColor(bgr & 0xFF, bgr >> 8 & 0xFF, bgr >> 16 & 0xFF));
    list.addItem(new QListWidgetItem(square, QString::fromStdString(names[i])));
  }
}

OffsetChoice::OffsetChoice(const char* name, const char* buttons,
                           const std::array<QString, 3>& labels)
    : QGroupBox("Use Fitted Offsets") {
  const std::array<QString, 3> captions = {"None", "Y only", "X , Y"};
  setObjectName(name);
  auto* layout = new QGridLayout(this);
  layout->setColumnStretch(1, 1);
  for (int k = 0; k < 3; ++k) {
    const auto place = static_cast<std::size_t>(k);
    auto* button = Named(new QRadioButton, ElementName(buttons, k));
    auto* label = Named(new ClickLabel(captions[place]), labels[place]);
    button->setAccessibleName(captions[place]);
    label->setBuddy(button);
    layout->addWidget(button, k, 0);
    layout->addWidget(label, k, 1);
    connect(label, &ClickLabel::Clicked, button, &QRadioButton::click);
    connect(button, &QRadioButton::toggled, this, [this](bool on) {
      if (on) emit Changed();
    });
    buttons_[place] = button;
  }
  Choose(Offsets::kNone);
}

Offsets OffsetChoice::Chosen() const {
  for (const Offsets offsets : kAllOffsets) {
    if (buttons_[static_cast<std::size_t>(offsets)]->isChecked()) return offsets;
  }
  return Offsets::kNone;
}

void OffsetChoice::Choose(Offsets offsets) {
  buttons_[static_cast<std::size_t>(offsets)]->setChecked(true);
}

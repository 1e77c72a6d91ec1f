#include "windows/match/match_controls.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStyledItemDelegate>

#include "match/match_plots.h"
#include "plot/chart_color.h"
#include "windows/controls/control_names.h"
#include "windows/controls/page_controls.h"

namespace quorvane {

namespace {

constexpr int kFactsRole = Qt::UserRole;  // speed and time

// A line of a list with its facts at the right border.
class ScanDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const int gap = 4 * option.fontMetrics.averageCharWidth();
    const int facts = option.fontMetrics.horizontalAdvance(index.data(kFactsRole).toString());
    return QStyledItemDelegate::sizeHint(option, index) + QSize(facts + gap, 0);
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyledItemDelegate::paint(painter, option, index);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const auto role = selected ? QPalette::HighlightedText : QPalette::Text;
    const int margin = option.fontMetrics.averageCharWidth();
    option.widget->style()->drawItemText(painter, option.rect.adjusted(0, 0, -margin, 0),
                                         Qt::AlignRight | Qt::AlignVCenter, option.palette, true,
                                         index.data(kFactsRole).toString(), role);
  }
};

}  // namespace

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

void ListScans(QListWidget& list, const MatchSeries& series) {
  constexpr int kSide = 12;  // pixels
  const std::vector<ChartColor> colors = ScanColors(series.names.size());
  delete list.itemDelegate();
  list.setItemDelegate(new ScanDelegate(&list));
  list.clear();
  for (std::size_t i = 0; i < series.names.size(); ++i) {
    QPixmap square(kSide, kSide);
    square.fill(Qt::white);  // a frame, without which black is lost on a dark list
    QPainter(&square).fillRect(square.rect().adjusted(1, 1, -1, -1), ToQColor(colors[i]));
    auto* item = new QListWidgetItem(square, QString::fromStdString(series.names[i]), &list);
    const QString facts = QString::fromStdString(FactsOf(series.scans[i]));
    item->setData(kFactsRole, facts);
    item->setData(Qt::AccessibleTextRole, QString(item->text() + ", " + facts));
    item->setToolTip(item->text() + "\n" + facts);
  }
}

OffsetChoice::OffsetChoice(const char* name, const char* buttons,
                           const std::array<QString, 3>& labels)
    : QGroupBox(tr("Use Fitted Offsets")) {
  const std::array<QString, 3> captions = {tr("None"), tr("Y only"), tr("X , Y")};
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

}  // namespace quorvane

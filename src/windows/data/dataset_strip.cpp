#include "windows/data/dataset_strip.h"

#include <QAbstractListModel>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyledItemDelegate>

#include "plot/chart_color.h"
#include "scan/point_sketch.h"
#include "windows/controls/dataset_tip.h"
#include "windows/session/session.h"

namespace quorvane {

namespace {

constexpr int kMostPoints = 100;  // of a small plot

// The room of an entry: its plot, and its name below.
QSize EntrySize(const QFontMetrics& metrics) {
  return {metrics.horizontalAdvance("000 00_0A00000.dat"), metrics.height() * 9 / 2};
}

class SketchDelegate : public QStyledItemDelegate {
 public:
  SketchDelegate(const Session& session, QObject* parent)
      : QStyledItemDelegate(parent), session_(session) {}

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
    return EntrySize(option.fontMetrics);
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const std::vector<Dataset>& datasets = session_.Module.Store.Datasets;
    const auto place = static_cast<std::size_t>(index.row());
    if (place >= datasets.size()) return;
    painter->save();
    const bool shown = option.state.testFlag(QStyle::State_Selected);
    if (shown) painter->fillRect(option.rect, option.palette.highlight());
    const QRect inside = option.rect.adjusted(3, 3, -3, -2);
    const int line = option.fontMetrics.height();
    const QRect plot = inside.adjusted(0, 0, 0, -line);
    painter->fillRect(plot, Qt::white);
    DrawPoints(*painter, datasets[place], plot.adjusted(3, 3, -3, -3));
    painter->setPen(option.palette.color(shown ? QPalette::HighlightedText : QPalette::Text));
    const QString name = index.data().toString();  // with its number
    painter->drawText(inside.adjusted(0, plot.height(), 0, 0), Qt::AlignCenter,
                      option.fontMetrics.elidedText(name, Qt::ElideMiddle, inside.width()));
    painter->setPen(option.palette.color(QPalette::Mid));
    if (!shown) painter->drawRect(plot.adjusted(0, 0, -1, -1));
    painter->restore();
  }

 private:
  void DrawPoints(QPainter& painter, const Dataset& dataset, const QRect& room) const {
    const Preferences& preferences = session_.Module.Preferences;
    const QColor good = ToQColor(preferences.GoodColor);
    const QColor deleted = ToQColor(preferences.DeletedColor);
    for (const SketchPoint& point : SketchOf(dataset, kMostPoints)) {
      const QPointF at(room.left() + point.x * room.width(),
                       room.bottom() - point.y * room.height());
      painter.fillRect(QRectF(at.x() - 1.0, at.y() - 1.0, 2.0, 2.0), point.good ? good : deleted);
    }
  }

  const Session& session_;
};

}  // namespace

class DatasetStrip::Entries : public QAbstractListModel {
 public:
  Entries(const Session& session, QObject* parent)
      : QAbstractListModel(parent), session_(session) {}

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : count_;
  }

  QVariant data(const QModelIndex& index, int role) const override {
    const std::vector<Dataset>& datasets = session_.Module.Store.Datasets;
    const auto place = static_cast<std::size_t>(index.row());
    if (place >= datasets.size()) return {};
    const Dataset& dataset = datasets[place];
    switch (role) {
      case Qt::DisplayRole:
        return QStringLiteral("%1 %2")
            .arg(index.row() + 1)
            .arg(QString::fromStdString(NameOf(dataset)));
      case Qt::ToolTipRole:
        return DatasetTip(dataset);
      case Qt::AccessibleTextRole:
        return tr("Dataset %1, %2, %3 of %4 points in use")
            .arg(index.row() + 1)
            .arg(QString::fromStdString(NameOf(dataset)))
            .arg(CountGoodPoints(dataset))
            .arg(dataset.NumPoints);
      default:
        return {};
    }
  }

  void TakeStore() {
    if (count_ == session_.Module.Store.NumDatasets()) return;
    beginResetModel();
    count_ = session_.Module.Store.NumDatasets();
    endResetModel();
  }

 private:
  const Session& session_;
  int count_ = 0;  // that the view knows of
};

DatasetStrip::DatasetStrip(const Session& session, QWidget* parent)
    : QListView(parent), entries_(new Entries(session, this)) {
  setModel(entries_);
  setItemDelegate(new SketchDelegate(session, this));
  setFlow(QListView::LeftToRight);
  setWrapping(false);
  setUniformItemSizes(true);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAccessibleName(tr("All datasets"));
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &DatasetStrip::Select);
}

void DatasetStrip::Refresh(int shown) {
  refreshing_ = true;
  shown_ = shown;
  entries_->TakeStore();
  const QModelIndex entry = entries_->index(shown);
  if (shown < 0 || !entry.isValid()) {
    clearSelection();
    setCurrentIndex({});
  } else {
    setCurrentIndex(entry);
    scrollTo(entry);
  }
  refreshing_ = false;
  viewport()->update();
}

// A click with Ctrl takes the mark away; it stays on the dataset that is shown.
void DatasetStrip::Select(const QItemSelection& selected) {
  if (refreshing_) return;
  if (selected.isEmpty()) {
    Refresh(shown_);
  } else if (selected.indexes().front().row() != shown_) {
    emit Chosen(selected.indexes().front().row());
  }
}

QSize DatasetStrip::sizeHint() const {
  const int bar = horizontalScrollBar()->sizeHint().height();
  const QSize entry = EntrySize(fontMetrics());
  return {3 * entry.width(), entry.height() + 2 * frameWidth() + bar};
}

}  // namespace quorvane

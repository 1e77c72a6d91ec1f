// The room of the frame in which its child windows stand.
#pragma once

#include <QHash>
#include <QMdiArea>
#include <QRectF>

namespace quorvane {

// Children keep their share of the room when the frame is resized. What needs more than its share
// gets it, and the room scrolls.
class ChildArea : public QMdiArea {
  Q_OBJECT
 public:
  explicit ChildArea(QWidget* parent = nullptr);

  // Adds a window as a child that follows the room. Closing it hides it.
  QMdiSubWindow* AddChild(QWidget* widget);

  // Makes `child` so much larger as its neighbours on the right can give, or as the room has left.
  void Grow(QMdiSubWindow& child, QSize by);

  // What the children share, without the bars by which it scrolls.
  QRect Room() const;

  // Windows above each other, as wide as the room, or beside each other, as high as it.
  void Tile(Qt::Orientation orientation);
  void Cascade();
  void ArrangeIcons();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Share {
    QRectF place;       // in parts of the room
    bool away = false;  // it is maximised or minimised
  };

  void Remember(const QMdiSubWindow& child);
  void Place(QMdiSubWindow& child);
  QList<QMdiSubWindow*> Shown() const;  // that are not minimised

  QHash<const QObject*, Share> shares_;
  QSize room_;            // that the places are parts of
  bool placing_ = false;  // it is not the user who moves a child
};

}  // namespace quorvane

// The strip of small plots of all datasets on the tab "Edit": one looks over them and jumps.
#pragma once

#include <QListView>

namespace quorvane {

struct Session;

class DatasetStrip : public QListView {
  Q_OBJECT
 public:
  explicit DatasetStrip(const Session& session, QWidget* parent = nullptr);

  // Shows what the store holds and marks the dataset at `shown` (from 0; -1: none).
  void Refresh(int shown);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 signals:
  void Chosen(int position);

 private:
  class Entries;

  void Select(const QItemSelection& selected);

  Entries* entries_;
  int shown_ = -1;
  bool refreshing_ = false;  // the mark is moved by Refresh, not by the user
};

}  // namespace quorvane

// What the mouse pointer says of a time of work.
#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace quorvane {

// The busy pointer while it lives.
class BusyPointer {
 public:
  BusyPointer() { QGuiApplication::setOverrideCursor(Qt::BusyCursor); }
  ~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
};

// The usual pointer while it lives, over a box that stands in the middle of work.
class PlainPointer {
 public:
  PlainPointer() { QGuiApplication::setOverrideCursor(Qt::ArrowCursor); }
  ~PlainPointer() { QGuiApplication::restoreOverrideCursor(); }
  PlainPointer(const PlainPointer&) = delete;
  PlainPointer& operator=(const PlainPointer&) = delete;
};

}  // namespace quorvane

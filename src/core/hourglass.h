#pragma once

#include <QCursor>
#include <QGuiApplication>

// Shows the hourglass pointer (or another busy pointer) for the length of a scope, whatever
// ends it.
class Hourglass {
 public:
  explicit Hourglass(const QCursor& pointer = QCursor(Qt::WaitCursor)) {
    QGuiApplication::setOverrideCursor(pointer);
  }
  ~Hourglass() { QGuiApplication::restoreOverrideCursor(); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;
};

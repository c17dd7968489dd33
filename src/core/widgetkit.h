#pragma once

#include <QString>
#include <QWidget>

// Small pieces the windows share.

// A control with the object name the program and its tests find it by.
template <typename W>
W* named(W* w, const QString& name) {
  w->setObjectName(name);
  return w;
}

// The up-down arrows beside a number field: each click (repeated while held) steps by +1 or -1.
class UpDownButtons : public QWidget {
  Q_OBJECT
 public:
  explicit UpDownButtons(QWidget* parent = nullptr);
 signals:
  void stepped(int delta);
};

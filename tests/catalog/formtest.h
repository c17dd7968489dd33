#pragma once

#include <QApplication>
#include <QTimer>
#include <QtTest>
#include <functional>

#include "support/scriptedprompter.h"

// A window's control by its name; a missing one stops the test program.
template <typename T>
T* control(const QObject* w, const QString& name) {
  T* c = w->findChild<T*>(name);
  if (!c) qFatal("no control %s", qPrintable(name));
  return c;
}

// The boxes shown so far, each as "title: text".
inline QStringList boxes(const ScriptedPrompter& p) {
  QStringList out;
  for (const auto& e : p.entries) out << e.title + QStringLiteral(": ") + e.text;
  return out;
}

// Hands the modal window the code under test opens to `act`, once it is up and if it is the
// one named.
inline void onModal(const QString& name, std::function<void(QWidget*)> act) {
  QTimer::singleShot(0, [=] {
    QWidget* w = QApplication::activeModalWidget();
    QVERIFY(w);
    QCOMPARE(w->objectName(), name);
    act(w);
  });
}

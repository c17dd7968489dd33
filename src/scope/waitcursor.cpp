#include "scope/waitcursor.h"

#include <QGuiApplication>

#include "scope/scopecontrol.h"

void UseWaitCursor(ScopeLink& link) {
  link.busy = [](bool on) {
    if (on)
      QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    else
      QGuiApplication::restoreOverrideCursor();
  };
}

#include "scope/waitcursor.h"

#include <QCursor>
#include <QGuiApplication>

#include "scope/scopecontrol.h"

void UseWaitCursor(ScopeLink& link) {
  link.busy = [](bool on) {
    if (on) QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    else QGuiApplication::restoreOverrideCursor();
  };
}

#include "core/mainwindow.h"

#include "core/appstate.h"
#include "core/settings.h"

TavorineListMain::TavorineListMain(AppState& state, QWidget* parent)
    : QMainWindow(parent), state_(state) {
  setObjectName(QStringLiteral("TavorineListMain"));
  setWindowTitle(QStringLiteral("Tavorine"));
}

void TavorineListMain::start() {
  LoadStartupState(state_);
  show();
}

#include "exchange/exchangecommands.h"

#include <QApplication>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>

#include "core/appstate.h"
#include "core/handler.h"
#include "lists/listwindow.h"

namespace {

QString boxText(const QWidget& list, const char* name) {
  const auto* box = list.findChild<QLineEdit*>(QString::fromLatin1(name));
  return box ? box->text() : QString();
}

void restoreDefaultPointer() {
  while (QApplication::overrideCursor()) QApplication::restoreOverrideCursor();
}

}  // namespace

ExchangeCommands::ExchangeCommands(AppState& state, QMdiArea& area, QWidget& owner)
    : state_(state), area_(area), owner_(owner) {
  chooseFile = [this](const QString& title, const QString& folder, const QString& filter) {
    return ChooseImportFile(&owner_, title, folder, filter);
  };
}

CurrentList* ExchangeCommands::activeList() const {
  QMdiSubWindow* frame = area_.currentSubWindow();
  return frame ? qobject_cast<CurrentList*>(frame->widget()) : nullptr;
}

void ExchangeCommands::exportList(ExportKind kind) {
  RunGuarded(state_.prompter(), [&] {
    CurrentList* list = activeList();
    if (!list) return;
    ExportPrompt prompt(kind, state_,
                        {boxText(*list, "txtDataSource"), boxText(*list, "txtObserverTitle")},
                        &owner_);
    prompt.exec();
  });
}

void ExchangeCommands::importIntoList(ImportKind kind) {
  RunGuarded(state_.prompter(), [&] {
    CurrentList* list = activeList();
    if (!list) return;
    list->timerAltitude()->stop();
    ShowImportWindow(kind, state_, boxText(*list, "txtDataSource"), chooseFile, &owner_);
    restoreDefaultPointer();
    list->timerAltitude()->start();
    list->RequeryList();
  });
}

void ExchangeCommands::importIntoUserList() {
  RunGuarded(state_.prompter(), [&] {
    ShowImportWindow(ImportKind::CsvIntoUserList, state_, QString(), chooseFile, &owner_);
    restoreDefaultPointer();
  });
}

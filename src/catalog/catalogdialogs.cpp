#include "catalog/catalogdialogs.h"

#include "catalog/catalogpages.h"
#include "catalog/edituserlist.h"
#include "catalog/filterdialog.h"
#include "core/appstate.h"
#include "core/handler.h"

void ShowFilterDialog(AppState& state, QWidget* parent) {
  Filter dialog(state, parent);
  dialog.exec();
}

void ShowEditUserList(AppState& state, QWidget* parent) {
  if (!RunGuarded(state.prompter(), [&] { EnsureUserList(state); })) return;
  EditUserList editor(state, parent);
  editor.exec();
}

#include "catalog/catalogdialogs.h"

#include "core/appstate.h"

void ShowFilterDialog(AppState& state, QWidget*) { state.FilterCancelled = true; }

void ShowEditUserList(AppState&, QWidget*) {}

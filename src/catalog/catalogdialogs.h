#pragma once

class AppState;
class QWidget;

// Shows the Filter dialog modally. Afterwards state.FilterCancelled tells whether it was
// cancelled; accepted, it has set PageFilter and FilterSettings and written Filter.ini.
void ShowFilterDialog(AppState& state, QWidget* parent);

// Shows the user objects editor EditUserList modally.
void ShowEditUserList(AppState& state, QWidget* parent);

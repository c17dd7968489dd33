#pragma once

#include "scope/gotoflow.h"

class AppState;
class QWidget;
class ScopeLink;

// The read-back row and the Quick GoTo row that the main window and the hand control window
// both carry, reached by their controls' names below `panel`.

// cmdGetRA: asks the telescope where it points and fills txtRAHour to txtDecMin; a failed read
// leaves them as they were.
void ShowScopePosition(AppState& state, ScopeLink& link, QWidget* panel);

// The seven Quick GoTo fields as typed.
QuickGotoFields QuickGotoFieldsOf(const QWidget* panel);

// cmdDecSign: flips the sign in txtGotoDecSign and on the button's caption.
void FlipDecSignOf(QWidget* panel);

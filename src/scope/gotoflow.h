#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "sky/skycalc.h"

class AppState;
class ScopeLink;

// The GoTo requests of the main window, the list windows and the hand control window: the
// checks before a slew, the altitude guard and what happens after.

// The seven fields of a Quick GoTo panel, as typed.
struct QuickGotoFields {
  QString txtGotoRAHour, txtGotoRAMin, txtGoToRASec;
  QString txtGotoDecSign, txtGotoDecDeg, txtGotoDecMin, txtGotoDecSec;
};

// A Quick GoTo target read from its fields: RA minutes and Dec minutes carry the seconds.
struct QuickGotoTarget {
  double raHour = 0, raMin = 0;
  QString decSign;
  double decDeg = 0, decMin = 0;
};

// The panel a Quick GoTo comes from; they differ only in their trap.
enum class GotoPanel { MainWindow, HandControl };

// Reads the fields; on a value out of range, the text of the message to show instead
// ("Please enter a valid Right Ascension" or "Please enter a valid Declination").
struct QuickGotoCheck {
  QuickGotoTarget target;
  QString problem;  // empty when the target is valid
};
QuickGotoCheck CheckQuickGoto(const QuickGotoFields& fields);

// The question of the guard for an altitude outside the limits.
QString AltitudeAlertText(double altitude, double limit, bool belowMinimum);

// True when the slew may go: no altitude limits in use, the target inside MinAlt..MaxAlt
// (both inclusive, altitude to a tenth of a degree, computed for the present moment), or the
// user answered Yes to "Altitude Alert!".
bool AltitudeGuard(AppState& state, const SkyPosition& target);

// The sign button: "+" becomes "-", anything else "+".
QString FlipDecSign(const QString& sign);

// Quick GoTo from a panel. `beforeSlew` runs after the guard and before the slew (the main
// window switches its position timers there). True when the slew was sent without a failure.
bool QuickGoto(AppState& state, ScopeLink& link, const QuickGotoFields& fields, GotoPanel panel,
               const std::function<void()>& beforeSlew = {});

// GoTo from a list window. `currentRow` gives the position of the current record, or nothing
// when the list holds no record (then nothing happens). `markGoto` writes "Y" in the row's
// Goto column and commits it; it runs only when the slew went through and the user did not
// decline. Errors from either callback end in the handler's trap. Returns whether the row was
// marked.
bool ListGoto(AppState& state, ScopeLink& link,
              const std::function<std::optional<SkyPosition>()>& currentRow,
              const std::function<void()>& markGoto, const std::function<void()>& beforeSlew = {});

// GoTo from the hand control window on the object in view. Returns what the slew returned
// (false also when declined or trapped).
bool HandControlGoto(AppState& state, ScopeLink& link,
                     const std::function<SkyPosition()>& objectInView);

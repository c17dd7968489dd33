#include "scope/gotoflow.h"

#include "core/apperror.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/numtext.h"
#include "core/prompter.h"
#include "scope/scopecontrol.h"

namespace {

// The handlers' trap: error 5 is reported only on the main window.
std::function<void(const AppError&)> gotoTrap(AppState& state, bool reportInvalidCall) {
  return [&state, reportInvalidCall](const AppError& e) {
    if (e.number == ErrNo::InvalidCall && !reportInvalidCall) return;
    state.prompter().message(QStringLiteral("Error"), ScopeTrapText(e.description));
  };
}

// The position of a row or an object in view, its numbers read by their leading number: a
// blank minutes field is 0.
SkyPosition boundFields(const SkyPosition& p) {
  return SkyPosition::of(Val(p.raHours), Val(p.raMinutes), p.decSign, Val(p.decDegrees),
                         Val(p.decMinutes));
}

}  // namespace

QuickGotoCheck CheckQuickGoto(const QuickGotoFields& f) {
  QuickGotoCheck c;
  QuickGotoTarget& t = c.target;
  t.raHour = Val(f.txtGotoRAHour);
  t.raMin = Val(f.txtGotoRAMin) + Val(f.txtGoToRASec) / 60;
  t.decSign = f.txtGotoDecSign;
  t.decDeg = Val(f.txtGotoDecDeg);
  t.decMin = Val(f.txtGotoDecMin) + Val(f.txtGotoDecSec) / 60;

  const QString badRA = QStringLiteral("Please enter a valid Right Ascension");
  const QString badDec = QStringLiteral("Please enter a valid Declination");
  if (!(t.raHour >= 0 && t.raHour <= 23)) c.problem = badRA;
  else if (!(t.raMin >= 0 && t.raMin <= 59.9999)) c.problem = badRA;
  else if (!(t.decDeg >= 0 && t.decDeg <= 90)) c.problem = badDec;
  else if (t.decDeg == 90 && t.decMin != 0) c.problem = badDec;
  else if (!(t.decMin >= 0 && t.decMin <= 59.9999)) c.problem = badDec;
  return c;
}

QString AltitudeAlertText(double altitude, double limit, bool belowMinimum) {
  return QStringLiteral("This object is at an altitude of ") + PrintedNumber(altitude) +
         (belowMinimum ? QStringLiteral(", below your minimum altitude limit of ")
                       : QStringLiteral(", above your maximum altitude limit of ")) +
         PrintedNumber(limit) + QStringLiteral(".\nOverride and Goto anyway?");
}

bool AltitudeGuard(AppState& state, const SkyPosition& target) {
  const ProgramSettings& s = state.settings;
  if (!s.UseAltLimit) return true;
  const double alt = RoundHalfEven(AltitudeNow(state, target), 1);
  if (alt >= s.MinAlt && alt <= s.MaxAlt) return true;
  const bool below = alt < s.MinAlt;
  const QString text = AltitudeAlertText(alt, below ? s.MinAlt : s.MaxAlt, below);
  return state.prompter().ask(QStringLiteral("Altitude Alert!"), text, Prompter::Buttons::YesNo,
                              Prompter::Answer::Yes) != Prompter::Answer::No;
}

QString FlipDecSign(const QString& sign) {
  return sign == QLatin1String("+") ? QStringLiteral("-") : QStringLiteral("+");
}

bool QuickGoto(AppState& state, ScopeLink& link, const QuickGotoFields& fields, GotoPanel panel,
               const std::function<void()>& beforeSlew) {
  bool sent = false;
  RunGuarded(
      [&] {
        const QuickGotoCheck check = CheckQuickGoto(fields);
        if (!check.problem.isEmpty()) {
          state.prompter().message(QStringLiteral("Error"), check.problem);
          return;
        }
        const QuickGotoTarget& t = check.target;
        const SkyPosition target =
            SkyPosition::of(t.raHour, t.raMin, t.decSign, t.decDeg, t.decMin);
        if (!AltitudeGuard(state, target)) return;
        if (beforeSlew) beforeSlew();
        sent = ScopeGoto(state, link, t.raHour, t.raMin, t.decSign, t.decDeg, t.decMin);
      },
      gotoTrap(state, panel == GotoPanel::MainWindow));
  return sent;
}

bool ListGoto(AppState& state, ScopeLink& link,
              const std::function<std::optional<SkyPosition>()>& currentRow,
              const std::function<void()>& markGoto, const std::function<void()>& beforeSlew) {
  bool marked = false;
  RunGuarded(
      [&] {
        const std::optional<SkyPosition> row = currentRow();
        if (!row) return;
        const SkyPosition target = boundFields(*row);
        if (!AltitudeGuard(state, target)) return;
        if (beforeSlew) beforeSlew();
        if (!ScopeGoto(state, link, target)) return;
        if (markGoto) markGoto();
        marked = true;
      },
      gotoTrap(state, false));
  return marked;
}

bool HandControlGoto(AppState& state, ScopeLink& link,
                     const std::function<SkyPosition()>& objectInView) {
  bool sent = false;
  RunGuarded(
      [&] {
        const SkyPosition target = boundFields(objectInView());
        if (!AltitudeGuard(state, target)) return;
        sent = ScopeGoto(state, link, target);
      },
      gotoTrap(state, false));
  return sent;
}

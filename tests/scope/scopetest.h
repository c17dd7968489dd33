#pragma once

#include <QStringList>
#include <optional>

#include "scope/scopecontrol.h"
#include "support/scopesim.h"
#include "support/testenv.h"

// A read-back's five fields as one text ("5|34.5|+|22|1"), "nothing" when there was none.
inline QString Shown(const std::optional<PositionFields>& f) {
  if (!f) return QStringLiteral("nothing");
  return QStringList{f->txtRAHour, f->txtRAMin, f->txtDecSign, f->txtDecDeg, f->txtDecMin}.join(
      QLatin1Char('|'));
}

// A simulated telescope of `family` on a pseudo-terminal (or behind the relay), and a state
// whose Setup points at it.
struct SimRig {
  ScopeSim sim;
  TestEnv env;
  ScopeLink link;
  AppState& s = *env.state;
  bool start(const QString& family, const QString& mode = QStringLiteral("normal"),
             bool relay = false) {
    s.settings.ScopeType = family;
    if (!sim.start(family, mode, relay)) return false;
    s.settings.CommPort = sim.address;
    return true;
  }
  bool slew(double raH, double raM, const char* sign, double decD, double decM) {
    return ScopeGoto(s, link, raH, raM, QString::fromLatin1(sign), decD, decM);
  }
  QString read() { return Shown(ReadScopePosition(s, link)); }
};

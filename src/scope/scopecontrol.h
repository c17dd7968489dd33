#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "scope/indilink.h"
#include "scope/scopecodec.h"
#include "scope/scopeport.h"

class AppState;
struct SkyPosition;

// Blocks for that many milliseconds (rounded half to even) while still handling the event
// loop's non-input events, so nothing the user does can start meanwhile. `busy` is told
// true before and false after, for the hourglass pointer.
void WaitMs(double milliseconds, const std::function<void(bool)>& busy = {});

// What the telescope routines need from outside: ports made from the route, the wait with
// its pointer, and the time limits. The windows share one; tests use it with real
// pseudo-terminals and sockets.
class ScopeLink {
 public:
  virtual ~ScopeLink() = default;

  // A closed port on a device.
  virtual std::unique_ptr<ScopePort> makePort(const QString& device);
  void waitMs(double milliseconds) const { WaitMs(milliseconds, busy); }

  std::function<void(bool)> busy;  // shows and clears the hourglass pointer
  int portTimeoutMs = 2000;        // each open, write and read of a serial port
  int proxyTimeoutMs = 2000;       // connect to and answer from the hand-control relay
  int chartTimeoutMs = 2000;       // connect to and answer from the planetarium
  IndiLimits indi;                 // the steps of an exchange with an INDI server
  QString chartHost = QStringLiteral("127.0.0.1");
  quint16 chartPort = 3292;
};

// Passes a text command to the program that owns the hand-control link (CommPort "HCD" or
// "HCD host:port") and returns its reply, read up to the "#" that ends it. Nothing listening,
// a refused connection, a closed connection or no reply in time shows "Unable to communicate
// with hcAnywhere" and returns an empty reply.
QString ProxySend(AppState& state, const ScopeLink& link, const QString& command);

// Slews the telescope of ScopeType through the route of CommPort. True unless a step failed;
// each failing step shows its message and the next step still runs. On the INDI route the
// J2000 target goes to the mount on the equator of date, and the slew counts as sent once the
// device has taken it.
bool ScopeGoto(AppState& state, ScopeLink& link, double raHours, double raMinutes, QString decSign,
               double decDegrees, double decMinutes);
// The same for a position as the tables hold it (numbers as text, read by Val).
bool ScopeGoto(AppState& state, ScopeLink& link, const SkyPosition& target);

// Asks the telescope where it points. Nothing when the exchange failed (its message shown,
// or silently for a reply too short for a binary layout).
std::optional<PositionFields> ReadScopePosition(AppState& state, ScopeLink& link);

// The message texts of the telescope link.
QString ScopeTrapText(const QString& description);  // "Unable to communicate with the scope -\n..."

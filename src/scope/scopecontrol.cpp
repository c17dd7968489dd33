#include "scope/scopecontrol.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>

#include "core/apperror.h"
#include "core/appstate.h"
#include "core/numtext.h"
#include "core/prompter.h"
#include "sky/skycalc.h"

namespace {

const QString kError = QStringLiteral("Error");

}  // namespace

void WaitMs(double milliseconds, const std::function<void(bool)>& busy) {
  const double rounded = RoundHalfEven(milliseconds);
  const int ms = rounded > 0 ? static_cast<int>(qMin(rounded, 2147483647.0)) : 0;
  if (busy) busy(true);
  if (ms > 0) {
    if (QCoreApplication::instance() && QThread::currentThread() == qApp->thread()) {
      QEventLoop loop;
      QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
      loop.exec(QEventLoop::ExcludeUserInputEvents);
    } else {
      QThread::msleep(static_cast<unsigned long>(ms));
    }
  }
  if (busy) busy(false);
}

std::unique_ptr<ScopePort> ScopeLink::makePort(const QString& device) {
  return std::make_unique<SerialScopePort>(device, portTimeoutMs);
}

QString ScopeTrapText(const QString& description) {
  return QStringLiteral("Unable to communicate with the scope -\n") + description;
}

namespace {

// The link's hourglass for as long as it lives.
struct Busy {
  const ScopeLink& link;
  explicit Busy(const ScopeLink& l) : link(l) {
    if (link.busy) link.busy(true);
  }
  ~Busy() {
    if (link.busy) link.busy(false);
  }
};

// One exchange with the INDI mount of the settings, under the hourglass.
void WithIndiMount(const AppState& state, const ScopeLink& link,
                   const std::function<void(IndiMount&)>& use) {
  const Busy busy(link);
  const IndiSettings& s = state.indi;
  IndiMount mount({s.Host.trimmed(), static_cast<quint16>(s.Port), s.Device.trimmed()}, link.indi);
  mount.open();
  use(mount);
}

}  // namespace

QString ProxySend(AppState& state, const ScopeLink& link, const QString& command) {
  const ScopeRoute route = ScopeRoute::of(state.settings.CommPort);
  QByteArray reply;
  bool delivered = false;
  {
    QTcpSocket socket;
    socket.connectToHost(route.proxyHost, route.proxyPort);
    if (socket.waitForConnected(link.proxyTimeoutMs)) {
      socket.write(command.toLatin1());
      const QDeadlineTimer deadline(link.proxyTimeoutMs);
      if (socket.waitForBytesWritten(link.proxyTimeoutMs)) {
        // The hand control ends each answer with "#"; a relay that closes also ends it.
        while (!reply.contains('#') && !deadline.hasExpired()) {
          if (socket.bytesAvailable() == 0 &&
              !socket.waitForReadyRead(static_cast<int>(qMax<qint64>(1, deadline.remainingTime()))))
            break;
          reply += socket.readAll();
        }
        reply += socket.readAll();
        delivered = !reply.isEmpty();
      }
      socket.abort();
    }
  }
  if (!delivered) {
    state.prompter().message(kError, QStringLiteral("Unable to communicate with hcAnywhere"));
    return QString();
  }
  return QString::fromLatin1(reply);
}

bool ScopeGoto(AppState& state, ScopeLink& link, double raHours, double raMinutes, QString decSign,
               double decDegrees, double decMinutes) {
  bool ok = true;
  // A failing step shows its message and the slew goes on with the next one.
  const auto step = [&](const std::function<void()>& body) {
    try {
      body();
    } catch (const AppError& e) {
      ok = false;
      state.prompter().message(kError, ScopeTrapText(e.description));
    }
  };

  if (decSign != QLatin1String("-")) decSign = QStringLiteral("+");
  const QString family = state.settings.ScopeType;
  const ScopeRoute route = ScopeRoute::of(state.settings.CommPort);
  const std::unique_ptr<ScopePort> port = link.makePort(route.device);

  if (route.indi) {
    // The device's answer to the GoTo takes the place of the fixed wait.
    step([&] {
      const EquatorialPlace target = GotoPlace(raHours, raMinutes, decSign, decDegrees, decMinutes);
      WithIndiMount(state, link,
                    [&](IndiMount& mount) { mount.slewTo(J2000ToOfDate(target, state.now())); });
    });
  } else {
    if (route.serial) step([&] { port->open(); });

    QList<ScopeWrite> writes;
    step([&] { writes = EncodeGoto(family, raHours, raMinutes, decSign, decDegrees, decMinutes); });

    for (const ScopeWrite& w : writes) {
      if (!route.serial && IsHexTextFamily(family)) {
        // Its answer is not needed, but a relay that did not answer has been reported: the
        // slew failed.
        if (ProxySend(state, link, QString::fromLatin1(w.bytes)).isEmpty()) ok = false;
      } else {
        step([&] { port->write(w.bytes); });
      }
      if (w.waitAfterMs > 0) link.waitMs(w.waitAfterMs);
    }

    link.waitMs(250);
    if (route.serial) step([&] { port->close(); });
  }

  if (NeedsArrowReminder(family))
    state.prompter().message(
        QStringLiteral("Reminder"),
        QStringLiteral("After the slew is complete, you must press an arrow button on the hand "
                       "control\nbefore the next GoTo to prevent hand control lockup."));
  return ok;
}

bool ScopeGoto(AppState& state, ScopeLink& link, const SkyPosition& target) {
  return ScopeGoto(state, link, Val(target.raHours), Val(target.raMinutes), target.decSign,
                   Val(target.decDegrees), Val(target.decMinutes));
}

std::optional<PositionFields> ReadScopePosition(AppState& state, ScopeLink& link) {
  const QString family = state.settings.ScopeType;
  const ScopeRoute route = ScopeRoute::of(state.settings.CommPort);
  const std::unique_ptr<ScopePort> port = link.makePort(route.device);
  try {
    if (route.indi) {
      std::optional<PositionFields> fields;
      WithIndiMount(state, link, [&](IndiMount& mount) {
        fields = PlaceFields(OfDateToJ2000(mount.position(), state.now()));
      });
      return fields;
    }
    if (route.serial) {
      port->open();
      port->readAll();  // what an earlier slew left behind
    }
    QByteArray reply;
    if (!route.serial && IsHexTextFamily(family)) {
      reply = ProxySend(state, link, QStringLiteral("E")).toLatin1();
    } else {
      for (const ScopeWrite& w : PositionRequest(family)) {
        port->write(w.bytes);
        if (w.waitAfterMs > 0) link.waitMs(w.waitAfterMs);
      }
      link.waitMs(1000);
      reply = port->readAll();
    }
    if (route.serial) port->close();

    if (reply.isEmpty()) {
      state.prompter().message(kError, QStringLiteral("Unable to communicate with the scope"));
      return std::nullopt;
    }
    return ReplyDecode(family, reply);
  } catch (const AppError& e) {
    port->close();
    // A reply too short for a binary layout leaves the fields as they are, without a word.
    if (e.number != ErrNo::InvalidCall)
      state.prompter().message(kError, ScopeTrapText(e.description));
    return std::nullopt;
  }
}

#include "scope/chartlink.h"

#include <QDeadlineTimer>
#include <QTcpSocket>

#include "core/apperror.h"
#include "core/appstate.h"
#include "core/handler.h"
#include "core/numtext.h"
#include "core/prompter.h"
#include "scope/scopecontrol.h"

namespace {

// The planetarium link keeps the classic numbers of its conversation errors.
constexpr int kPeerRefused = 285;  // the planetarium answered something other than OK
constexpr int kPeerTimeout = 286;  // no answer in time
constexpr int kPeerQuit = 291;     // the planetarium closed the conversation

void showCdcTrap(AppState& state, const AppError& e) {
  state.prompter().message(QStringLiteral("Error"),
                           QStringLiteral("Unable to communicate with CDC -") + e.description +
                               QStringLiteral(" - ") + QString::number(e.number));
}

QString whole(double value) { return PlainNumber(value).trimmed(); }

// A position in whole units as the planetarium takes it: minutes rounded half to even, and a
// minute that rounds up to 60 carried into the hours or degrees (the planetarium refuses 60),
// right ascension wrapped at 24 hours.
struct ChartPosition {
  QString raHours, raMinutes, decSign, decDegrees, decMinutes;
};

ChartPosition chartPosition(double raHours, double raMinutes, const QString& decSign,
                            double decDegrees, double decMinutes) {
  double raMin = RoundHalfEven(raMinutes), decMin = RoundHalfEven(decMinutes);
  if (raMin >= 60) {
    raMin -= 60;
    raHours += 1;
  }
  if (raHours >= 24) raHours -= 24;
  if (decMin >= 60) {
    decMin -= 60;
    decDegrees += 1;
  }
  // The planetarium splits a command at blanks: a sign is "+", "-" or nothing.
  const QString sign = decSign.trimmed();
  return {whole(raHours), PlainNumber(raMin),
          sign == QLatin1String("-") || sign == QLatin1String("+") ? sign : QString(),
          whole(decDegrees), PlainNumber(decMin)};
}

// Reads one answer line of the server, within the deadline.
QByteArray answerLine(QTcpSocket& socket, QByteArray& pending, const QDeadlineTimer& deadline) {
  for (;;) {
    const int eol = pending.indexOf('\n');
    if (eol >= 0) {
      const QByteArray line = pending.left(eol).trimmed();
      pending.remove(0, eol + 1);
      // Lines starting with ">" are news the planetarium sends of its own accord.
      if (line.isEmpty() || line.startsWith('>')) continue;
      return line;
    }
    // What came in while a command was being written is already waiting.
    if (socket.bytesAvailable() > 0) {
      pending += socket.readAll();
      continue;
    }
    if (socket.state() != QAbstractSocket::ConnectedState)
      throw AppError(kPeerQuit, QStringLiteral("Foreign application quit"));
    if (deadline.hasExpired() ||
        !socket.waitForReadyRead(static_cast<int>(qMax<qint64>(1, deadline.remainingTime())))) {
      pending += socket.readAll();
      if (pending.contains('\n')) continue;
      if (socket.state() != QAbstractSocket::ConnectedState)
        throw AppError(kPeerQuit, QStringLiteral("Foreign application quit"));
      throw AppError(kPeerTimeout, QStringLiteral("Timeout while waiting for DDE response"));
    }
    pending += socket.readAll();
  }
}

}  // namespace

QByteArray MoveChartCommand(double raHours, double raMinutes, const QString& decSign,
                            double decDegrees, double decMinutes, double fieldDegrees) {
  const ChartPosition p = chartPosition(raHours, raMinutes, decSign, decDegrees, decMinutes);
  const QString text = QStringLiteral("MOVE RA:") + p.raHours + QLatin1Char('h') + p.raMinutes +
                       QStringLiteral("m00.00s DEC:") + p.decSign + p.decDegrees + QChar(0xB0) +
                       p.decMinutes + QStringLiteral("'00\" FOV:+") + whole(fieldDegrees) +
                       QChar(0xB0) + QStringLiteral("00'00\"");
  return text.toLatin1();
}

QStringList ChartServerCommands(double raHours, double raMinutes, const QString& decSign,
                                double decDegrees, double decMinutes, double fieldDegrees) {
  const ChartPosition p = chartPosition(raHours, raMinutes, decSign, decDegrees, decMinutes);
  return {QStringLiteral("SETRA RA:") + p.raHours + QLatin1Char('h') + p.raMinutes +
              QStringLiteral("m00.00s"),
          QStringLiteral("SETDEC DEC:") + p.decSign + p.decDegrees + QLatin1Char('d') +
              p.decMinutes + QStringLiteral("m00s"),
          QStringLiteral("SETFOV FOV:+") + whole(fieldDegrees) + QStringLiteral("d00m00s"),
          QStringLiteral("REDRAW")};
}

bool MoveChart(AppState& state, const ScopeLink& link, double raHours, double raMinutes,
               const QString& decSign, double decDegrees, double decMinutes, double fieldDegrees) {
  return RunGuarded(
      [&] {
        const QStringList commands =
            ChartServerCommands(raHours, raMinutes, decSign, decDegrees, decMinutes, fieldDegrees);
        QTcpSocket socket;
        socket.connectToHost(link.chartHost, link.chartPort);
        if (!socket.waitForConnected(link.chartTimeoutMs)) {
          socket.abort();
          throw AppError::of(ErrNo::NoDdePeer);
        }
        QByteArray pending;
        for (const QString& command : commands) {
          socket.write(command.toLatin1() + "\r\n");
          if (!socket.waitForBytesWritten(link.chartTimeoutMs) && socket.bytesToWrite() > 0)
            throw AppError(kPeerTimeout, QStringLiteral("Timeout while waiting for DDE response"));
          // The server greets a new client with "OK! id=... chart=..."; that line answers no
          // command, so it is passed over wherever it arrives.
          const QDeadlineTimer deadline(link.chartTimeoutMs);
          QByteArray answer;
          do {
            answer = answerLine(socket, pending, deadline);
          } while (answer.startsWith("OK!") && answer.contains("id="));
          if (!answer.startsWith("OK!"))
            throw AppError(
                kPeerRefused,
                QStringLiteral("Foreign application won't perform DDE method or operation"));
        }
        // A graceful close, so the last command is not cut off by a reset.
        socket.disconnectFromHost();
        if (socket.state() != QAbstractSocket::UnconnectedState &&
            !socket.waitForDisconnected(link.chartTimeoutMs))
          socket.abort();
      },
      [&](const AppError& e) {
        if (e.number == ErrNo::NoDdePeer)
          state.prompter().message(QStringLiteral("Error"),
                                   QStringLiteral("Start CDC before using this feature."));
        else showCdcTrap(state, e);
      });
}

bool CentreChartOnObject(AppState& state, const ScopeLink& link,
                         const std::function<std::optional<SkyPosition>()>& objectInView) {
  bool moved = false;
  RunGuarded(
      [&] {
        const std::optional<SkyPosition> p = objectInView();
        if (!p) return;
        moved = MoveChart(state, link, Val(p->raHours), Val(p->raMinutes), p->decSign,
                          Val(p->decDegrees), Val(p->decMinutes), 5);
      },
      [&](const AppError& e) { showCdcTrap(state, e); });
  return moved;
}

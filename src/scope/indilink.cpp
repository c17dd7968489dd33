#include "scope/indilink.h"

#include <baseclient.h>
#include <basedevice.h>
#include <indiproperty.h>
#include <indipropertynumber.h>
#include <indipropertyswitch.h>

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QHash>
#include <QMap>
#include <QObject>
#include <QTimer>
#include <cmath>
#include <mutex>

#include "core/apperror.h"

namespace {

const char* const kConnection = "CONNECTION";
const char* const kCoordinates = "EQUATORIAL_EOD_COORD";
const char* const kOnCoordSet = "ON_COORD_SET";
const char* const kDriverInfo = "DRIVER_INFO";

// What a property held when INDI's thread last reported it.
struct PropertySnapshot {
  IPState state = IPS_IDLE;
  QHash<QString, double> numbers;
  QHash<QString, bool> switches;
  QHash<QString, QString> texts;
  int serial = 0;  // counts the reports of this property
};

PropertySnapshot snapshotOf(const INDI::Property& p) {
  PropertySnapshot s;
  s.state = p.getState();
  switch (p.getType()) {
    case INDI_NUMBER:
      for (const auto& w : *p.getNumber())
        s.numbers.insert(QString::fromUtf8(w.getName()), w.getValue());
      break;
    case INDI_SWITCH:
      for (const auto& w : *p.getSwitch())
        s.switches.insert(QString::fromUtf8(w.getName()), w.getState() == ISS_ON);
      break;
    case INDI_TEXT:
      for (const auto& w : *p.getText())
        s.texts.insert(QString::fromUtf8(w.getName()), QString::fromUtf8(w.getText()));
      break;
    default: break;
  }
  return s;
}

QString quoted(const QString& device) { return QLatin1Char('"') + device + QLatin1Char('"'); }

AppError serverLost(const IndiAddress& address) {
  return AppError(
      ErrNo::IndiServer,
      QStringLiteral("The INDI server at %1 closed the connection.").arg(address.server()));
}

AppError notTelescope(const QString& device) {
  return AppError(ErrNo::IndiDevice,
                  QStringLiteral("The INDI device %1 is not a telescope.").arg(quoted(device)));
}

}  // namespace

// What this thread knows of the server, built only from the reports handed over to it.
struct IndiMount::State {
  bool lost = false;
  QStringList devices;                                         // in the order they appeared
  QMap<QPair<QString, QString>, PropertySnapshot> properties;  // (device, property)
  QHash<QString, QString> lastMessage;                         // by device
  int messages = 0;
  std::function<void()> wake;  // set while a wait runs

  // The device's last message, after a blank, when it came after `count` messages.
  QString saidSince(const QString& device, int count) const {
    const QString text = lastMessage.value(device);
    return messages > count && !text.isEmpty() ? QLatin1Char(' ') + text : QString();
  }

  const PropertySnapshot* find(const QString& device, const char* name) const {
    const auto it = properties.constFind({device, QString::fromLatin1(name)});
    return it == properties.constEnd() ? nullptr : &*it;
  }
};

// The INDI client. Its callbacks run on INDI's own thread: each takes what it needs from the
// property there and hands it to the receiver, which lives on this thread.
class IndiMount::Client : public INDI::BaseClient {
 public:
  explicit Client(State& state) : receiver_(new QObject), state_(state) {}
  ~Client() override {
    if (isServerConnected()) disconnectServer();
    std::lock_guard<std::mutex> lock(mutex_);
    delete receiver_;
    receiver_ = nullptr;
  }

 protected:
  void newDevice(INDI::BaseDevice device) override {
    const QString name = QString::fromUtf8(device.getDeviceName());
    post([name](State& s) {
      if (!s.devices.contains(name)) s.devices << name;
    });
  }
  void newProperty(INDI::Property property) override { report(property); }
  void updateProperty(INDI::Property property) override { report(property); }
  void removeProperty(INDI::Property property) override {
    const auto key = qMakePair(QString::fromUtf8(property.getDeviceName()),
                               QString::fromUtf8(property.getName()));
    post([key](State& s) { s.properties.remove(key); });
  }
  void newMessage(INDI::BaseDevice device, int messageId) override {
    const QString name = QString::fromUtf8(device.getDeviceName());
    QString text = QString::fromStdString(device.messageQueue(messageId));
    // Messages come as "<timestamp>: [LEVEL] text".
    const int colon = text.indexOf(QLatin1String(": "));
    if (colon > 0 && colon < 30) text = text.mid(colon + 2);
    if (text.startsWith(QLatin1Char('[')) && text.indexOf(QLatin1String("] ")) > 0)
      text = text.mid(text.indexOf(QLatin1String("] ")) + 2);
    post([name, text](State& s) {
      s.lastMessage.insert(name, text.trimmed());
      ++s.messages;
    });
  }
  void serverDisconnected(int) override {
    post([](State& s) { s.lost = true; });
  }

 private:
  void report(const INDI::Property& property) {
    const QString device = QString::fromUtf8(property.getDeviceName());
    const QString name = QString::fromUtf8(property.getName());
    PropertySnapshot snapshot = snapshotOf(property);
    post([device, name, snapshot](State& s) {
      PropertySnapshot& held = s.properties[{device, name}];
      const int serial = held.serial + 1;
      held = snapshot;
      held.serial = serial;
    });
  }

  void post(std::function<void(State&)> change) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!receiver_) return;
    State* state = &state_;
    QMetaObject::invokeMethod(
        receiver_,
        [state, change = std::move(change)] {
          change(*state);
          if (state->wake) state->wake();
        },
        Qt::QueuedConnection);
  }

  std::mutex mutex_;
  QObject* receiver_;
  State& state_;
};

IndiMount::IndiMount(IndiAddress address, IndiLimits limits)
    : address_(std::move(address)),
      limits_(limits),
      state_(std::make_unique<State>()),
      client_(std::make_unique<Client>(*state_)) {}

IndiMount::~IndiMount() = default;

bool IndiMount::waitUntil(const std::function<bool()>& done, int ms) {
  if (done() || state_->lost) return done();
  QEventLoop loop;
  QTimer limit;
  limit.setSingleShot(true);
  QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
  state_->wake = [&] {
    if (done() || state_->lost) loop.quit();
  };
  limit.start(ms);
  loop.exec(QEventLoop::ExcludeUserInputEvents);
  state_->wake = nullptr;
  return done();
}

// Sent from a vector of our own: the client's copy belongs to INDI's thread.
void IndiMount::switchOn(const char* property, const char* element) {
  INDI::PropertySwitch vector(1);
  vector[0].setName(element);
  vector[0].setState(ISS_ON);
  vector.fill(address_.device.toUtf8().constData(), property, "", "", IP_RW, ISR_1OFMANY, 0,
              IPS_IDLE);
  client_->sendNewSwitch(vector);
}

void IndiMount::connectServer() {
  client_->setServer(address_.host.toUtf8().constData(), address_.port);
  const int ms = qMax(1, limits_.connectMs);
  client_->setConnectionTimeout(static_cast<uint32_t>(ms / 1000),
                                static_cast<uint32_t>(ms % 1000) * 1000);
  if (!client_->connectServer())
    throw AppError(ErrNo::IndiServer,
                   QStringLiteral("No INDI server answers at %1.").arg(address_.server()));
}

void IndiMount::open() {
  const QString& device = address_.device;
  if (device.trimmed().isEmpty())
    throw AppError(ErrNo::IndiDevice, QStringLiteral("No INDI device is named in Setup."));
  connectServer();

  // The device, with its connection switch and what kind of device it is.
  const auto described = [&] {
    return state_->find(device, kConnection) && state_->find(device, kDriverInfo);
  };
  waitUntil(described, limits_.deviceMs);
  if (state_->lost) throw serverLost(address_);
  if (!state_->find(device, kConnection)) {
    QString text = QStringLiteral("The INDI server at %1 has no device %2.")
                       .arg(address_.server(), quoted(device));
    if (!state_->devices.isEmpty())
      text += QStringLiteral(" It has: ") + state_->devices.join(QStringLiteral(", ")) +
              QLatin1Char('.');
    throw AppError(ErrNo::IndiDevice, text);
  }
  if (const PropertySnapshot* info = state_->find(device, kDriverInfo)) {
    const int interfaces = info->texts.value(QStringLiteral("DRIVER_INTERFACE")).toInt();
    if (!(interfaces & INDI::BaseDevice::TELESCOPE_INTERFACE)) throw notTelescope(device);
  }

  // Connected to its mount, and showing where the mount points.
  const auto connected = [&] {
    const PropertySnapshot* c = state_->find(device, kConnection);
    return c && c->switches.value(QStringLiteral("CONNECT")) && c->state != IPS_BUSY;
  };
  const auto hasCoordinates = [&] { return state_->find(device, kCoordinates) != nullptr; };
  if (!connected()) {
    const int before = state_->messages;
    switchOn(kConnection, "CONNECT");
    const bool done = waitUntil(
        [&] {
          const PropertySnapshot* c = state_->find(device, kConnection);
          return (connected() && hasCoordinates()) || (c && c->state == IPS_ALERT);
        },
        limits_.mountMs);
    if (state_->lost) throw serverLost(address_);
    if (!done || !connected()) {
      throw AppError(
          ErrNo::IndiMount,
          QStringLiteral("The INDI device %1 could not connect to its mount.").arg(quoted(device)) +
              state_->saidSince(device, before));
    }
  }
  if (!waitUntil(hasCoordinates, limits_.deviceMs)) {
    if (state_->lost) throw serverLost(address_);
    throw notTelescope(device);
  }
}

EquatorialPlace IndiMount::position() const {
  const PropertySnapshot* p = state_->find(address_.device, kCoordinates);
  if (!p) throw notTelescope(address_.device);
  return {p->numbers.value(QStringLiteral("RA")), p->numbers.value(QStringLiteral("DEC"))};
}

void IndiMount::slewTo(const EquatorialPlace& ofDate) {
  const QByteArray device = address_.device.toUtf8();
  // Slew and then track, unless the device already does so.
  const PropertySnapshot* onSet = state_->find(address_.device, kOnCoordSet);
  if (onSet && onSet->switches.contains(QStringLiteral("TRACK")) &&
      !onSet->switches.value(QStringLiteral("TRACK")))
    switchOn(kOnCoordSet, "TRACK");

  const PropertySnapshot* before = state_->find(address_.device, kCoordinates);
  const int serial = before ? before->serial : 0;
  const int messages = state_->messages;
  INDI::PropertyNumber target(2);
  target[0].setName("RA");
  target[0].setValue(ofDate.raHours);
  target[1].setName("DEC");
  target[1].setValue(ofDate.decDegrees);
  target.fill(device.constData(), kCoordinates, "", "", IP_RW, 0, IPS_IDLE);
  client_->sendNewNumber(target);

  // Taken: the device reports the slew (Busy) or, already there, the target itself.
  IPState answer = IPS_IDLE;
  const bool answered = waitUntil(
      [&] {
        const PropertySnapshot* p = state_->find(address_.device, kCoordinates);
        if (!p || p->serial <= serial) return false;
        const double dRa =
            std::remainder(p->numbers.value(QStringLiteral("RA")) - ofDate.raHours, 24.0);
        const double dDec = p->numbers.value(QStringLiteral("DEC")) - ofDate.decDegrees;
        const bool there = std::fabs(dRa) * 15 < 0.01 && std::fabs(dDec) < 0.01;
        if (p->state == IPS_BUSY || p->state == IPS_ALERT || (p->state == IPS_OK && there))
          answer = p->state;
        return answer != IPS_IDLE;
      },
      limits_.replyMs);
  if (answered && answer != IPS_ALERT) return;
  if (state_->lost) throw serverLost(address_);
  const QString text =
      answered ? QStringLiteral("The INDI device %1 refused the GoTo.").arg(quoted(address_.device))
               : QStringLiteral("The INDI device %1 did not take the GoTo in time.")
                     .arg(quoted(address_.device));
  throw AppError(ErrNo::IndiGoto, text + state_->saidSince(address_.device, messages));
}

QStringList IndiMount::telescopes(const IndiAddress& server, const IndiLimits& limits) {
  IndiMount probe(server, limits);
  probe.connectServer();
  // Devices keep coming while the server forwards the question to its drivers; a quiet spell
  // after the last one ends the wait.
  State& s = *probe.state_;
  const auto interfaceKnown = [&] {
    if (s.devices.isEmpty()) return false;
    for (const QString& d : s.devices)
      if (!s.find(d, kDriverInfo)) return false;
    return true;
  };
  const QDeadlineTimer deadline(limits.deviceMs);
  probe.waitUntil(interfaceKnown, limits.deviceMs);
  int seen = -1;
  while (seen != s.properties.size() && !s.lost && !deadline.hasExpired()) {
    seen = s.properties.size();
    probe.waitUntil([&] { return s.properties.size() != seen; }, 300);
  }
  QStringList found;
  for (const QString& d : s.devices) {
    const PropertySnapshot* info = s.find(d, kDriverInfo);
    const int interfaces = info ? info->texts.value(QStringLiteral("DRIVER_INTERFACE")).toInt() : 0;
    if ((interfaces & INDI::BaseDevice::TELESCOPE_INTERFACE) || s.find(d, kCoordinates)) found << d;
  }
  return found;
}

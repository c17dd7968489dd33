#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

#include "sky/ofdate.h"

// Where an INDI mount is reached: the server and the name of its telescope device.
struct IndiAddress {
  QString host;
  quint16 port = 7624;
  QString device;

  QString server() const { return host + QLatin1Char(':') + QString::number(port); }
};

// The time limits of one exchange with an INDI server, in milliseconds.
struct IndiLimits {
  int connectMs = 3000;  // reach the server
  int deviceMs = 3000;   // the device shows its properties
  int mountMs = 20000;   // the device connects to its mount when it was not yet connected
  int replyMs = 5000;    // the device takes a GoTo
};

// One exchange with the telescope device of an INDI server: open() reaches the server, finds
// the device and connects it to its mount when it is not yet connected; then the position is
// read or a GoTo sent. Positions are on the equator of date, as INDI's EQUATORIAL_EOD_COORD
// holds them. Each step waits within its limit; what fails raises AppError with a text that
// names what is missing. The device's own messages arrive on INDI's thread and are handed to
// this (the user interface) thread; the waits let no user input through, as WaitMs does.
class IndiMount {
 public:
  IndiMount(IndiAddress address, IndiLimits limits = {});
  ~IndiMount();
  IndiMount(const IndiMount&) = delete;
  IndiMount& operator=(const IndiMount&) = delete;

  void open();
  EquatorialPlace position() const;
  // Sends the mount there and tracks; returns once the device has taken the GoTo (the slew
  // itself goes on), raises when it refuses or does not answer.
  void slewTo(const EquatorialPlace& ofDate);

  // The telescope devices the server offers (for Setup); raises when no server answers.
  static QStringList telescopes(const IndiAddress& server, const IndiLimits& limits = {});

  class Client;
  struct State;

 private:
  bool waitUntil(const std::function<bool()>& done, int ms);
  void connectServer();
  void switchOn(const char* property, const char* element);

  IndiAddress address_;
  IndiLimits limits_;
  std::unique_ptr<State> state_;
  std::unique_ptr<Client> client_;
};

#pragma once

#include <QDateTime>
#include <QTimeZone>
#include <array>
#include <optional>
#include <string>

// The system's time zone, cheap enough to read at every altitude. A change of the zone still
// shows at the next reading: the TZ variable is compared on every call, and the files that
// name the zone when TZ is not set (/etc/localtime, /etc/timezone, /etc/TZ) are looked at
// (device, inode, size, time of change) whenever RecheckMs have passed since the last look.
// Only when one of them changed is the zone loaded again; its offset is kept until the
// zone's next transition. Used from the user-interface thread only.
class SystemZone {
 public:
  // The files are looked at no more often than this; a change of the system zone within
  // that time after a reading shows at the first reading after it.
  static constexpr qint64 RecheckMs = 10;

  // Seconds east of UTC in force at a moment (milliseconds since 1970 UTC), daylight saving
  // included; nothing when the system names a zone that cannot be read.
  std::optional<int> offsetSecondsAt(qint64 utcMSecs);

  // The present local wall clock; QDateTime's own when the zone cannot be read.
  QDateTime localNow();

  // The zone of the process.
  static SystemZone& instance();

 private:
  struct FileIdentity {
    bool exists = false;
    quint64 device = 0, inode = 0;
    qint64 size = 0, changedSec = 0, changedNsec = 0;
    bool operator==(const FileIdentity& o) const;
  };
  using FileIdentities = std::array<FileIdentity, 3>;

  bool namingChanged(qint64 utcMSecs);
  static FileIdentities lookAtFiles();

  bool loaded_ = false;
  bool tzSet_ = false;
  std::string tz_;
  FileIdentities files_{};
  qint64 filesSeenAt_ = 0;

  QTimeZone zone_;
  bool offsetKnown_ = false;
  int offset_ = 0;
  qint64 validFrom_ = 0, validUntil_ = 0;  // the offset holds for [from, until)
};

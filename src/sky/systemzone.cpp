#include "sky/systemzone.h"

#include <sys/stat.h>

#include <cstdlib>
#include <limits>

bool SystemZone::FileIdentity::operator==(const FileIdentity& o) const {
  return exists == o.exists && device == o.device && inode == o.inode && size == o.size &&
         changedSec == o.changedSec && changedNsec == o.changedNsec;
}

SystemZone& SystemZone::instance() {
  static SystemZone zone;
  return zone;
}

SystemZone::FileIdentities SystemZone::lookAtFiles() {
  // The files Qt and the C library take the zone's name or rules from when TZ is not set. A
  // new zone arrives by an atomic rename or a new link, so a new inode or a new time shows it.
  static const char* const paths[] = {"/etc/localtime", "/etc/timezone", "/etc/TZ"};
  FileIdentities ids{};
  for (size_t i = 0; i < ids.size(); ++i) {
    struct stat st;
    if (::stat(paths[i], &st) != 0) continue;
    ids[i] = {true,
              quint64(st.st_dev),
              quint64(st.st_ino),
              qint64(st.st_size),
              qint64(st.st_ctim.tv_sec),
              qint64(st.st_ctim.tv_nsec)};
  }
  return ids;
}

bool SystemZone::namingChanged(qint64 utcMSecs) {
  const char* tz = std::getenv("TZ");
  const bool tzSet = tz != nullptr && *tz != '\0';
  bool changed = !loaded_ || tzSet != tzSet_ || (tzSet && tz_ != tz);
  if (changed) {
    tzSet_ = tzSet;
    tz_ = tzSet ? tz : "";
  }
  // With TZ set the files play no part. The wall clock may also step back: look again then.
  if (!tzSet && (changed || utcMSecs - filesSeenAt_ >= RecheckMs || utcMSecs < filesSeenAt_)) {
    const FileIdentities now = lookAtFiles();
    if (!(now == files_)) changed = true;
    files_ = now;
    filesSeenAt_ = utcMSecs;
  }
  return changed;
}

std::optional<int> SystemZone::offsetSecondsAt(qint64 utcMSecs) {
  if (namingChanged(utcMSecs)) {
    zone_ = QTimeZone::systemTimeZone();
    loaded_ = true;
    offsetKnown_ = false;
  }
  if (!zone_.isValid()) return std::nullopt;
  if (!offsetKnown_ || utcMSecs < validFrom_ || utcMSecs >= validUntil_) {
    const QDateTime at = QDateTime::fromMSecsSinceEpoch(utcMSecs, Qt::UTC);
    offset_ = zone_.offsetFromUtc(at);
    const QTimeZone::OffsetData next = zone_.nextTransition(at);
    validFrom_ = utcMSecs;
    validUntil_ =
        next.atUtc.isValid() ? next.atUtc.toMSecsSinceEpoch() : std::numeric_limits<qint64>::max();
    offsetKnown_ = true;
  }
  return offset_;
}

QDateTime SystemZone::localNow() {
  const qint64 utc = QDateTime::currentMSecsSinceEpoch();
  if (const std::optional<int> offset = offsetSecondsAt(utc))
    return QDateTime::fromMSecsSinceEpoch(utc, Qt::OffsetFromUTC, *offset);
  return QDateTime::currentDateTime();
}

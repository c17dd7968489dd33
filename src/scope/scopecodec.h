#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "sky/ofdate.h"

// Slew commands and position replies of the nine telescope families, as pure functions.

// One write to the telescope, and how long to wait after it before the next write.
struct ScopeWrite {
  QByteArray bytes;
  int waitAfterMs = 0;

  bool operator==(const ScopeWrite& o) const {
    return bytes == o.bytes && waitAfterMs == o.waitAfterMs;
  }
};

// The five display fields a read-back fills (txtRAHour, txtRAMin, txtDecSign, txtDecDeg,
// txtDecMin).
struct PositionFields {
  QString txtRAHour, txtRAMin, txtDecSign, txtDecDeg, txtDecMin;

  bool operator==(const PositionFields& o) const {
    return txtRAHour == o.txtRAHour && txtRAMin == o.txtRAMin && txtDecSign == o.txtDecSign &&
           txtDecDeg == o.txtDecDeg && txtDecMin == o.txtDecMin;
  }
};

// The families that speak hex text without a terminator: the only ones with a proxy route.
// An unknown family code counts as one of them, as the command builder treats it.
bool IsHexTextFamily(const QString& family);
// The families whose GoTo ends with the "Reminder" box.
bool NeedsArrowReminder(const QString& family);

// 16-bit telescope units, with the program's scale constant 1.011358. A south declination is
// the full circle minus the angle, so -00 00 gives 65535.
double RAUnits(double raHours, double raMinutes);
double DecUnits(const QString& decSign, double decDegrees, double decMinutes);

// "R3B77,0FA8": the hex text of a slew, without terminator.
QByteArray HexGotoText(int raUnits, int decUnits);

// The writes of one slew for a family. A unit outside 0..65535 raises error 5.
QList<ScopeWrite> EncodeGoto(const QString& family, double raHours, double raMinutes,
                             const QString& decSign, double decDegrees, double decMinutes);

// The J2000 place of a GoTo for a mount that takes angles (the INDI route): the same fields and
// the same range as the 16-bit commands (error 5 outside it), without their rounding.
EquatorialPlace GotoPlace(double raHours, double raMinutes, const QString& decSign,
                          double decDegrees, double decMinutes);
// The display fields of a place, by the rules of the hex replies.
PositionFields PlaceFields(const EquatorialPlace& place);

// The writes that ask a family for its position ("E", BIG's "?" first, ULTIMA's carriage
// return).
QList<ScopeWrite> PositionRequest(const QString& family);

// The display fields for a position given in minutes of time (0 up to 1440) and minutes of
// arc (0 up to 21600, above 10800 meaning south).
PositionFields DisplayPosition(double raMinutes, double decMinutes);

// Decodes a reply by the layout of the family. A binary reply too short for its layout
// raises error 5; a hex pair that is absent or not hexadecimal reads as 0.
PositionFields ReplyDecode(const QString& family, const QByteArray& reply);

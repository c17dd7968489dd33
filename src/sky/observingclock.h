#pragma once

#include <QDate>
#include <QDateTime>
#include <QString>

// What the observing-date dialog shows for a UserDate: the calendar date, the hour without
// padding and the minutes as two digits.
struct UserDateFields {
  QDate date;
  QString hour;
  QString minute;
};

UserDateFields UserDateFieldsOf(const QDateTime& userDate);

// The UserDate the dialog's fields make: the calendar's date in the short date form, a blank,
// the hour and the minutes (each read by Val and written as two digits), read back as a date
// and time. Seconds are thereby zero. Raises error 13 when the text is no date (hour 25).
QDateTime UserDateFromFields(const QDate& date, const QString& hourText, const QString& minuteText);

// One press of an up-down arrow on a number field: the field's number (by Val, rounded) moved
// by `steps` and held inside 0..maximum, written with `mask` ("0" or "00").
QString StepNumberText(const QString& text, int steps, int maximum, const QString& mask);

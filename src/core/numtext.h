#pragma once

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QTime>
#include <optional>

// Number and text conversions shared by the whole program. They follow the classic rules the
// program's files and messages were made with, so that texts come out the same everywhere.

// The leading number of a text, 0 for anything else, never an error. Blanks, tabs and line
// feeds anywhere in the text are skipped; "&H" and "&O" introduce hexadecimal and octal.
double Val(const QString& text);
// The same over the UTF-8 bytes of a text: the query language's val(), one conversion with the
// program's.
double ValUtf8(const char* text, qsizetype size);

// True when the whole text (blanks around it aside) reads as a number.
bool IsNumeric(const QString& text);

// The plain conversion of a number to text: up to 15 significant digits, "0.5", "-3", "1E-05".
QString PlainNumber(double value);
// The same for a single-precision value: up to 7 significant digits.
QString PlainSingle(float value);

// The printed form: a leading blank for non-negative numbers and no zero before the decimal
// point, so 0.5 gives " .5", 12 gives " 12" and -2 gives "-2".
QString PrintedNumber(double value);

// Shortest text that reads back to the same single-precision value, with a point whatever
// the locale: 12 gives "12", 9.5 gives "9.5", 0.1f gives "0.1".
QString ShortestSingle(float value);

// Rounding half to even, to a number of decimals.
double RoundHalfEven(double value, int decimals = 0);

// Int: the largest whole number not above the value. Fix: the whole part toward zero.
double Int(double value);
double Fix(double value);

// Strict conversion to a 16-bit integer, rounding half to even: text that is not a number
// raises error 13, a value out of range error 6.
qint16 CInt(const QString& text);
qint16 CInt(double value);
qint32 CLng(double value);
// Strict conversion to single precision: a value too big for it raises error 6.
float CSng(double value);

// Format masks made of zeros with an optional decimal part: "00" gives 5 as "05", "00.0"
// gives 5.25 as "05.3" (halves away from zero, as the classic Format does).
QString FormatMask(double value, const QString& mask);

// Left-pads a text with blanks to a width (the classic Format(x, "@@@@@@@@@@")).
QString PadLeft(const QString& text, int width);

// The short date and time forms of the locale, and the reverse.
QString ShortDate(const QDate& date);
QString ShortTime(const QTime& time);
// Reads a text made of a short date, and optionally a blank and a time "hh:mm[:ss]".
// Raises error 13 when the text is not a date.
QDateTime CDate(const QString& text);

// The classic date serial: days since 30 December 1899 plus the fraction of the day, counted
// on the wall clock (no daylight-saving jump inside a difference).
double DateSerial(const QDateTime& local);

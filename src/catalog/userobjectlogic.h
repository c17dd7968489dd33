#pragma once

#include <QString>

// What a field of the user objects editor holds after it was left, and the message to show
// (title UserFieldErrorTitle()) when its value fails the test; an empty message means it passed.
// A failed field beeps, shows the message and takes the focus back.
struct UserFieldCheck {
  QString text;
  QString message;
  bool ok() const { return message.isEmpty(); }
};

QString UserFieldErrorTitle();  // "Error"

// Every double quote removed: the value goes into query texts and files that cannot hold one.
QString RemoveDoubleQuotes(const QString& text);

// The object number trimmed and padded on the left with blanks to 10 characters. A longer
// number is kept trimmed as it is.
QString PadObjectNum(const QString& text);

// Validation of txtFields(index) on leaving it: double quotes go from every field; then
// 1 ObjectNum is padded, 4 RAHour, 5 RAMinute, 7 DecDeg and 8 DecMinute become Abs(Val)
// printed plainly and are range-tested. decDegText is the text of txtFields(7), which the
// minutes test reads.
UserFieldCheck ValidateUserField(int index, const QString& text, const QString& decDegText = {});

// The "Seconds to Decimal" converter: Round(Val(seconds) / 60, 2), half to even.
double SecondsToDecimal(const QString& seconds);
QString SecondsToDecimalText(const QString& seconds);  // printed plainly: 42 gives "0.7"

// The caption of the data control: " Record: n of m", and " Record: New of m+1" while adding.
QString UserRecordPosition(int position, int recordCount);
QString UserNewRecordPosition(int recordCount);

// The caption of cmdRefresh after ToggleButtons: "&Save" in add mode, else "&Re-sort".
QString ToggleButtonsCaption(bool addNewFlag);

// The caption of cmdDecSign for the text of txtFields(6): "+" for "+", otherwise "-".
QString DecSignCaption(const QString& decSign);
// cmdDecSign pressed: "+" becomes "-", anything else "+".
QString ToggledDecSign(const QString& decSign);

#include "catalog/userobjectlogic.h"

#include <cmath>

#include "core/numtext.h"

QString UserFieldErrorTitle() { return QStringLiteral("Error"); }

QString RemoveDoubleQuotes(const QString& text) {
  QString t = text;
  t.remove(QLatin1Char('"'));
  return t;
}

static QString trimBlanks(const QString& text) {
  int start = 0, end = text.size();
  while (start < end && text.at(start) == QLatin1Char(' ')) ++start;
  while (end > start && text.at(end - 1) == QLatin1Char(' ')) --end;
  return text.mid(start, end - start);
}

QString PadObjectNum(const QString& text) {
  const QString t = trimBlanks(text);
  return t.size() >= 10 ? t : PadLeft(t, 10);
}

UserFieldCheck ValidateUserField(int index, const QString& text, const QString& decDegText) {
  UserFieldCheck check{RemoveDoubleQuotes(text), {}};
  if (index == 1) {
    check.text = PadObjectNum(check.text);
    return check;
  }
  if (index != 4 && index != 5 && index != 7 && index != 8) return check;

  // A minus sign typed here is dropped: the sign of the declination lives in cmdDecSign.
  const double v = std::fabs(Val(check.text));
  check.text = PlainNumber(v);
  switch (index) {
    case 4:
      if (v > 23) check.message = QStringLiteral("RA Hour must be a value between 0 and 23");
      break;
    case 5:
      if (v >= 60) check.message = QStringLiteral("RA Minute must be a value between 0 and 59.99");
      break;
    case 7:
      if (v > 90)
        check.message = QStringLiteral("Declination Degree must be a value between 0 and 90");
      break;
    case 8:
      if (Val(decDegText) == 90 && v != 0)
        check.message = QStringLiteral("Declination Minute must be a value of 0 when Degree is 90");
      else if (v >= 60)
        check.message = QStringLiteral("Declination Minute must be a value between 0 and 59.99");
      break;
  }
  return check;
}

double SecondsToDecimal(const QString& seconds) { return RoundHalfEven(Val(seconds) / 60, 2); }

QString SecondsToDecimalText(const QString& seconds) {
  return PlainNumber(SecondsToDecimal(seconds));
}

QString UserRecordPosition(int position, int recordCount) {
  return QStringLiteral(" Record: ") + QString::number(position) + QStringLiteral(" of ") +
         QString::number(recordCount);
}

QString UserNewRecordPosition(int recordCount) {
  return QStringLiteral(" Record: New of ") + QString::number(recordCount + 1);
}

QString ToggleButtonsCaption(bool addNewFlag) {
  return addNewFlag ? QStringLiteral("&Save") : QStringLiteral("&Re-sort");
}

QString DecSignCaption(const QString& decSign) {
  return decSign == QLatin1String("+") ? QStringLiteral("+") : QStringLiteral("-");
}

QString ToggledDecSign(const QString& decSign) {
  return decSign == QLatin1String("+") ? QStringLiteral("-") : QStringLiteral("+");
}

#pragma once

#include <QHash>
#include <QString>
#include <QVariant>
#include <initializer_list>
#include <utility>

#include "catalog/database.h"
#include "exchange/exchangeobject.h"

// The rows of a list document as the exports read them: the twelve exchange columns of the
// whole Objects table, in the list's own order (DisplayOrder, then the order the rows were
// added, as a plain open of the table gives them), through one statement.
class ListRows {
 public:
  explicit ListRows(const Database& db);

  int count() const { return count_; }
  // Steps to the first row, then to each following one; false past the last.
  bool next() { return st_.step(); }

  QVariant value(ExchangeColumn column) const { return st_.value(column); }
  // A Null reads as an empty text and as the number 0, so a row with a missing Type or
  // Magnitude is written like one holding blanks.
  QString text(ExchangeColumn column) const;
  QString trimmed(ExchangeColumn column) const { return text(column).trimmed(); }
  double number(ExchangeColumn column) const;

 private:
  int count_ = 0;
  Statement st_;
};

// The type codes of an export format, looked up by the first three letters of the trimmed
// Type in upper case. A category whose first six letters are "DOUBLE" (any case) gets the
// double star code whatever its type.
class TypeCodes {
 public:
  // Each rule: a code and the keys that give it, separated by blanks.
  TypeCodes(std::initializer_list<std::pair<const char*, const char*>> rules, QString otherCode,
            QString doubleStarCode);
  QString of(const QString& type, const QString& category) const;

 private:
  QHash<QString, QString> byKey_;
  QString otherCode_;
  QString doubleStarCode_;
};

// A number in the plain conversion (PlainNumber), quickly for the common values.
QString NumberText(double value);

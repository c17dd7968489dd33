#include "exchange/exportvalues.h"

#include <QStringList>

#include "catalog/recordset.h"
#include "core/numtext.h"

ListRows::ListRows(const Database& db) {
  Statement count = db.prepare(QStringLiteral("SELECT COUNT(*) FROM Objects"));
  count.step();
  count_ = int(count.int64Value(0));
  QStringList columns;
  for (const ExchangeColumnInfo& c : ExchangeColumns()) columns << QuoteIdentifier(c.field);
  st_ = db.prepare(QStringLiteral("SELECT %1 FROM Objects ORDER BY DisplayOrder, rowid")
                       .arg(columns.join(QStringLiteral(", "))));
}

QString ListRows::text(ExchangeColumn column) const { return FieldText(value(column)); }

double ListRows::number(ExchangeColumn column) const {
  const QVariant v = value(column);
  switch (v.typeId()) {
    case QMetaType::Double:
    case QMetaType::LongLong: return v.toDouble();
    default: return Val(FieldText(v));
  }
}

TypeCodes::TypeCodes(std::initializer_list<std::pair<const char*, const char*>> rules,
                     QString otherCode, QString doubleStarCode)
    : otherCode_(std::move(otherCode)), doubleStarCode_(std::move(doubleStarCode)) {
  for (const auto& [code, keys] : rules)
    for (const QString& key : QString::fromLatin1(keys).split(QLatin1Char(' ')))
      byKey_.insert(key, QString::fromLatin1(code));
}

QString TypeCodes::of(const QString& type, const QString& category) const {
  if (category.trimmed().left(6).toUpper() == QLatin1String("DOUBLE")) return doubleStarCode_;
  return byKey_.value(type.trimmed().left(3).toUpper(), otherCode_);
}

QString NumberText(double value) {
  // Fifteen significant digits in fixed notation are what the plain conversion writes too;
  // anything that would need an exponent goes to it.
  const QString fast = QString::number(value, 'g', 15);
  return fast.contains(QLatin1Char('e')) ? PlainNumber(value) : fast;
}

#include "catalog/searchcriteria.h"

#include "catalog/queryset.h"

// Leading and trailing blanks only, as the classic Trim cuts them.
static QString trimBlanks(const QString& text) {
  int start = 0, end = text.size();
  while (start < end && text.at(start) == QLatin1Char(' ')) ++start;
  while (end > start && text.at(end - 1) == QLatin1Char(' ')) --end;
  return text.mid(start, end - start);
}

// The typed text inside a quoted literal: a quote in it is written twice, so that "Bode's"
// finds Bode's Galaxy and no typing can end the literal early.
static QString literal(const QString& text) {
  return QString(text).replace(QLatin1Char('\''), QStringLiteral("''"));
}

static QString numberCriteria(const QString& text) {
  return QStringLiteral("trim(objectnum) = '") + literal(text) + QLatin1Char('\'');
}

static QString nameCriteria(const QString& text) {
  return QStringLiteral("name Like '*") + literal(text) + QStringLiteral("*'");
}

QString SearchCriteria(int querySet, SearchOption option, const QString& text) {
  if (option == SearchOption::Name) return nameCriteria(text);
  if (querySet != QuerySet::DoubleStars) return numberCriteria(text);
  // "Exact Match": a whole designation of the comma-separated name. The first term compares
  // with "=", so its asterisk is a plain character; the two Like terms do the work.
  const QString t = literal(trimBlanks(text));
  return QStringLiteral("name = '*") + t + QStringLiteral("' OR name like '*") + t +
         QStringLiteral(",*' OR name like '*") + t + QLatin1Char('\'');
}

int ColumnAfterFind(int querySet, SearchOption option) {
  if (querySet == QuerySet::DoubleStars) return 1;
  const int base = QuerySet::HasCategoryColumn(querySet) ? 1 : 0;
  return option == SearchOption::Number ? base : base + 1;
}

QString UserSearchFieldOf(SearchOption option) {
  return option == SearchOption::Number ? QStringLiteral("ObjectNum") : QStringLiteral("Name");
}

SearchOption UserSearchOptionOf(const QString& userSearchField) {
  return userSearchField == QLatin1String("ObjectNum") ? SearchOption::Number : SearchOption::Name;
}

QString SearchUserCriteria(const QString& userSearchField, const QString& text) {
  return userSearchField == QLatin1String("ObjectNum") ? numberCriteria(text) : nameCriteria(text);
}

QString NotFoundMessage() { return QStringLiteral("Not Found."); }

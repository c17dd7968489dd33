#include "catalog/pagesort.h"

#include "catalog/queryset.h"

QString ToggleSort(QString& sortField, const SortChoice& choice) {
  if (sortField != choice.stateWord) {
    sortField = choice.stateWord;
    return choice.firstClause;
  }
  sortField = choice.secondStateWord;
  return choice.secondClause;
}

std::optional<PageSortKey> PageSortKeyOfColumn(int querySet, int column) {
  // Deep-sky and User Supplied show Category in front, and it sorts with the number.
  if (QuerySet::HasCategoryColumn(querySet)) {
    if (column == 0) return PageSortKey::Number;
    --column;
  }
  switch (column) {
    case 0: return PageSortKey::Number;
    case 1: return PageSortKey::Name;
    case 2: return PageSortKey::Type;
    case 3: return PageSortKey::Const;
    case 4: return PageSortKey::Mag;
    case 5: return PageSortKey::Info;
    case 6:
    case 7: return PageSortKey::RA;
    case 8:
    case 9:
    case 10: return PageSortKey::DEC;
    default: return std::nullopt;
  }
}

// The pages whose Magnitude may hold more than a number sort on its leading value.
static bool magnitudeByVal(int querySet) {
  return querySet == QuerySet::DoubleStars || QuerySet::HasCategoryColumn(querySet);
}

SortChoice PageSortChoice(int querySet, PageSortKey key) {
  switch (key) {
    case PageSortKey::Number:
      if (QuerySet::HasCategoryColumn(querySet))
        return {QStringLiteral("ObjectNum"), QStringLiteral("ORDER BY Category, ObjectNum"),
                QStringLiteral("ObjectNumDesc"),
                QStringLiteral("ORDER BY Category DESC, ObjectNum DESC")};
      return {QStringLiteral("ObjectNum"), QStringLiteral("ORDER BY ObjectNum"),
              QStringLiteral("ObjectNumDesc"), QStringLiteral("ORDER BY ObjectNum DESC")};
    case PageSortKey::Name:
      return {QStringLiteral("Name"), QStringLiteral("ORDER BY Name"), QStringLiteral("NameDesc"),
              QStringLiteral("ORDER BY Name DESC")};
    case PageSortKey::Type:
      // The secondary sort on Magnitude stays ascending and without val on every page.
      return {QStringLiteral("Type"), QStringLiteral("ORDER BY Type, Magnitude"),
              QStringLiteral("TypeDesc"), QStringLiteral("ORDER BY Type DESC, Magnitude")};
    case PageSortKey::Const:
      if (magnitudeByVal(querySet))
        return {QStringLiteral("Const"), QStringLiteral("ORDER BY Constellation, val(Magnitude)"),
                QStringLiteral("ConstDesc"),
                QStringLiteral("ORDER BY Constellation DESC, val(Magnitude)")};
      return {QStringLiteral("Const"), QStringLiteral("ORDER BY Constellation, Magnitude"),
              QStringLiteral("ConstDesc"),
              QStringLiteral("ORDER BY Constellation DESC, Magnitude")};
    case PageSortKey::Mag:
      if (magnitudeByVal(querySet))
        return {QStringLiteral("Mag"), QStringLiteral("ORDER BY val(Magnitude)"),
                QStringLiteral("MagDesc"), QStringLiteral("ORDER BY val(Magnitude) DESC")};
      return {QStringLiteral("Mag"), QStringLiteral("ORDER BY Magnitude"),
              QStringLiteral("MagDesc"), QStringLiteral("ORDER BY Magnitude DESC")};
    case PageSortKey::Info:
      return {QStringLiteral("Info"), QStringLiteral("ORDER BY Info"), QStringLiteral("InfoDesc"),
              QStringLiteral("ORDER BY Info DESC")};
    case PageSortKey::RA:
      return {QStringLiteral("RA"), QStringLiteral("ORDER BY RAHour, RAMinute"),
              QStringLiteral("RADesc"), QStringLiteral("ORDER BY RAHour DESC, RAMinute DESC")};
    case PageSortKey::DEC:
      // North first on the first click; the ascending clause keeps its closing blank.
      return {QStringLiteral("DEC"),
              QStringLiteral("ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) DESC"),
              QStringLiteral("DECDesc"),
              QStringLiteral("ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ")};
  }
  return {};
}

bool PageHeaderClick(PageQuery& page, int querySet, int column) {
  const std::optional<PageSortKey> key = PageSortKeyOfColumn(querySet, column);
  if (!key) return false;
  page.OrderBy = ToggleSort(page.SortField, PageSortChoice(querySet, *key));
  return true;
}

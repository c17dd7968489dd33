#include "lists/listsort.h"

std::optional<SortChoice> ListSortChoice(int column) {
  switch (column) {
    case 0:
      return SortChoice{QStringLiteral("DisplayOrder"), QStringLiteral("ORDER BY DisplayOrder"),
                        QStringLiteral("DisplayOrderDesc"),
                        QStringLiteral("ORDER BY DisplayOrder Desc")};
    case 1:
      return SortChoice{QStringLiteral("GoTo"), QStringLiteral("ORDER BY GoTo, DisplayOrder"),
                        QStringLiteral("GoToDesc"),
                        QStringLiteral("ORDER BY GoTo Desc, DisplayOrder DESC")};
    case 2:
      return SortChoice{QStringLiteral("Observed"),
                        QStringLiteral("ORDER BY Observed, DisplayOrder"),
                        QStringLiteral("ObservedDesc"),
                        QStringLiteral("ORDER BY Observed Desc, DisplayOrder DESC")};
    case 3:
    case 4:
      return SortChoice{QStringLiteral("ObjectNum"), QStringLiteral("ORDER BY Category, ObjectNum"),
                        QStringLiteral("ObjectNumDesc"),
                        QStringLiteral("ORDER BY Category Desc, ObjectNum DESC")};
    case 5:
      return SortChoice{QStringLiteral("Name"), QStringLiteral("ORDER BY Name"),
                        QStringLiteral("NameDesc"), QStringLiteral("ORDER BY Name DESC")};
    case 6:
      return SortChoice{QStringLiteral("Type"), QStringLiteral("ORDER BY Type, Magnitude"),
                        QStringLiteral("TypeDesc"),
                        QStringLiteral("ORDER BY Type DESC, Magnitude")};
    case 7:
      return SortChoice{
          QStringLiteral("Const"), QStringLiteral("ORDER BY Constellation, Magnitude"),
          QStringLiteral("ConstDesc"), QStringLiteral("ORDER BY Constellation DESC, Magnitude")};
    case 8:
      return SortChoice{QStringLiteral("Mag"), QStringLiteral("ORDER BY Magnitude"),
                        QStringLiteral("MagDesc"), QStringLiteral("ORDER BY Magnitude DESC")};
    case 9:
      return SortChoice{QStringLiteral("Info"), QStringLiteral("ORDER BY Info"),
                        QStringLiteral("InfoDesc"), QStringLiteral("ORDER BY Info DESC")};
    case 10:
    case 11:
      return SortChoice{QStringLiteral("RA"), QStringLiteral("ORDER BY RAHour, RAMinute"),
                        QStringLiteral("RADesc"),
                        QStringLiteral("ORDER BY RAHour DESC, RAMinute DESC")};
    case 12:
    case 13:
    case 14:
      // North first on the first click; the ascending clause keeps its closing blank.
      return SortChoice{
          QStringLiteral("DEC"),
          QStringLiteral("ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) DESC"),
          QStringLiteral("DECDesc"),
          QStringLiteral("ORDER BY (val(DecSign & '1') * (DecDeg + DecMinute/60)) ")};
    default: return std::nullopt;
  }
}

bool ListHeaderClick(ListSortState& state, int column) {
  const std::optional<SortChoice> choice = ListSortChoice(column);
  if (!choice) return false;
  state.ListSortKey = ToggleSort(state.ListSortField, *choice);
  return true;
}

QString ListRecordSource(const QString& listSortKey) {
  return QStringLiteral(
             "SELECT DisplayOrder, Goto, Observed, Category, ObjectNum, Name, Type, "
             "Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, DecMinute From "
             "Objects ") +
         listSortKey;
}

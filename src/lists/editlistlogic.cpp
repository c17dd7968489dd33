#include "lists/editlistlogic.h"

#include "catalog/database.h"
#include "catalog/recordset.h"
#include "core/apperror.h"
#include "core/appstate.h"
#include "core/numtext.h"
#include "lists/autosort.h"
#include "lists/listview.h"

namespace {

const QString kDisplayOrder = QStringLiteral("DisplayOrder");

// Trim of the classic kind: blanks only.
QString TrimBlanks(const QString& s) {
  int a = 0, b = int(s.size());
  while (a < b && s[a] == QLatin1Char(' ')) ++a;
  while (b > a && s[b - 1] == QLatin1Char(' ')) --b;
  return s.mid(a, b - a);
}

// The list's DisplayOrder text where a new row would read it: the row added just before (still
// in the edit buffer), the current row, or nothing in an empty list.
QString CurrentDisplayOrderText(const Recordset& list) {
  if (list.editMode() == Recordset::EditMode::None && !list.hasCurrentRow()) return QString();
  return list.text(kDisplayOrder);
}

}  // namespace

QString EditListCaption(const QString& listWindowCaption) {
  return QStringLiteral("Edit - ") + TrimBlanks(listWindowCaption.mid(10));
}

QString ListCounterText(const Recordset& list) {
  if (list.RecordCount() == 0) return QString();
  return QStringLiteral(" Obj: ") + QString::number(list.AbsolutePosition() + 1) +
         QStringLiteral(" of ") + QString::number(list.RecordCount());
}

QString UserDateLabel(const QDateTime& userDate) {
  return ShortDate(userDate.date()) + QLatin1Char(' ') + ShortTime(userDate.time());
}

qint32 NextDisplayOrder(const QString& currentDisplayOrderText) {
  return CLng(Val(currentDisplayOrderText) + 1);
}

const QStringList& CopiedObjectColumns() {
  static const QStringList columns = {
      QStringLiteral("Category"), QStringLiteral("ObjectNum"),     QStringLiteral("Name"),
      QStringLiteral("Type"),     QStringLiteral("Constellation"), QStringLiteral("Magnitude"),
      QStringLiteral("RAHour"),   QStringLiteral("RAMinute"),      QStringLiteral("DecSign"),
      QStringLiteral("DecDeg"),   QStringLiteral("DecMinute"),     QStringLiteral("Info")};
  return columns;
}

QString CopiedColumnText(const QString& column, const QString& sourceText) {
  if (!sourceText.isEmpty()) return sourceText;
  static const QStringList numbers = {QStringLiteral("RAHour"), QStringLiteral("RAMinute"),
                                      QStringLiteral("DecDeg"), QStringLiteral("DecMinute")};
  if (numbers.contains(column, Qt::CaseInsensitive)) return QStringLiteral("0");
  if (column.compare(QLatin1String("DecSign"), Qt::CaseInsensitive) == 0)
    return QStringLiteral("+");
  return QStringLiteral(" ");
}

void AddObjectRow(const Recordset& page, Recordset& list) {
  const qint32 order = NextDisplayOrder(CurrentDisplayOrderText(list));
  QStringList texts;
  for (const QString& column : CopiedObjectColumns())
    texts << CopiedColumnText(column, page.text(column));
  list.AddNew();
  const QStringList& columns = CopiedObjectColumns();
  for (int i = 0; i < columns.size(); ++i) list.setValue(columns[i], texts[i]);
  list.setValue(kDisplayOrder, QString::number(order));
}

int AddSelectedRows(Recordset& page, Recordset& list, const QList<qint64>& selection) {
  if (page.isBOF() || page.isEOF()) return 0;
  Database::Transaction batch(*list.database());
  int added = 0;
  try {
    if (list.RecordCount() > 0) list.MoveLast();
    if (selection.isEmpty()) {
      AddObjectRow(page, list);
      ++added;
    } else {
      for (qint64 bookmark : selection) {
        page.setBookmark(bookmark);
        AddObjectRow(page, list);
        ++added;
      }
    }
    list.MoveLast();
  } catch (...) {
    // Rows already written stay in the list.
    batch.commit();
    throw;
  }
  batch.commit();
  return added;
}

void DeleteListRow(Recordset& list) {
  if (list.RecordCount() == 0) return;
  list.Delete();
  if (!list.isEOF()) list.MoveNext();
  if (list.isEOF() && list.RecordCount() > 0) list.MoveLast();
}

bool MoveListRow(Recordset& list, MoveDirection direction) {
  if (list.RecordCount() == 0) return false;
  const bool down = direction == MoveDirection::Down;
  const QString first = list.text(kDisplayOrder);
  if (down) {
    list.MoveNext();
    if (list.isEOF()) {
      list.MoveLast();
      return false;
    }
  } else {
    list.MovePrevious();
    if (list.isBOF()) {
      list.MoveFirst();
      return false;
    }
  }
  const QString second = list.text(kDisplayOrder);
  list.setValue(kDisplayOrder, first);
  if (down) list.MovePrevious();
  else list.MoveNext();
  list.setValue(kDisplayOrder, second);
  if (down) list.MoveNext();
  else list.MovePrevious();
  const int position = list.AbsolutePosition();
  list.Requery();
  list.Move(position);
  return true;
}

void AutoSortList(const AppState& state, Recordset& list) {
  if (list.RecordCount() == 0) return;
  const PositionColumns columns(list);
  std::vector<double> keys;
  keys.reserve(size_t(list.RecordCount()));
  list.MoveFirst();
  while (!list.isEOF()) {
    const SkyCoordinates p = columns.current(list);
    keys.push_back(AutoSortKey(AltitudeAtUserDate(state, p), AzimuthAtUserDate(state, p)));
    list.MoveNext();
  }
  const std::vector<int> orders = NewDisplayOrders(keys);

  // All or nothing: a list half renumbered would be a tour of neither order.
  {
    const int displayOrder = list.fieldIndex(kDisplayOrder);
    Database::Transaction batch(*list.database());
    try {
      list.MoveFirst();
      for (size_t rank = 0; !list.isEOF(); ++rank) {
        if (rank >= orders.size()) throw AppError::of(ErrNo::SubscriptRange);
        list.setValue(displayOrder, qlonglong(orders[rank]));
        list.MoveNext();
      }
      batch.commit();
    } catch (...) {
      if (list.editMode() != Recordset::EditMode::None) list.CancelUpdate();
      throw;
    }
  }
  list.Requery();
  if (list.RecordCount() > 0) list.MoveFirst();
}

ColumnLayouts EditorColumnLayouts() {
  ColumnLayouts c;
  c << ColumnLayout::hiddenColumn()  // DisplayOrder
    << ColumnLayout::hiddenColumn()  // Goto or Observed
    << ColumnLayout::named(1050)     // Category
    << ColumnLayout::captioned(QStringLiteral("Number"), 1000, Qt::AlignRight)
    << ColumnLayout::named(2300)                                  // Name
    << ColumnLayout::named(1650)                                  // Type
    << ColumnLayout::named(1350)                                  // Constellation
    << ColumnLayout::named(1250)                                  // Magnitude
    << ColumnLayout::captioned(QStringLiteral("RA"), 600)         // RAHour
    << ColumnLayout::captioned(QStringLiteral("RA"), 600)         // RAMinute
    << ColumnLayout::captioned(QString(), 300, Qt::AlignHCenter)  // DecSign
    << ColumnLayout::captioned(QStringLiteral("Dec"), 600)        // DecDeg
    << ColumnLayout::captioned(QStringLiteral("Dec"), 600)        // DecMinute
    << ColumnLayout::named(2500)                                  // Info
    << ColumnLayout::hiddenColumn();                              // Observed or Goto
  return c;
}

EditListLayout EditListLayoutFor(int w, int h) {
  return {h - 4340, h - 860, h - 425, h - 395, w - 3240, h - 640, w - 4200, h - 2605};
}

int NeighbourTab(int tab, bool backwards) {
  if (backwards) return tab <= 0 ? 7 : tab - 1;
  return tab >= 7 ? 0 : tab + 1;
}

QString AddButtonCaption(bool onCurrentPage) {
  return onCurrentPage ? QStringLiteral("&Add <--") : QStringLiteral("Add <--");
}

quint32 EditListMarkerColour(int markerSource, qint32 objectColor) {
  return markerSource == 1 ? quint32(objectColor) : 0x0000FFFFu;
}

int FilterFormTopFor(int windowTopTwips, int windowHeightTwips) {
  return windowTopTwips + windowHeightTwips - 5800;
}

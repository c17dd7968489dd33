#include "catalog/catalogwindowlogic.h"

#include <algorithm>

#include "catalog/recordset.h"
#include "core/appstate.h"
#include "core/numtext.h"
#include "sky/altitudefilter.h"

const std::array<int, 8>& PageBindOrder() {
  static const std::array<int, 8> order{0, 1, 2, 7, 4, 5, 6, 3};
  return order;
}

QString UserListOutdatedTitle() { return QStringLiteral("Alert!"); }

QString UserListOutdatedMessage() {
  return QStringLiteral("Your User List needs to be updated in order to sort on RA.") +
         QLatin1Char('\n') +
         QStringLiteral(
             "Please report this on the Tavorine issue tracker, and we will tell you "
             "how to update it.");
}

QString UserObjectsTable() { return QStringLiteral("UserObjects"); }

void SetPageWheres(AppState& state, double siderealDegrees) {
  if (state.FilterOn) {
    BuildAltitudeWhere(state, siderealDegrees);
    return;
  }
  for (PageQuery& q : state.Pages) q.Where = QStringLiteral("WHERE True");
}

QList<qint64> ShiftSelection(Recordset& rs, qint64 lastBookmark, qint64 currentBookmark) {
  QList<qint64> rows;
  const int current = rs.rowOfBookmark(currentBookmark);
  if (current < 0) return rows;
  int last = rs.rowOfBookmark(lastBookmark);
  if (last < 0) last = current;
  rs.setBookmark(rs.bookmarkAt(last));
  rows.append(rs.Bookmark());
  const bool down = last < current;
  while (rs.Bookmark() != currentBookmark) {
    if (down) rs.MoveNext();
    else rs.MovePrevious();
    if (rs.isEOF() || rs.isBOF()) break;
    rows.append(rs.Bookmark());
  }
  return rows;
}

QString FilterFileFilter() { return QStringLiteral("Filter Settings Files (*.flt)"); }
QString FilterOpenTitle() { return QStringLiteral("Open filter settings file..."); }
QString FilterSaveTitle() { return QStringLiteral("Name filter settings file..."); }
QString FilterOverwriteTitle() { return QStringLiteral("Confirm"); }

QString FilterOverwriteQuestion(const QString& fileName) {
  return QStringLiteral("This file\n") + fileName + QStringLiteral("\nalready exists.  Overwrite?");
}

QString FilterUpDownStep(const QString& text, int delta) {
  const double v = std::clamp(Val(text) + delta, 0.0, 80.0);
  return PlainNumber(v);
}

UserEditorKey UserEditorKeyAction(int key, Qt::KeyboardModifiers modifiers) {
  const Qt::KeyboardModifiers shiftState =
      modifiers & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
  const bool ctrl = shiftState == Qt::ControlModifier;
  switch (key) {
    case Qt::Key_Home: return ctrl ? UserEditorKey::FocusFirst : UserEditorKey::None;
    case Qt::Key_End: return ctrl ? UserEditorKey::FocusLast : UserEditorKey::None;
    case Qt::Key_PageUp: return ctrl ? UserEditorKey::First : UserEditorKey::Previous;
    case Qt::Key_PageDown: return ctrl ? UserEditorKey::Last : UserEditorKey::Next;
    default: return UserEditorKey::None;
  }
}

void ApplyUserEditorMove(Recordset& rs, UserEditorKey key) {
  if (rs.RecordCount() == 0) return;
  switch (key) {
    case UserEditorKey::Previous:
      rs.MovePrevious();
      if (rs.isBOF()) rs.MoveFirst();
      break;
    case UserEditorKey::Next:
      rs.MoveNext();
      if (rs.isEOF()) rs.MoveLast();
      break;
    case UserEditorKey::First: rs.MoveFirst(); break;
    case UserEditorKey::Last: rs.MoveLast(); break;
    default: break;
  }
}

void DeleteUserRecord(Recordset& rs) {
  rs.Delete();
  rs.MoveNext();
  if (rs.isEOF() && rs.RecordCount() > 0) rs.MoveLast();
}

void CountAndGoFirst(Recordset& rs) {
  if (rs.RecordCount() == 0) return;
  rs.MoveLast();
  rs.MoveFirst();
}

QString UserDeleteTitle() { return QStringLiteral("Confirm"); }
QString UserDeleteQuestion() { return QStringLiteral("Delete this object?"); }

QString UserObjectsSelect() {
  return QStringLiteral(
      "SELECT Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, RAHour, RAMinute, "
      "DecSign, DecDeg, DecMinute From UserObjects ORDER BY Category, ObjectNum;");
}

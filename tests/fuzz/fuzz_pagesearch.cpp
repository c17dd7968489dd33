// Typed search texts through the catalog pages' Find First, Find Next and Find Prev: the
// criteria text, the query translator, the recordset's find and the database engine.
// - Whatever is typed, the find ends in a row or "Not Found." and never in an error.
// - The row found is the one a plain reading of the criteria picks: the first (next, previous)
//   row whose name holds the text anywhere, whose number is the text, or (double stars, "Exact
//   Match") whose name ends in it or holds it before a comma; letters compare as the engine
//   compares them, A to Z without regard to case.
#include <QRegularExpression>

#include "catalog/catalogpages.h"
#include "catalog/searchcriteria.h"
#include "fuzzsupport.h"

namespace {

QString fold(const QString& s) {
  QString out = s;
  for (QChar& c : out)
    if (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) c = QChar(c.unicode() + 32);
  return out;
}

QString trimBlanks(const QString& s) {  // spaces only, off both ends
  return QString(s).remove(QRegularExpression(QStringLiteral("\\A +| +\\z")));
}

bool matches(int querySet, SearchOption option, const QString& typed, const Recordset& rs, int row) {
  if (option == SearchOption::Name || querySet == QuerySet::DoubleStars) {
    const QVariant v = rs.rowValue(row, rs.fieldIndex(QStringLiteral("Name")));
    if (v.isNull()) return false;
    const QString name = fold(FieldText(v));
    if (option == SearchOption::Name) return name.contains(fold(typed));
    const QString t = fold(trimBlanks(typed));
    return name == QLatin1Char('*') + t || name.endsWith(t) || name.contains(t + QLatin1Char(','));
  }
  const QVariant v = rs.rowValue(row, rs.fieldIndex(QStringLiteral("ObjectNum")));
  return !v.isNull() && fold(trimBlanks(FieldText(v))) == fold(typed);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static SamplePages pages;
  FuzzedDataProvider in(data, size);
  const int set = in.ConsumeIntegralInRange(0, QuerySet::Count - 1);
  const SearchOption option = in.ConsumeBool() ? SearchOption::Name : SearchOption::Number;
  const int how = in.ConsumeIntegralInRange(0, 2);  // Find First, Find Next, Find Prev
  Recordset& rs = *pages.rs[set];
  const int n = rs.RecordCount();
  const int start = in.ConsumeIntegralInRange(0, n - 1);
  const std::string bytes = in.ConsumeRemainingBytesAsString();
  const QString typed = QString::fromUtf8(bytes.data(), int(bytes.size()));

  rs.setAbsolutePosition(start);
  const QString criteria = SearchCriteria(set, option, typed);
  RequireNoError("a typed search never ends in an error", [&] {
    if (how == 0) rs.FindFirst(criteria);
    else if (how == 1) rs.FindNext(criteria);
    else rs.FindPrevious(criteria);
  }, typed);

  // A wildcard or a character the engine cannot take in a text leaves the plain reading.
  static const QString wild = QStringLiteral("*?");
  for (QChar c : typed)
    if (wild.contains(c) || c.isNull()) return 0;
  int expected = -1;
  const int step = how == 2 ? -1 : 1;
  for (int i = how == 0 ? 0 : start + step; i >= 0 && i < n && expected < 0; i += step)
    if (matches(set, option, typed, rs, i)) expected = i;
  Require(rs.NoMatch() == (expected < 0), "a match exactly when a row holds the text",
          typed + QStringLiteral("\ncriteria: ") + criteria);
  Require(rs.currentRow() == (expected < 0 ? start : expected), "the row found is the one expected",
          typed + QStringLiteral("\ncriteria: %1\nfound %2, expected %3")
                      .arg(criteria)
                      .arg(rs.currentRow())
                      .arg(expected));
  return 0;
}

// Typed search texts through the catalog pages' Find First, Find Next and Find Prev: the
// criteria text, the query translator, the recordset's find and the database engine. Whatever
// is typed, the find ends in a row or "Not Found." and never in an error.
#include "catalog/catalogpages.h"
#include "catalog/searchcriteria.h"
#include "fuzzsupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static SamplePages pages;
  FuzzedDataProvider in(data, size);
  const int set = in.ConsumeIntegralInRange(0, QuerySet::Count - 1);
  const SearchOption option = in.ConsumeBool() ? SearchOption::Name : SearchOption::Number;
  const int how = in.ConsumeIntegralInRange(0, 2);  // Find First, Find Next, Find Prev
  Recordset& rs = *pages.rs[set];
  const int start = in.ConsumeIntegralInRange(0, rs.RecordCount() - 1);
  const std::string bytes = in.ConsumeRemainingBytesAsString();
  const QString typed = QString::fromUtf8(bytes.data(), int(bytes.size()));

  rs.setAbsolutePosition(start);
  const QString criteria = SearchCriteria(set, option, typed);
  RequireNoError(
      "a typed search never ends in an error",
      [&] {
        if (how == 0) rs.FindFirst(criteria);
        else if (how == 1) rs.FindNext(criteria);
        else rs.FindPrevious(criteria);
      },
      typed);
  Require(!rs.NoMatch() || rs.currentRow() == start, "a search that finds nothing stays put",
          typed);
  return 0;
}

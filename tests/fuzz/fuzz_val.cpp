// The program's Val and the query language's val() are one conversion: for any text they give
// the same number, whether the text arrives bound or as a literal of a query.
#include <cmath>

#include "catalog/database.h"
#include "catalog/jetsql.h"
#include "core/numtext.h"
#include "fuzzsupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const auto db = Database::open(QStringLiteral(":memory:"), Database::Mode::ReadWrite);
  static Statement bound = db->prepare(QStringLiteral("SELECT val(?1)"));

  const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
  const double program = Val(text);
  Require(std::isfinite(program), "Val is finite", text);

  bound.bind(1, text);
  Require(bound.step(), "val() answers");
  const double query = bound.doubleValue(0);
  bound.reset();
  Require(program == query, "Val(text) == val(text)", text);

  // The same text written into a query as a literal.
  if (!text.contains(QChar(0))) {
    QString literal = text;
    literal.replace(QLatin1Char('\''), QStringLiteral("''"));
    Statement st = db->prepare(
        TranslateQuery(QStringLiteral("SELECT val('") + literal + QStringLiteral("')")));
    Require(st.step(), "val() of a literal answers");
    Require(st.doubleValue(0) == program, "Val(text) == val('text')", text);
  }
  return 0;
}

// The Filter dialog's OK over whatever the boxes hold.
// - OK either closes the dialog or refuses with a message; it never leaves memory and
//   Filter.ini apart: the file reads back, without an error, as the filter in force.
// - The WHERE text it builds for a page runs, and selects the rows a plain reading of the boxes
//   selects: a ticked type whose magnitude lies between the two bounds (in either order), the
//   bounds as the text prints them.
#include <cmath>

#include "catalog/catalogpages.h"
#include "catalog/filterlogic.h"
#include "core/numtext.h"
#include "core/settings.h"
#include "fuzzsupport.h"

namespace {

// A bound as the query holds it: the printed form of Val of the box.
double bound(const QString& box) { return Val(PrintedNumber(Val(box))); }

bool between(double v, const QString& a, const QString& b) {
  const double lo = std::min(bound(a), bound(b)), hi = std::max(bound(a), bound(b));
  return v >= lo && v <= hi;
}

QString field(const Recordset& rs, int row, const char* name) {
  return FieldText(rs.rowValue(row, rs.fieldIndex(QLatin1String(name))));
}

bool sameText(const QString& a, const char* b) {
  return a.compare(QLatin1String(b), Qt::CaseInsensitive) == 0;
}

bool selected(int set, const FilterForm& f, const Recordset& rs, int row) {
  const QString mag = field(rs, row, "Magnitude");
  const double m = Val(mag);
  switch (set) {
    case QuerySet::SAO: return true;
    case QuerySet::User: return between(m, f.txtUserMagMin, f.txtUserMagMax);
    case QuerySet::DeepSky: return !f.chkGal || between(m, f.txtGalMin, f.txtGalMax);
    case QuerySet::DoubleStars: {
      const int comma = mag.indexOf(QLatin1Char(','));
      const double second = Val(mag.mid(comma + 1, 100));
      return between(m, f.txtDSMagMin, f.txtDSMagMax) &&
             between(second - m, f.txtDSMagDifMin, f.txtDSMagDifMax) &&
             between(Val(field(rs, row, "Info")), f.txtDSSepMin, f.txtDSSepMax);
    }
    default: break;
  }
  if (!(f.chkGal || f.chkGC || f.chkOC || f.chkPN || f.chkNeb)) return true;
  const QString type = field(rs, row, "Type");
  const bool clusterNebulosity = set == QuerySet::NGC || set == QuerySet::IC;
  return (f.chkGal && sameText(type, "Galaxy") && between(m, f.txtGalMin, f.txtGalMax)) ||
         (f.chkGC && sameText(type, "Globular Cluster") && between(m, f.txtGCMin, f.txtGCMax)) ||
         (f.chkOC && (sameText(type, "Open Cluster") ||
                      (clusterNebulosity && sameText(type, "Cluster Nebulosity"))) &&
          between(m, f.txtOCMin, f.txtOCMax)) ||
         (f.chkPN && sameText(type, "Planetary Nebula") && between(m, f.txtPNMin, f.txtPNMax)) ||
         (f.chkNeb && sameText(type, "Nebula") && between(m, f.txtNebMin, f.txtNebMax));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static SamplePages setup;
  AppState& state = *setup.env.state;
  FuzzedDataProvider in(data, size);
  FilterForm f;
  for (bool* tick : {&f.chkAltFilter, &f.chkGal, &f.chkGC, &f.chkOC, &f.chkPN, &f.chkNeb})
    *tick = in.ConsumeBool();
  const int set = in.ConsumeIntegralInRange(0, QuerySet::Count - 1);
  for (QString* box : {&f.txtMinAltFilter, &f.txtGalMin, &f.txtGalMax, &f.txtGCMin, &f.txtGCMax,
                       &f.txtOCMin, &f.txtOCMax, &f.txtPNMin, &f.txtPNMax, &f.txtNebMin,
                       &f.txtNebMax, &f.txtDSSepMin, &f.txtDSSepMax, &f.txtDSMagMin,
                       &f.txtDSMagMax, &f.txtDSMagDifMin, &f.txtDSMagDifMax, &f.txtUserMagMin,
                       &f.txtUserMagMax})
    *box = QString::fromStdString(in.ConsumeRandomLengthString(24));

  setup.env.prompter.clear();
  bool closed = false;
  try {
    closed = FilterOk(state, f);
  } catch (const AppError& e) {
    Require(e.number == ErrNo::Overflow, "OK refuses only a number too big", e.text());
    return 0;
  }
  if (!closed) return 0;

  RequireFilterFileInForce(state);

  PageQuery& q = state.Pages[size_t(set)];
  const QString where = q.Where;
  q.Where = q.Filter;
  const QString source = PageRecordSource(state, set);
  q.Where = where;
  std::unique_ptr<Recordset> rs;
  RequireNoError("the filter's query runs",
                 [&] { rs = std::make_unique<Recordset>(setup.db[set], source); }, source);
  const Recordset& all = *setup.rs[set];
  int expected = 0;
  for (int row = 0; row < all.RecordCount(); ++row) expected += selected(set, f, all, row);
  Require(rs->RecordCount() == expected, "the filter selects the rows the boxes ask for",
          source + QStringLiteral("\nselected %1, expected %2").arg(rs->RecordCount()).arg(expected));
  return 0;
}

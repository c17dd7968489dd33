// The Filter dialog's OK over whatever the boxes hold.
// - OK either closes the dialog or refuses with a message; it never leaves memory and
//   Filter.ini apart: the file reads back, without an error, as the filter in force.
// - The WHERE text it builds for a page runs.
#include "catalog/catalogpages.h"
#include "catalog/filterlogic.h"
#include "core/settings.h"
#include "fuzzsupport.h"

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
                       &f.txtNebMax, &f.txtDSSepMin, &f.txtDSSepMax, &f.txtDSMagMin, &f.txtDSMagMax,
                       &f.txtDSMagDifMin, &f.txtDSMagDifMax, &f.txtUserMagMin, &f.txtUserMagMax})
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
  RequireNoError(
      "the filter's query runs", [&] { Recordset(setup.db[set], source).RecordCount(); }, source);
  return 0;
}

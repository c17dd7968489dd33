#include "core/filterfields.h"

namespace {

FilterField tick(const char* control, bool FilterSettings::*flag, bool FilterForm::*form) {
  FilterField f;
  f.control = control;
  f.flag = flag;
  f.tick = form;
  return f;
}

FilterField single(const char* control, float FilterSettings::*value, QString FilterForm::*form,
                   const char* enabledBy = nullptr) {
  FilterField f;
  f.control = control;
  f.single = value;
  f.text = form;
  f.enabledBy = enabledBy;
  return f;
}

FilterField minimumAltitude() {
  FilterField f;
  f.control = "txtMinAltFilter";
  f.whole = &FilterSettings::FltMinAlt;
  f.text = &FilterForm::txtMinAltFilter;
  f.enabledBy = "chkAltFilter";
  return f;
}

}  // namespace

const std::array<FilterField, 25>& FilterFields() {
  using S = FilterSettings;
  using F = FilterForm;
  static const std::array<FilterField, 25> fields{
      tick("chkAltFilter", &S::FltAlt, &F::chkAltFilter),
      minimumAltitude(),
      tick("chkGal", &S::FltGal, &F::chkGal),
      single("txtGalMax", &S::FltGalMax, &F::txtGalMax, "chkGal"),
      single("txtGalMin", &S::FltGalMin, &F::txtGalMin, "chkGal"),
      tick("chkGC", &S::FltGC, &F::chkGC),
      single("txtGCMax", &S::FltGCMax, &F::txtGCMax, "chkGC"),
      single("txtGCMin", &S::FltGCMin, &F::txtGCMin, "chkGC"),
      tick("chkOC", &S::FltOC, &F::chkOC),
      single("txtOCMax", &S::FltOCMax, &F::txtOCMax, "chkOC"),
      single("txtOCMin", &S::FltOCMin, &F::txtOCMin, "chkOC"),
      tick("chkPN", &S::FltPN, &F::chkPN),
      single("txtPNMax", &S::FltPNMax, &F::txtPNMax, "chkPN"),
      single("txtPNMin", &S::FltPNMin, &F::txtPNMin, "chkPN"),
      tick("chkNeb", &S::FltNeb, &F::chkNeb),
      single("txtNebMax", &S::FltNebMax, &F::txtNebMax, "chkNeb"),
      single("txtNebMin", &S::FltNebMin, &F::txtNebMin, "chkNeb"),
      single("txtDSSepMax", &S::FltDSSepMax, &F::txtDSSepMax),
      single("txtDSSepMin", &S::FltDSSepMin, &F::txtDSSepMin),
      single("txtDSMagMax", &S::FltDSMagMax, &F::txtDSMagMax),
      single("txtDSMagMin", &S::FltDSMagMin, &F::txtDSMagMin),
      single("txtDSMagDifMax", &S::FltDSMagDifMax, &F::txtDSMagDifMax),
      single("txtDSMagDifMin", &S::FltDSMagDifMin, &F::txtDSMagDifMin),
      single("txtUserMagMax", &S::FltUserMagMax, &F::txtUserMagMax),
      single("txtUserMagMin", &S::FltUserMagMin, &F::txtUserMagMin),
  };
  return fields;
}

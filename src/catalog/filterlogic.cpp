#include "catalog/filterlogic.h"

#include "catalog/queryset.h"
#include "core/numtext.h"
#include "core/prompter.h"
#include "core/settings.h"

FilterForm FilterFormFrom(const FilterSettings& f) {
  FilterForm form;
  for (const FilterField& field : FilterFields()) {
    if (field.flag) form.*field.tick = f.*field.flag;
    else if (field.whole) form.*field.text = PlainNumber(f.*field.whole);
    else form.*field.text = PlainSingle(f.*field.single);
  }
  return form;
}

FilterSettings FilterFormToSettings(const FilterForm& form) {
  FilterSettings f;
  for (const FilterField& field : FilterFields()) {
    if (field.flag) f.*field.flag = form.*field.tick;
    else if (field.whole) f.*field.whole = CInt(Val(form.*field.text));
    else f.*field.single = CSng(Val(form.*field.text));
  }
  return f;
}

// A bound goes into the text in printed form, leading blank and all, untrimmed.
static QString bound(const QString& text) { return PrintedNumber(Val(text)); }

static QString range(const QString& minText, const QString& maxText) {
  return bound(minText) + QStringLiteral(" and ") + bound(maxText) + QLatin1Char(')');
}

static QString orFalseWhere(QString clause) {
  clause += QLatin1Char(')');
  // With nothing ticked the page shows everything rather than nothing.
  if (clause == QLatin1String("WHERE (False)")) return QStringLiteral("WHERE True");
  return clause;
}

static QString objectClause(const FilterForm& form, bool withClusterNebulosity) {
  QString c = QStringLiteral("WHERE (False");
  if (form.chkGal)
    c += QStringLiteral(" or (Type = 'Galaxy' and val(Magnitude) between ") +
         range(form.txtGalMin, form.txtGalMax);
  if (form.chkGC)
    c += QStringLiteral(" or (Type = 'Globular Cluster' and val(Magnitude) between ") +
         range(form.txtGCMin, form.txtGCMax);
  if (form.chkOC)
    c += (withClusterNebulosity
              ? QStringLiteral(" or ((Type = 'Open Cluster' or Type = 'Cluster Nebulosity') and "
                               "val(Magnitude) between ")
              : QStringLiteral(" or (Type = 'Open Cluster' and val(Magnitude) between ")) +
         range(form.txtOCMin, form.txtOCMax);
  if (form.chkPN)
    c += QStringLiteral(" or (Type = 'Planetary Nebula' and val(Magnitude) between ") +
         range(form.txtPNMin, form.txtPNMax);
  if (form.chkNeb)
    c += QStringLiteral(" or (Type = 'Nebula' and val(Magnitude) between ") +
         range(form.txtNebMin, form.txtNebMax);
  return orFalseWhere(c);
}

std::array<QString, 8> FilterClauses(const FilterForm& form) {
  std::array<QString, 8> clauses;
  clauses[QuerySet::SAO] = QStringLiteral("WHERE True");
  clauses[QuerySet::Messier] = objectClause(form, false);
  clauses[QuerySet::Caldwell] = objectClause(form, false);
  clauses[QuerySet::NGC] = objectClause(form, true);
  clauses[QuerySet::IC] = objectClause(form, true);

  // Deep-sky is driven by the galaxy controls alone and does not look at Type.
  QString dso = QStringLiteral("WHERE (False");
  if (form.chkGal)
    dso += QStringLiteral(" or (val(Magnitude) between ") + range(form.txtGalMin, form.txtGalMax);
  clauses[QuerySet::DeepSky] = orFalseWhere(dso);

  clauses[QuerySet::User] = QStringLiteral("WHERE (val(Magnitude) between ") +
                            range(form.txtUserMagMin, form.txtUserMagMax);

  // Magnitude holds "primary,secondary" and Info starts with the separation.
  clauses[QuerySet::DoubleStars] =
      QStringLiteral("WHERE (val(Magnitude) between ") + range(form.txtDSMagMin, form.txtDSMagMax) +
      QStringLiteral(
          " and ((Val(Mid(Magnitude, Instr(Magnitude, ',') + 1, 100)) - "
          "Val(Magnitude)) between ") +
      range(form.txtDSMagDifMin, form.txtDSMagDifMax) + QStringLiteral(" and (val(Info) between ") +
      range(form.txtDSSepMin, form.txtDSSepMax);
  return clauses;
}

QString FilterAltitudeMessage() { return QStringLiteral("Please select a value between 0 and 80"); }

bool FilterAltitudeInRange(const FilterForm& form) {
  const double v = Val(form.txtMinAltFilter);
  return !(v < 0 || v > 80);
}

bool FilterOk(AppState& state, const FilterForm& form) {
  if (!FilterAltitudeInRange(form)) {
    state.prompter().message(QStringLiteral("Error"), FilterAltitudeMessage());
    return false;
  }
  // The boxes are converted first: a number too big for the record refuses OK before anything
  // changes, so that the pages never filter on a value Filter.ini cannot hold.
  const FilterSettings settings = FilterFormToSettings(form);
  const std::array<QString, 8> clauses = FilterClauses(form);
  for (int i = 0; i < QuerySet::Count; ++i) state.Pages[i].Filter = clauses[i];
  state.filter = settings;
  SaveFilterDefaults(state);
  state.FilterCancelled = false;
  return true;
}

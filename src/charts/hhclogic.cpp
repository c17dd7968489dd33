#include "charts/hhclogic.h"

#include "catalog/recordset.h"
#include "core/apperror.h"
#include "lists/listview.h"

QStringList HHCDetailTexts(const Recordset& page, int tab) {
  static const QStringList nullable{QStringLiteral("Name"), QStringLiteral("Type"),
                                    QStringLiteral("Constellation"), QStringLiteral("Magnitude"),
                                    QStringLiteral("Info")};
  QStringList texts;
  for (const QString& field : ObjectDetailFields()) {
    const QVariant v = page.value(field);
    if (v.isNull() && (tab == 0 || !nullable.contains(field)))
      throw AppError::of(ErrNo::InvalidUseOfNull);
    texts << FieldText(v);
  }
  return texts;
}

bool AltitudeTickRequery(qint16& altitudeTicks) {
  if (altitudeTicks < 20) {
    ++altitudeTicks;
    return false;
  }
  altitudeTicks = 0;
  return true;
}

HHCLayout HHCLayoutFor(int w, int h) {
  return HHCLayout{w - 4120, h - 1275, w - 4525, h - 3195, h - 3420, h - 1200, h - 1170, h - 1140,
                   h - 825,  h - 795,  h - 795,  h - 815,  h - 855,  h - 390,  h - 340};
}

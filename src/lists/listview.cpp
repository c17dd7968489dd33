#include "lists/listview.h"

#include "catalog/database.h"
#include "catalog/recordset.h"

#include "core/apperror.h"

std::vector<SkyCoordinates> LoadMapStars(const Database& catalog) {
  std::vector<SkyCoordinates> stars;
  Statement st = catalog.prepare(
      QStringLiteral("SELECT RAHour, RAMinute, DecSign, DecDeg, DecMinute FROM MapStars"));
  while (st.step())
    stars.push_back(
        SkyCoordinates::of(st.value(0), st.value(1), st.value(2), st.value(3), st.value(4)));
  return stars;
}

PositionColumns::PositionColumns(const Recordset& rs) {
  static const char* const names[] = {"RAHour", "RAMinute", "DecSign", "DecDeg", "DecMinute"};
  for (int i = 0; i < 5; ++i) {
    columns_[i] = rs.fieldIndex(QLatin1String(names[i]));
    if (columns_[i] < 0)
      throw AppError(ErrNo::Database, QStringLiteral("Item not found in this collection."));
  }
}

SkyCoordinates PositionColumns::current(const Recordset& rs) const {
  return SkyCoordinates::of(rs.value(columns_[0]), rs.value(columns_[1]), rs.value(columns_[2]),
                            rs.value(columns_[3]), rs.value(columns_[4]));
}

SkyCoordinates RowPosition(const Recordset& rs) { return PositionColumns(rs).current(rs); }

const QStringList& ObjectDetailFields() {
  static const QStringList fields{
      QStringLiteral("Category"), QStringLiteral("ObjectNum"),     QStringLiteral("Name"),
      QStringLiteral("Type"),     QStringLiteral("Constellation"), QStringLiteral("Magnitude"),
      QStringLiteral("RAHour"),   QStringLiteral("RAMinute"),      QStringLiteral("DecSign"),
      QStringLiteral("DecDeg"),   QStringLiteral("DecMinute"),     QStringLiteral("Info")};
  return fields;
}

ColumnLayouts ListColumnLayouts() {
  const Qt::Alignment right = Qt::AlignRight, centre = Qt::AlignHCenter, left = Qt::AlignLeft;
  return {
      ColumnLayout::captioned(QStringLiteral("#"), 300, right),
      ColumnLayout::captioned(QStringLiteral("Go"), 300, centre),
      ColumnLayout::captioned(QStringLiteral("Ob"), 300, centre),
      ColumnLayout::named(1050, left),
      ColumnLayout::captioned(QStringLiteral("Number"), 1000, right),
      ColumnLayout::named(2300, left),
      ColumnLayout::named(1650, left),
      ColumnLayout::named(1350, left),
      ColumnLayout::named(1250, left),
      ColumnLayout::named(2500, left),
      ColumnLayout::captioned(QStringLiteral("RA"), 600, left),
      ColumnLayout::captioned(QStringLiteral("RA"), 600, left),
      ColumnLayout::captioned(QString(""), 300, centre),
      ColumnLayout::captioned(QStringLiteral("Dec"), 600, left),
      ColumnLayout::captioned(QStringLiteral("Dec"), 600, left),
  };
}

QString RecordCounterText(int absolutePosition, int recordCount) {
  if (recordCount < 1) return QString();
  return QStringLiteral(" Object: ") + QString::number(absolutePosition + 1) +
         QStringLiteral(" of ") + QString::number(recordCount);
}

QString ToggledObservedMark(const QString& current) {
  return current == QLatin1String("Y") ? QStringLiteral(" ") : QStringLiteral("Y");
}

QString ClearGotoThis() { return QStringLiteral("This"); }
QString ClearGotoAll() { return QStringLiteral("All"); }
QString ClearGotoNone() { return QStringLiteral("None"); }

int ClearGotoMarks(Recordset& rs, const QString& choice) {
  const QString blank = QStringLiteral(" ");
  if (choice == ClearGotoThis()) {
    rs.Edit();
    rs.setValue(QStringLiteral("Goto"), blank);
    rs.Update();
    return 1;
  }
  if (choice != ClearGotoAll()) return 0;
  int written = 0;
  rs.MoveFirst();
  while (!rs.isEOF()) {
    rs.Edit();
    rs.setValue(QStringLiteral("Goto"), blank);
    rs.Update();
    ++written;
    rs.MoveNext();
  }
  rs.MoveFirst();
  return written;
}

QString ListVariantName(ListVariant variant) {
  return variant == ListVariant::CurrentListFixed ? QStringLiteral("CurrentListFixed")
                                                  : QStringLiteral("CurrentList");
}

const ListFormLayout& ListFormLayoutFor(ListVariant variant) {
  // clang-format off
  static const ListFormLayout large{
      10900, 7400, 10670, 7100, 10900, 7400, 4240, 975, 0,
      {{QStringLiteral("cmdClearGoto"), 405},
       {QStringLiteral("cmdEdit"), 405},
       {QStringLiteral("txtRecordCounter"), 855},
       {QStringLiteral("cmdCDC"), 855},
       {QStringLiteral("cmdGoto"), 855},
       {QStringLiteral("cmdNext"), 855},
       {QStringLiteral("cmdObserved"), 855},
       {QStringLiteral("cmdPrevious"), 855}}};
  static const ListFormLayout compact{
      11820, 4935, 11670, 4425, 11820, 4935, 8205, 480, 4140,
      {{QStringLiteral("txtRecordCounter"), 405},
       {QStringLiteral("cmdClose"), 405},
       {QStringLiteral("cmdClearGoto"), 405},
       {QStringLiteral("cmdEdit"), 405},
       {QStringLiteral("cmdGoto"), 405},
       {QStringLiteral("cmdNext"), 405},
       {QStringLiteral("cmdObserved"), 405},
       {QStringLiteral("cmdPrevious"), 405},
       {QStringLiteral("cmdCDC"), 405}}};
  // clang-format on
  return variant == ListVariant::CurrentListFixed ? compact : large;
}

ListResize ListResizeRule(ListVariant variant, bool maximized, int areaWidth, int areaHeight,
                          int width, int height) {
  const ListFormLayout& l = ListFormLayoutFor(variant);
  ListResize r;
  if (maximized && (areaWidth < l.maximizedMinWidth || areaHeight < l.maximizedMinHeight)) {
    r.restoreNormal = true;
    return r;
  }
  r.width = width;
  r.height = height;
  if (!maximized) {
    if (width < l.minWidth) {
      r.setWidth = true;
      r.width = l.minWidth;
    }
    if (height < l.minHeight) {
      r.setHeight = true;
      r.height = l.minHeight;
    }
  }
  for (const auto& f : l.followers) r.tops.emplace_back(f.control, r.height - f.bottomOffset);
  r.gridWidth = r.width - l.gridWidthLess;
  r.gridHeight = r.height - l.gridHeightLess;
  if (l.skyRightOffset > 0) r.skyLeft = r.width - l.skyRightOffset;
  return r;
}

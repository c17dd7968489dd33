#include "catalog/catalogpages.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "core/apperror.h"
#include "core/appstate.h"

namespace {

const QString kTwelve = QStringLiteral(
    "ObjectNum, Name, Type, Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, DecDeg, "
    "DecMinute, Category");
const QString kCategoryFirst = QStringLiteral(
    "Category, ObjectNum, Name, Type, Constellation, Magnitude, Info, RAHour, RAMinute, DecSign, "
    "DecDeg, DecMinute");

ColumnLayouts numberFirstLayout(bool doubleStars) {
  using C = ColumnLayout;
  const Qt::Alignment right = Qt::AlignRight;
  return {
      doubleStars ? C::hiddenColumn() : C::captioned(QStringLiteral("Number"), 1000, right),
      C::named(doubleStars ? 3300 : 2300),
      C::named(1650),
      C::named(1250),
      C::named(1350),
      C::named(2500),
      C::captioned(QStringLiteral("RA"), 600),
      C::captioned(QStringLiteral("RA"), 600),
      C::captioned(QString(QLatin1String("")), 300, right),
      C::captioned(QStringLiteral("Dec"), 600),
      C::captioned(QStringLiteral("Dec"), 600),
      C::hiddenColumn(),
  };
}

ColumnLayouts categoryFirstLayout(int nameWidth) {
  using C = ColumnLayout;
  const Qt::Alignment right = Qt::AlignRight;
  return {
      C::named(1050),
      C::captioned(QStringLiteral("Number"), 1000, right),
      C::named(nameWidth),
      C::named(1650),
      C::named(1250),
      C::named(1350),
      C::named(2500),
      C::captioned(QStringLiteral("RA"), 600),
      C::captioned(QStringLiteral("RA"), 600),
      C::captioned(QString(QLatin1String("")), 300, right),
      C::captioned(QStringLiteral("Dec"), 600),
      C::captioned(QStringLiteral("Dec"), 600),
  };
}

CatalogPage makePage(int tab, int querySet, const char* caption, const char* table,
                     const char* dataControl, const char* grid, const char* key,
                     const char* searchKey, bool categoryFirst,
                     CatalogPage::Source source = CatalogPage::Source::Catalog) {
  CatalogPage p;
  p.tab = tab;
  p.querySet = querySet;
  p.caption = QString::fromLatin1(caption);
  p.table = QString::fromLatin1(table);
  p.source = source;
  p.categoryFirst = categoryFirst;
  p.selectLiteral = QStringLiteral("SELECT ") + (categoryFirst ? kCategoryFirst : kTwelve) +
                    QStringLiteral(" From ") + p.table + QLatin1Char(' ');
  const QString k = QString::fromLatin1(key);
  const QString sk = QString::fromLatin1(searchKey);
  p.dataControl = QString::fromLatin1(dataControl);
  p.grid = QString::fromLatin1(grid);
  p.searchBox = QStringLiteral("txtSearch") + sk;
  p.numberOption = QStringLiteral("opt") + sk + QStringLiteral("Num");
  p.nameOption = QStringLiteral("opt") + sk + QStringLiteral("Name");
  p.findFirst = QStringLiteral("cmdFind") + k;
  p.findNext = QStringLiteral("cmd") + k + QStringLiteral("Next");
  p.findPrev = QStringLiteral("cmd") + k + QStringLiteral("Prev");
  p.addButton = QStringLiteral("cmdAdd") + k;
  const bool doubles = querySet == 1;
  p.numberOptionCaption = doubles ? QStringLiteral("Exact Match") : QStringLiteral("Object Number");
  p.nameOptionCaption = doubles ? QStringLiteral("Close Match") : QStringLiteral("Common/Alt Name");
  p.searchFrameCaption =
      doubles ? QStringLiteral("Search Common Name") : QStringLiteral("Column to Search");
  if (categoryFirst) {
    p.editListColumns = categoryFirstLayout(2300);
    p.hhcColumns = categoryFirstLayout(2200);
    p.findColumnNumber = 1;
    p.findColumnName = 2;
  } else {
    p.editListColumns = numberFirstLayout(doubles);
    p.hhcColumns = numberFirstLayout(doubles);
    p.findColumnNumber = doubles ? 1 : 0;
    p.findColumnName = 1;
  }
  return p;
}

std::array<CatalogPage, 8> buildPages() {
  using S = CatalogPage::Source;
  // The SAO page's search controls say "SAO" where its grid and data control say "SAOStars".
  return {{
      makePage(0, 4, "Messier", "MessierObjects", "datMessierRS", "DBMessier", "Messier", "Messier",
               false),
      makePage(1, 0, "Caldwell", "CaldwellObjects", "datCaldwellRS", "DBCaldwell", "Caldwell",
               "Caldwell", false),
      makePage(2, 5, "NGC", "NGCObjects", "datNGCRS", "DBNGC", "NGC", "NGC", false),
      makePage(3, 3, "IC", "ICObjects", "datICRS", "DBIC", "IC", "IC", false),
      makePage(4, 2, "Deep-sky", "DeepSpaceObjects", "datDSORS", "DBDSO", "DSO", "DSO", true),
      makePage(5, 7, "User Supplied", "UserObjects", "datUserRS", "DBUser", "User", "User", true,
               S::UserList),
      makePage(6, 6, "SAO Stars", "StarObjects", "datSAOStarsRS", "DBSAOStars", "SAO", "SAO",
               false),
      makePage(7, 1, "Double Stars", "DoubleStarObjects", "datDoubleRS", "DBDoubles", "Double",
               "Double", false),
  }};
}

}  // namespace

const std::array<CatalogPage, 8>& CatalogPages() {
  static const std::array<CatalogPage, 8> pages = buildPages();
  return pages;
}

const CatalogPage& PageByTab(int tab) { return CatalogPages().at(size_t(tab)); }

const CatalogPage& PageByQuerySet(int querySet) {
  for (const CatalogPage& p : CatalogPages())
    if (p.querySet == querySet) return p;
  throw AppError::of(ErrNo::SubscriptRange);
}

QString PageRecordSource(const AppState& state, int querySet) {
  const PageQuery& q = state.Pages.at(size_t(querySet));
  return PageByQuerySet(querySet).selectLiteral + q.Where + QLatin1Char(' ') + q.OrderBy +
         QLatin1Char(';');
}

QString PageDatabasePath(const AppState& state, const CatalogPage& page) {
  return page.source == CatalogPage::Source::UserList ? state.userListPath() : state.catalogPath();
}

void EnsureUserList(AppState& state) {
  const QString target = state.userListPath();
  if (QFileInfo::exists(target)) return;
  const QString source = QDir(state.programFolder).filePath(QStringLiteral("TavorineUserList.tmp"));
  if (!QFileInfo::exists(source)) throw AppError::ofFile(ErrNo::FileNotFound, source);
  QDir().mkpath(QFileInfo(target).absolutePath());
  if (!QFile::copy(source, target)) throw AppError::ofFile(ErrNo::PathFileAccess, target);
  // The copy keeps the template's read-only mode when it is installed that way.
  QFile::setPermissions(
      target, QFile::permissions(target) | QFileDevice::WriteOwner | QFileDevice::ReadOwner);
}

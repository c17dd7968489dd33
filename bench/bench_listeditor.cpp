// The list editor's Add on a selection of 500 catalog rows, on real files.
#include <QCoreApplication>
#include <QTextStream>

#include "benchsetup.h"
#include "benchstats.h"

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  QTextStream out(stdout);
  bench::Setup setup;
  AppState& state = setup.state;

  auto catalog = Database::open(state.catalogPath(), Database::Mode::ReadOnly);
  const CatalogPage& ngc = PageByTab(2);
  Recordset page(catalog, PageRecordSource(state, ngc.querySet));
  QList<qint64> selection;
  for (int i = 0; i < 500; ++i) selection << page.bookmarkAt((i * 13) % page.RecordCount());
  const QStringList& columns = CopiedObjectColumns();

  std::shared_ptr<Database> doc;
  const bench::Measured m = bench::measure(
      [&](int) {
        Recordset list(doc, QStringLiteral("Objects"));
        if (AddSelectedRows(page, list, selection) != 500) std::exit(1);
      },
      // The floor: the same rows read and written with one prepared statement each.
      [&](int) {
        Statement read = catalog->prepare(
            QStringLiteral("SELECT %1 FROM NGCObjects WHERE rowid = ?1").arg(columns.join(", ")));
        QStringList marks;
        for (int i = 0; i <= columns.size(); ++i) marks << QStringLiteral("?%1").arg(i + 1);
        Statement write =
            doc->prepare(QStringLiteral("INSERT INTO Objects (%1, DisplayOrder) VALUES (%2)")
                             .arg(columns.join(", "), marks.join(", ")));
        Database::Transaction batch(*doc);
        for (int n = 0; n < selection.size(); ++n) {
          read.bindInt64(1, selection[n]);
          read.step();
          for (int i = 0; i < columns.size(); ++i) write.bind(i + 1, read.value(i));
          write.bindInt64(int(columns.size()) + 1, n + 1);
          write.step();
          write.reset();
          read.reset();
        }
        batch.commit();
      },
      [&](int run) {
        static int n = 0;
        doc =
            Database::open(bench::freshList(state, setup.dir, QStringLiteral("add%1.tlf").arg(n++)),
                           Database::Mode::ReadWrite);
        Q_UNUSED(run);
      });
  return bench::report(out, QStringLiteral("add a selection of 500 NGC rows"), m, 300) ? 0 : 2;
}

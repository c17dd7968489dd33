#include <QtTest>

#include <QAbstractButton>
#include <QIcon>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTextBrowser>

#include "catalog/database.h"
#include "core/icons.h"
#include "info/aboutinfo.h"
#include "info/frmabout.h"
#include "info/frmlicense.h"
#include "info/helpwindow.h"
#include "support/testenv.h"

class TestInfo : public QObject {
  Q_OBJECT
 private slots:
  void initTestCase() { InitIconResources(); }

  // The catalog database's CatalogInfo rows in their order in the About window; a missing file
  // gives none and is not created by looking.
  void aboutWindow() {
    TestEnv env;
    env.state->programFolder = env.dir.path();
    const QString path = env.path(QStringLiteral("TavorineList.mdb"));
    QVERIFY(ReadCatalogInfo(path).isEmpty());
    QVERIFY(!QFile::exists(path));
    env.writeFile(QStringLiteral("TavorineList.mdb"), QByteArray());  // an empty database
    Database(path, Database::Mode::ReadWrite)
        .exec(QStringLiteral("CREATE TABLE CatalogInfo(Key TEXT, Value TEXT); INSERT INTO "
                             "CatalogInfo VALUES('Built', '2026-11-01'), ('Objects', '12345'), "
                             "('Note', NULL)"));
    frmAbout about(*env.state);
    const QStringList lines =
        about.findChild<QLabel*>(QStringLiteral("lblInfo"))->text().split(QLatin1Char('\n'));
    QVERIFY(lines.contains(QStringLiteral("Version " TAVORINE_VERSION)));
    QCOMPARE(
        lines.mid(lines.indexOf(QStringLiteral("Catalog database:")), 4),
        (QStringList{"Catalog database:", "  Built: 2026-11-01", "  Objects: 12345", "  Note: "}));
    about.show();
    QTest::mouseClick(about.findChild<QAbstractButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    QVERIFY(!about.isVisible());
  }

  // The licence and the help page, every link inside the page leading to an anchor of it.
  void textWindows() {
    TestEnv env;
    const frmLicense license(*env.state);
    QVERIFY(license.findChild<QPlainTextEdit*>(QStringLiteral("txtLicense"))
                ->toPlainText()
                .contains(QLatin1String("GNU GENERAL PUBLIC LICENSE")));
    const HelpWindow help(*env.state);
    const QString html = help.findChild<QTextBrowser*>(QStringLiteral("txtHelp"))->toHtml();
    int links = 0;
    for (auto it = QRegularExpression(QStringLiteral("href=\"#([^\"]+)\"")).globalMatch(html);
         it.hasNext(); ++links) {
      const QString anchor = it.next().captured(1);
      QVERIFY2(html.contains(QStringLiteral("name=\"") + anchor + QLatin1Char('"')),
               qPrintable(anchor));
    }
    QVERIFY(links > 10);
  }

  // Each toolbar icon draws at the size of the toolbar.
  void icons() {
    for (const char* name : {"new", "open", "print", "hhc", "align", "redscreen", "tavorine"}) {
      const QIcon icon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)));
      QVERIFY2(!icon.pixmap(24).isNull(), name);
    }
  }
};

QTEST_MAIN(TestInfo)
#include "tst_info.moc"

#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QProcess>
#include <QRadioButton>
#include <QtTest>
#include <cmath>

#include "catalog/database.h"
#include "catalog/recordset.h"
#include "core/mainwindow.h"
#include "core/numtext.h"
#include "core/settings.h"
#include "printing/alignprinting.h"
#include "printing/listprinting.h"
#include "printing/printoptions.h"
#include "sky/skycalc.h"
#include "sky/userdatedialog.h"
#include "support/listdocument.h"
#include "support/recordingprintsurface.h"
#include "support/testenv.h"

namespace {

// Dec +90 stands at the site's latitude (26°20' N) all night; dec -90 never rises.
SkyPosition up() { return SkyPosition::of(0, 0, QStringLiteral("+"), 90, 0); }
SkyPosition down() { return SkyPosition::of(0, 0, QStringLiteral("-"), 90, 0); }

// The object marks of a printed chart: the ellipses of aspect 0.5.
std::vector<RecordingPrintSurface::Op> objectMarks(const RecordingPrintSurface& s) {
  std::vector<RecordingPrintSurface::Op> marks;
  for (const auto& c : s.ofKind(QStringLiteral("circle")))
    if (c.aspect == 0.5) marks.push_back(c);
  return marks;
}

std::vector<ListRow> objects(int n, const SkyPosition& where = up()) {
  std::vector<ListRow> rows(static_cast<size_t>(n));
  for (ListRow& r : rows) r.position = where;
  return rows;
}

}  // namespace

class TestPrinting : public QObject {
  Q_OBJECT
  std::unique_ptr<TestEnv> env_;

  RecordingPrintSurface printList(const std::vector<ListRow>& rows, const QString& style,
                                  int copies = 1) {
    const QString path = env_->path(QStringLiteral("Tonight.tlf"));
    MakeListDocument(*env_->state, path, rows);
    Recordset datPrint(Database::open(path, Database::Mode::ReadOnly), QStringLiteral("Objects"));
    Recordset stars(Database::open(env_->state->catalogPath(), Database::Mode::ReadOnly),
                    QStringLiteral("MapStars to 4_5"));
    RecordingPrintSurface surface;
    PrintingJob(*env_->state, surface, datPrint, stars, QStringLiteral("Tonight"))
        .Run(style, copies);
    return surface;
  }

  PrintRequest listRequest(int objectCount) {
    PrintRequest request;
    request.documentPath = env_->path(QStringLiteral("Tonight.tlf"));
    request.documentTitle = QStringLiteral("Tonight");
    MakeListDocument(*env_->state, request.documentPath, objects(objectCount));
    return request;
  }

 private slots:
  void init() {
    env_ = std::make_unique<TestEnv>();
    env_->state->UserDate = env_->fixedNow;
  }

  void listPages_data() {
    QTest::addColumn<QString>("style");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("copies");
    QTest::addColumn<int>("pages");
    QTest::newRow("empty list: the header alone") << PrintStyleCompact() << 0 << 1 << 1;
    QTest::newRow("15 compact: one page") << PrintStyleCompact() << 15 << 1 << 1;
    QTest::newRow("16 compact: two") << PrintStyleCompact() << 16 << 1 << 2;
    QTest::newRow("16 compact, two copies") << PrintStyleCompact() << 16 << 2 << 2;
    QTest::newRow("5 with comments: one page") << PrintStyleComments() << 5 << 1 << 1;
    QTest::newRow("11 with comments: three") << PrintStyleComments() << 11 << 1 << 3;
  }
  void listPages() {
    QFETCH(QString, style);
    QFETCH(int, count);
    QFETCH(int, copies);
    QFETCH(int, pages);
    const RecordingPrintSurface s = printList(objects(count), style, copies);
    QCOMPARE(int(s.ofKind(QStringLiteral("end")).size()), copies);
    QCOMPARE(int(s.ofKind(QStringLiteral("page")).size()), (pages - 1) * copies);
    const QStringList texts = s.texts();
    for (int page = 1; page <= pages; ++page) {
      const QString number = QStringLiteral("Page: %1").arg(page);
      QCOMPARE(texts.count(number), copies);
      // The page number stands at the right edge.
      QCOMPARE(s.text(number)->x + s.text(number)->text.size() * 120, 11000.0);
    }
    QCOMPARE(texts.count(QStringLiteral("Object")), pages * copies);
    QCOMPARE(texts.count(QStringLiteral("Observation Notes:")),
             style == PrintStyleComments() ? count * copies : 0);
    // The title is centred.
    QCOMPARE(s.text(QStringLiteral("Tonight"))->x, (11000 - 7 * 180) / 2.0);
  }

  void objectBlock_data() {
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("objectText");
    QTest::newRow("double star") << "Double Star" << "Dbl * 7";
    QTest::newRow("catalog") << "Messier" << "Messier 7";
    QTest::newRow("the test minds case") << "double star" << "double star 7";
  }
  void objectBlock() {
    QFETCH(QString, category);
    QFETCH(QString, objectText);
    ListRow row;
    row.category = category;
    row.objectNum = 7;
    row.name = QStringLiteral("  Ptolemy Cluster ");
    row.type = QStringLiteral("Open Cluster with a long type");
    row.magnitude = QStringLiteral("3.3,5.1,7.7,8.8,9.9");
    row.info = QStringLiteral("size 80', 80 stars, Ptolemy knew it, 130 BC");
    row.constellation = QStringLiteral("Scorpius");
    row.position = SkyPosition::of(17, 53.9, QStringLiteral("-"), 34, 47);
    const RecordingPrintSurface s = printList({row}, PrintStyleCompact());
    // Each field cut to its column, in two lines of four.
    const QStringList expected = {objectText, "Open Cluster with a ", "3.3,5.1,7.7,8.8,",
                                  "17h 53.9m", "size 80', 80 stars, Ptolemy knew it",
                                  "Ptolemy Cluster", "-34d 47m", "Scorpius"};
    QCOMPARE(s.textsAfter(QStringLiteral("Info/Constellation")), expected);
    const double xs[] = {0, 2200, 4600, 6400, 7900, 0, 6400, 7900};
    for (int i = 0; i < expected.size(); ++i) QCOMPARE(s.text(expected[i])->x, xs[i]);
  }

  void chartPlotsWhatStandsAboveTheHorizon() {
    std::vector<ListRow> rows = objects(3);
    rows[0].objectNum = 101;
    rows[1].objectNum = 5;
    rows[1].position = down();
    rows[2].objectNum = 31;
    const RecordingPrintSurface s = printList(rows, PrintStyleChart());
    const auto marks = objectMarks(s);
    QCOMPARE(int(marks.size()), 2);
    QCOMPARE(marks[0].radius, 11000 * 0.006);
    // The label stands under the mark's centre.
    const auto* label = s.text(QStringLiteral("M 101"));
    QCOMPARE(QPointF(label->x, label->y), QPointF(marks[0].x, marks[0].y + 25));
    QVERIFY(!s.texts().contains(QStringLiteral("M 5")));
    // The list sorts the numbers of a catalog in numeric order.
    QCOMPARE(s.textsAfter(QStringLiteral("Objects Plotted")), (QStringList{"M 31", "M 101"}));
  }

  void chartPlotsAllButListsOnly180() {
    const RecordingPrintSurface s = printList(objects(181), PrintStyleChartNoLabels());
    QCOMPARE(int(objectMarks(s).size()), 181);
    QCOMPARE(s.textsAfter(QStringLiteral("Objects Plotted")).size(), 180);
    // Ten columns of eighteen.
    const auto* nineteenth = &s.ops[0];
    int seen = 0;
    for (const auto& op : s.ops)
      if (op.kind == QLatin1String("text") && op.y >= 11600 && ++seen == 19) nineteenth = &op;
    QCOMPARE(QPointF(nineteenth->x, nineteenth->y), QPointF(100 + 1150, 11600));
    QCOMPARE(int(s.ofKind(QStringLiteral("page")).size()), 0);
  }

  void secondCopyStandsFurtherIn() {
    const RecordingPrintSurface s = printList(objects(2), PrintStyleChart(), 2);
    const QString legend = QStringLiteral("Star Magnitudes");
    QCOMPARE((QList<double>{s.text(legend, 0)->x, s.text(legend, 1)->x}), (QList<double>{40, 140}));
    QCOMPARE(s.text(legend, 1)->document, 2);
    const QString site = QStringLiteral("Long: E127° 40'   Lat: N26° 20'");
    QCOMPARE(s.text(site, 0)->x - s.text(site, 1)->x, 100.0);
    QCOMPARE(s.text(QStringLiteral("Objects Plotted"), 1)->x, 1250.0);
  }

  // Which pairs and note come is the best pairs test's; here, where the page puts them.
  void alignmentPage() {
    // Stars on the meridian at chosen altitudes, Polaris, and a star that is no alignment star.
    const AppState& state = *env_->state;
    const double lst = std::fmod(SiderealDegreesAtUserDate(state) + 720, 360) / 15;
    const double latitude = 26 + 20 / 60.0;
    env_->writeFile(QStringLiteral("stars.mdb"), {});
    auto db = Database::open(env_->path(QStringLiteral("stars.mdb")), Database::Mode::ReadWrite);
    db->exec(QStringLiteral("CREATE TABLE MapStars (RAHour, RAMinute, DecSign, DecDeg, DecMinute, "
                            "Magnitude, Alignment, AlignmentName, autoalignment)"));
    const auto add = [&](double ra, double dec, int alignment, const QString& name, int autom) {
      db->exec(QStringLiteral("INSERT INTO MapStars VALUES (%1, 0, '%2', %3, 0, 1, %4, '%5', %6)")
                   .arg(PlainNumber(ra), dec < 0 ? "-" : "+", PlainNumber(std::abs(dec)))
                   .arg(alignment).arg(name).arg(autom));
    };
    add(2.53, 89.26, 1, QStringLiteral("Polaris"), 1);
    add(lst, latitude - 45, 1, QStringLiteral("Alpha"), 1);
    add(lst, latitude - 30, 1, QStringLiteral("Beta"), 0);
    add(lst, latitude - 80, 1, QStringLiteral("Low"), 1);
    add(lst, latitude - 10, 0, QString(), 0);
    Recordset stars(db, QStringLiteral("MapStars"));
    RecordingPrintSurface s;
    AlignPrintingJob(state, s, stars).Run(1);

    const QStringList texts = s.texts();
    QCOMPARE(texts.first(), QStringLiteral("NexStar Alignment Star Chart"));
    QCOMPARE(int(s.ofKind(QStringLiteral("point")).size()), 5 + 5);  // stars and legend
    QCOMPARE(s.ofKind(QStringLiteral("circle"))[1].style, 2);        // the 70 and 20 degree circles

    QCOMPARE(s.text(QStringLiteral("Best Alignment Pairs"))->x, 1900.0);
    QCOMPARE(s.text(QStringLiteral("Two Star Align"))->x, 3100.0);
    QCOMPARE(s.text(QStringLiteral("Sep"), 1)->x, 4950.0);
    const auto* first = s.text(QStringLiteral("Polaris - Alpha"));
    QCOMPARE(QPointF(first->x, first->y), QPointF(100, 12520));
    // Three candidates give three rows in the two star table.
    int twoStarRows = 0;
    for (const auto& op : s.ofKind(QStringLiteral("text")))
      twoStarRows += op.x == 3100 && op.y > 12300;
    QCOMPARE(twoStarRows, 3);
    QCOMPARE(texts.mid(texts.size() - 2),
             (QStringList{"NOTE: Do NOT use Polaris in", "EQ mode."}));
  }

  // The dialog's whole road to a PDF: each style, looked at as pictures of its pages.
  void pdfOfEachStyle_data() {
    QTest::addColumn<QString>("option");  // none: the alignment chart
    QTest::addColumn<int>("pages");
    QTest::newRow("compact") << "optCompact" << 4;
    QTest::newRow("comments") << "optComments" << 8;
    QTest::newRow("chart") << "optChart" << 2;
    QTest::newRow("chart without labels") << "optChartNoLabels" << 2;
    QTest::newRow("alignment chart") << "" << 2;
  }
  void pdfOfEachStyle() {
    QFETCH(QString, option);
    QFETCH(int, pages);
    PrintRequest request = listRequest(20);
    if (option.isEmpty()) request.kind = PrintKind::AlignmentChart;
    PrintOptions dialog(*env_->state, request);
    const QString pdf = env_->path(QStringLiteral("out.pdf"));
    dialog.choosePdfFile = [&](const QString& suggested) {
      if (request.kind == PrintKind::List)
        return suggested == env_->path(QStringLiteral("Tonight.pdf")) ? pdf : QString();
      return pdf;
    };
    int dates = 0;
    dialog.askUserDate = [&] { ++dates; };
    dialog.show();
    QCOMPARE(dialog.findChild<QComboBox*>("cmbCurrentPrinter")->currentText(), SaveAsPdfChoice());
    if (!option.isEmpty()) dialog.findChild<QRadioButton*>(option)->setChecked(true);
    dialog.findChild<UpDownField*>("txtCopies")->setText("2");
    dialog.OKButton_Click();
    QVERIFY(env_->prompter.entries.isEmpty());
    QCOMPARE(dates, option.startsWith("optChart") ? 1 : 0);

    QProcess ppm;
    ppm.start(QStringLiteral("pdftoppm"), {"-r", "20", "-png", pdf, env_->path("page")});
    QVERIFY(ppm.waitForFinished(30000));
    QCOMPARE(ppm.exitCode(), 0);
    const QStringList pngs = QDir(env_->path(".")).entryList({"page*.png"}, QDir::Files);
    QCOMPARE(pngs.size(), pages);
    for (const QString& png : pngs) {
      const QImage image(env_->path(png));
      int ink = 0;
      for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) ink += qGray(image.pixel(x, y)) < 200;
      QVERIFY2(ink > 200, qPrintable(png));
    }
  }

  void copiesThatAreNoNumber() {
    PrintOptions dialog(*env_->state, PrintRequest{});
    bool asked = false;
    dialog.choosePdfFile = [&](const QString&) { return asked = true, QString(); };
    dialog.show();
    dialog.findChild<UpDownField*>("txtCopies")->setText("");
    dialog.OKButton_Click();
    QCOMPARE(env_->prompter.texts(), QStringList{"Type mismatch - 13"});
    QVERIFY(dialog.isVisible());  // left up to be corrected
    QVERIFY(!asked);
  }

  void previewShowsEveryCopy() {
    PrintOptions dialog(*env_->state, listRequest(16));
    dialog.show();
    dialog.findChild<UpDownField*>("txtCopies")->setText("2");
    int shown = -1;
    QTimer poll;
    connect(&poll, &QTimer::timeout, [&] {
      auto* preview = dialog.findChild<QPrintPreviewDialog*>(QStringLiteral("PrintPreview"));
      auto* pages = preview ? preview->findChild<QPrintPreviewWidget*>() : nullptr;
      if (!pages || pages->pageCount() == 0) return;
      shown = pages->pageCount();
      preview->reject();
    });
    poll.start(50);
    dialog.cmdPreview_Click();
    QCOMPARE(shown, 4);
    QVERIFY(env_->prompter.entries.isEmpty());
  }

  void printCommandOpensTheListOptions() {
    ProgramSettings settings;
    settings.FirstRun = 0;
    env_->writeFile(QStringLiteral("config/TavorineList.ini"), SettingsRecord(settings, true));
    const QString list = env_->path(QStringLiteral("Tonight.tlf"));
    MakeListDocument(*env_->state, list, objects(1));
    TavorineListMain main(*env_->state);
    main.chooseListFile = [&](bool, const QString&, const QString&) { return list; };
    main.start();
    main.findChild<QAction*>(QStringLiteral("mnuOpen"))->trigger();
    QString shown;
    QTimer::singleShot(0, [&] {
      if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
        shown = dialog->objectName() + QLatin1Char(' ') + dialog->windowTitle();
        dialog->reject();
      }
    });
    main.findChild<QAction*>(QStringLiteral("mnuPrint"))->trigger();
    QCOMPARE(shown, QStringLiteral("PrintOptions Print List"));
  }
};

QTEST_MAIN(TestPrinting)
#include "tst_printing.moc"

#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

#include "catalog/database.h"
#include "catalog/recordset.h"
#include "core/mainwindow.h"
#include "core/settings.h"
#include "printing/listprinting.h"
#include "printing/printoptions.h"
#include "sky/userdatedialog.h"
#include "support/listdocument.h"
#include "support/recordingprintsurface.h"
#include "support/testenv.h"

namespace {

// Dec +90 stands at the site's latitude (26°20' N) all night; dec -90 never rises.
SkyPosition up() { return SkyPosition::of(0, 0, QStringLiteral("+"), 90, 0); }
SkyPosition down() { return SkyPosition::of(0, 0, QStringLiteral("-"), 90, 0); }

std::vector<ListRow> objects(int n) {
  std::vector<ListRow> rows(static_cast<size_t>(n));
  for (ListRow& r : rows) r.position = up();
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

 private slots:
  void init() {
    env_ = std::make_unique<TestEnv>();
    env_->state->UserDate = env_->fixedNow;
  }

  // clang-format off
  void listPages_data() {
    QTest::addColumn<QString>("style");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("copies");
    QTest::addColumn<int>("pages");
    QTest::newRow("empty list: the header alone") << PrintStyleCompact() << 0 << 1 << 1;
    QTest::newRow("15 compact: one page") << PrintStyleCompact() << 15 << 1 << 1;
    QTest::newRow("16 compact, two copies") << PrintStyleCompact() << 16 << 2 << 2;
    QTest::newRow("5 with comments: one page") << PrintStyleComments() << 5 << 1 << 1;
    QTest::newRow("11 with comments: three") << PrintStyleComments() << 11 << 1 << 3;
  }
  // clang-format on
  void listPages() {
    QFETCH(QString, style);
    QFETCH(int, count);
    QFETCH(int, copies);
    QFETCH(int, pages);
    const RecordingPrintSurface s = printList(objects(count), style, copies);
    QCOMPARE(int(s.ofKind(QStringLiteral("end")).size()), copies);
    QCOMPARE(int(s.ofKind(QStringLiteral("page")).size()), (pages - 1) * copies);
    const QStringList texts = s.texts();
    for (int page = 1; page <= pages; ++page)
      QCOMPARE(texts.count(QStringLiteral("Page: %1").arg(page)), copies);
    QCOMPARE(texts.count(QStringLiteral("Object")), pages * copies);
    QCOMPARE(texts.count(QStringLiteral("Observation Notes:")),
             style == PrintStyleComments() ? count * copies : 0);
  }

  // clang-format off
  void objectBlock_data() {
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("objectText");
    QTest::newRow("double star") << "Double Star" << "Dbl * 7";
    QTest::newRow("catalog") << "Messier" << "Messier 7";
    QTest::newRow("the test minds case") << "double star" << "double star 7";
  }
  // clang-format on
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
    const QStringList expected = {objectText,
                                  "Open Cluster with a ",
                                  "3.3,5.1,7.7,8.8,",
                                  "17h 53.9m",
                                  "size 80', 80 stars, Ptolemy knew it",
                                  "Ptolemy Cluster",
                                  "-34d 47m",
                                  "Scorpius"};
    QCOMPARE(s.textsAfter(QStringLiteral("Info/Constellation")), expected);
  }

  // Every object above the horizon is marked and labelled, the list under the chart stops at
  // 180 in numeric order, and the second copy stands 100 further in.
  void chart() {
    std::vector<ListRow> rows = objects(182);
    for (size_t i = 3; i < rows.size(); ++i) rows[i].objectNum = int(i) + 200;
    rows[0].objectNum = 101;
    rows[1].objectNum = 5;
    rows[1].position = down();
    rows[2].objectNum = 31;
    const RecordingPrintSurface s = printList(rows, PrintStyleChart(), 2);
    std::vector<RecordingPrintSurface::Op> marks;  // the ellipses of aspect 0.5
    for (const auto& c : s.ofKind(QStringLiteral("circle")))
      if (c.aspect == 0.5) marks.push_back(c);
    QCOMPARE(int(marks.size()), 2 * 181);
    const auto* label = s.text(QStringLiteral("M 101"));
    QCOMPARE(QPointF(label->x, label->y), QPointF(marks[0].x, marks[0].y + 25));
    QVERIFY(!s.texts().contains(QStringLiteral("M 5")));
    const QStringList listed = s.textsAfter(QStringLiteral("Objects Plotted"));
    QCOMPARE(listed.mid(0, 3), (QStringList{"M 31", "M 101", "M 203"}));
    QCOMPARE(listed[180], s.texts().first());  // the second copy begins after 180
    QCOMPARE(int(s.ofKind(QStringLiteral("page")).size()), 0);
    const QString legend = QStringLiteral("Star Magnitudes");
    QCOMPARE((QList<double>{s.text(legend, 0)->x, s.text(legend, 1)->x}), (QList<double>{40, 140}));
    QCOMPARE(s.text(legend, 1)->document, 2);
    QCOMPARE(s.text(QStringLiteral("Objects Plotted"), 1)->x, 1250.0);
  }

  // The dialog's whole road to a PDF: each style, looked at as pictures of its pages.
  // clang-format off
  void pdfOfEachStyle_data() {
    QTest::addColumn<QString>("option");  // none: the alignment chart
    QTest::addColumn<int>("pages");
    QTest::newRow("compact") << "optCompact" << 4;
    QTest::newRow("comments") << "optComments" << 8;
    QTest::newRow("chart") << "optChart" << 2;
    QTest::newRow("alignment chart") << "" << 2;
  }
  // clang-format on
  void pdfOfEachStyle() {
    QFETCH(QString, option);
    QFETCH(int, pages);
    PrintRequest request;
    request.documentPath = env_->path(QStringLiteral("Tonight.tlf"));
    request.documentTitle = QStringLiteral("Tonight");
    MakeListDocument(*env_->state, request.documentPath, objects(20));
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
    if (option == QLatin1String("optCompact")) {  // Preview shows the pages the PDF gets
      int shown = -1;
      QTimer poll;
      connect(&poll, &QTimer::timeout, [&] {
        auto* preview = dialog.findChild<QPrintPreviewDialog*>(QStringLiteral("PrintPreview"));
        auto* view = preview ? preview->findChild<QPrintPreviewWidget*>() : nullptr;
        if (!view || view->pageCount() == 0) return;
        shown = view->pageCount();
        preview->reject();
      });
      poll.start(50);
      QTest::mouseClick(dialog.findChild<QPushButton*>("cmdPreview"), Qt::LeftButton);
      QCOMPARE(shown, pages);
    }
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

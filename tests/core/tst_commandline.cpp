#include <QtTest>

#include "core/commandline.h"
#include "support/testenv.h"

class TestCommandLine : public QObject {
  Q_OBJECT
 private slots:
  void initTestCase() {
    QCoreApplication::setApplicationName(QStringLiteral("tavorine"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.2.3"));
  }

  void answers_data() {
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<bool>("refuseOthers");
    QTest::addColumn<int>("exitCode");  // -1: no answer, the program starts
    QTest::addColumn<QString>("out");   // "help": the help text
    QTest::addColumn<QString>("err");
    const QString tryHelp = QStringLiteral("\nTry 'tavorine --help'.\n");
    QTest::newRow("nothing starts") << QStringList{} << true << -1 << "" << "";
    QTest::newRow("-v wins over a bad option") << QStringList{"--bogus", "-v"} << true << 0
                                               << "tavorine 1.2.3\n" << "";
    QTest::newRow("--help") << QStringList{"--help"} << false << 0 << "help" << "";
    QTest::newRow("an option the window system may own waits")
        << QStringList{"-platform", "xcb"} << false << -1 << "" << "";
    QTest::newRow("unknown option refused") << QStringList{"--bogus"} << true << 1 << ""
                                            << "tavorine: Unknown option 'bogus'." + tryHelp;
    QTest::newRow("argument refused")
        << QStringList{"night.tlf"} << true << 1 << ""
        << "tavorine: Unexpected argument 'night.tlf': Tavorine opens lists from its File menu." +
               tryHelp;
  }
  void answers() {
    QFETCH(QStringList, args);
    QFETCH(bool, refuseOthers);
    QFETCH(int, exitCode);
    QFETCH(QString, out);
    QFETCH(QString, err);
    TestEnv env;
    const auto answer =
        AnswerCommandLine(QStringList{QStringLiteral("tavorine")} + args, *env.state, refuseOthers);
    QCOMPARE(answer ? answer->exitCode : -1, exitCode);
    if (!answer) return;
    QCOMPARE(answer->err, err);
    if (out != QLatin1String("help")) {
      QCOMPARE(answer->out, out);
      return;
    }
    for (const QString& part : {QStringLiteral("--version"), env.state->programFolder,
                                env.state->configFolder, env.state->defaultDataDir})
      QVERIFY2(answer->out.contains(part), qPrintable(part));
  }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"

#include "core/commandline.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include "core/appstate.h"

namespace {

QString Description(const AppState& state) {
  const auto row = [](const QString& folder, const char* what) {
    return QStringLiteral("  ") + folder + QStringLiteral("\n      ") + QLatin1String(what) +
           QLatin1Char('\n');
  };
  return QStringLiteral(
             "Observing lists and telescope control for Celestron NexStar, Tasco StarGuide and "
             "Ultima 2000\ntelescopes. Tavorine opens its window; Setup comes up on the first "
             "start.\n\nFolders:\n") +
         row(state.programFolder, "catalogs, list template, help (read-only)") +
         row(state.configFolder, "settings: TavorineList.ini, Filter.ini, TVRNMRU.dat") +
         row(state.defaultDataDir, "your lists, until Setup chooses another folder").chopped(1);
}

}  // namespace

std::optional<CommandLineAnswer> AnswerCommandLine(const QStringList& arguments,
                                                   const AppState& state, bool refuseOthers) {
  QCommandLineParser parser;
  parser.setApplicationDescription(Description(state));
  const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                QStringLiteral("Shows this help and exits."));
  const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                   QStringLiteral("Shows the version and exits."));
  parser.addOption(help);
  parser.addOption(version);
  const bool parsed = parser.parse(arguments);
  const QString name = QCoreApplication::applicationName();
  if (parser.isSet(help)) return CommandLineAnswer{0, parser.helpText(), {}};
  if (parser.isSet(version))
    return CommandLineAnswer{
        0,
        name + QLatin1Char(' ') + QCoreApplication::applicationVersion() + QLatin1Char('\n'),
        {}};
  if (!refuseOthers) return std::nullopt;
  QString why;
  if (!parsed) why = parser.errorText();
  else if (!parser.positionalArguments().isEmpty())
    why = QStringLiteral("Unexpected argument '%1': Tavorine opens lists from its File menu.")
              .arg(parser.positionalArguments().constFirst());
  if (why.isEmpty()) return std::nullopt;
  return CommandLineAnswer{1,
                           {},
                           name + QStringLiteral(": ") + why + QStringLiteral("\nTry '") + name +
                               QStringLiteral(" --help'.\n")};
}

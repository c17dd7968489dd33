#include "exchange/tourformat.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>
#include <QStringView>
#include <cmath>
#include <optional>

#include "core/numtext.h"
#include "exchange/codepage.h"
#include "exchange/exportvalues.h"

namespace {

// A text that must stay inside its field of the line.
QString inField(const QString& text) {
  QString out = FitCodePage(text);
  for (QChar& c : out)
    if (c == QLatin1Char('#') || c == QLatin1Char('\r') || c == QLatin1Char('\n'))
      c = QLatin1Char(' ');
  return out;
}

// The seconds of a minutes value: no carry, so 59.96 seconds show as 60.0.
double secondsOf(double minutes) { return (minutes - std::floor(minutes)) * 60; }

// "Type" text of each type code a tour may hold.
QString typeOfCode(const QString& code) {
  static const char* types[] = {
      "Asterism", "Globular Cluster", "Double Star",      "Emission Nebula", "Galaxy",
      "Nebula",   "Open Cluster",     "Planetary Nebula", "Probable Star",   "Triple Star"};
  if (code.size() == 1 && code[0] >= QLatin1Char('0') && code[0] <= QLatin1Char('9'))
    return QString::fromLatin1(types[code[0].unicode() - '0']);
  return QStringLiteral(" ");
}

QString orBlank(const QString& text) { return text.isEmpty() ? QStringLiteral(" ") : text; }

// One line of a tour, or nothing when it cannot be read.
std::optional<ImportedObject> readTourLine(const QString& line) {
  QVector<int> hashes;
  for (int i = 0; i < line.size(); ++i)
    if (line[i] == QLatin1Char('#')) hashes << i;
  int colons = 0, colon = -1;
  for (int i = 0; i < line.size() && colons < 3; ++i)
    if (line[i] == QLatin1Char(':')) {
      ++colons;
      colon = i;
    }
  if (hashes.size() < 14 || colons < 3 || colon < 2) return std::nullopt;
  const auto mid = [&](int from, int length) { return line.mid(from, length); };
  const auto between = [&](int n) {  // between the n-th and the next '#', counted from 1
    return line.mid(hashes[n - 1] + 1, hashes[n] - hashes[n - 1] - 1);
  };
  const QString raSeconds = mid(6, 2), decSeconds = mid(colon + 4, 2);
  if (!IsNumeric(raSeconds) || !IsNumeric(decSeconds)) return std::nullopt;

  const QString identifier = between(2);
  ImportedObject o;
  o[ColRAHour] = Val(mid(0, 2));
  o[ColRAMinute] = RoundHalfEven(Val(mid(3, 2)) + Val(raSeconds) / 60, 1);
  o[ColDecSign] = Val(mid(11, 3)) < 0 ? QStringLiteral("-") : QStringLiteral("+");
  o[ColDecDeg] = Val(mid(colon - 2, 2));
  o[ColDecMinute] = RoundHalfEven(Val(mid(colon + 1, 2)) + Val(decSeconds) / 60, 0);
  o[ColObjectNum] = orBlank(identifier.left(10));
  o[ColName] = orBlank(identifier);
  o[ColInfo] = orBlank(between(3).left(60).trimmed());
  o[ColMagnitude] = orBlank(PrintedNumber(Val(between(7)) / 10).trimmed());
  o[ColType] = typeOfCode(between(11));
  o[ColCategory] = orBlank(between(13));
  o[ColConstellation] = QStringLiteral(" ");
  return o;
}

QString installed(const QString& driveC, const QString& folder) {
  if (driveC.isEmpty()) return QString();
  for (const char* programs : {"Program Files", "Program Files (x86)"}) {
    const QString path = QDir(driveC).filePath(QString::fromLatin1(programs) + folder);
    if (QFileInfo(path).isDir()) return path;
  }
  return QString();
}

}  // namespace

QString TourIdentifier(const QString& category, const QString& objectNum) {
  const QString cat = category.trimmed(), num = objectNum.trimmed();
  if (cat == QLatin1String("NGC")) return QStringLiteral("NGC ") + num;
  if (cat == QLatin1String("IC")) return QStringLiteral("IC ") + num;
  if (cat == QLatin1String("Messier")) return QStringLiteral("M") + num;
  if (cat == QLatin1String("Double Star")) return QStringLiteral("Double ") + num;
  if (cat == QLatin1String("Caldwell")) return QStringLiteral("Cald ") + num;
  return cat.left(5) + QLatin1Char(' ') + num;
}

QString TourTypeCode(const QString& type, const QString& category) {
  static const TypeCodes codes({{"5", "SUP SNR NEB DIF BRI DAR"},
                                {"4", "ELL GAL LEN IRR GLX SPI BAR"},
                                {"7", "PLA"},
                                {"0", "AST"},
                                {"2", "DOU"},
                                {"9", "TRI"},
                                {"6", "OPE CLU OCL"},
                                {"1", "GLO GCL"}},
                               QStringLiteral("10"), QStringLiteral("2"));
  return codes.of(type, category);
}

QString TourLine(const ListRows& list) {
  const double raMinute = list.number(ColRAMinute);
  const double decMinute = list.number(ColDecMinute);
  const QString ra = FormatMask(list.number(ColRAHour), QStringLiteral("00")) + QLatin1Char(':') +
                     FormatMask(std::floor(raMinute), QStringLiteral("00")) + QLatin1Char(':') +
                     FormatMask(secondsOf(raMinute), QStringLiteral("00.0"));
  const QString dec = list.trimmed(ColDecSign) +
                      FormatMask(list.number(ColDecDeg), QStringLiteral("00")) + QLatin1Char(':') +
                      FormatMask(std::floor(decMinute), QStringLiteral("00")) + QLatin1Char(':') +
                      FormatMask(secondsOf(decMinute), QStringLiteral("00"));
  const QString category = list.trimmed(ColCategory);
  const QString identifier = TourIdentifier(category, list.trimmed(ColObjectNum));
  const QString description = QStringLiteral("       ") + list.trimmed(ColName) +
                              QStringLiteral(" - ") + list.trimmed(ColInfo);
  const QString magnitude = PrintedNumber(std::floor(Val(list.text(ColMagnitude)) * 10)).trimmed();
  return ra + QLatin1Char('#') + dec + QLatin1Char('#') + inField(identifier) + QLatin1Char('#') +
         inField(description) + QStringLiteral("####") + magnitude + QStringLiteral("####") +
         TourTypeCode(list.text(ColType), category) + QStringLiteral("#######");
}

QByteArray WriteTour(ListRows& list) {
  QString out;
  for (int written = 0; written < MaxTourObjects && list.next(); ++written)
    out += TourLine(list) + QStringLiteral("\r\n");
  return EncodeCodePage(out);
}

ImportReading ReadTour(const QByteArray& bytes) {
  ImportReading out;
  const QString text = DecodeImportText(bytes);
  int start = 0;
  while (start < text.size()) {
    int end = start;
    while (end < text.size() && text[end] != QLatin1Char('\r') && text[end] != QLatin1Char('\n'))
      ++end;
    const QString line = text.mid(start, end - start);
    start = end;
    if (start < text.size() && text[start] == QLatin1Char('\r')) ++start;
    if (start < text.size() && text[start] == QLatin1Char('\n')) ++start;
    if (line.trimmed().isEmpty()) continue;
    std::optional<ImportedObject> object = readTourLine(line);
    if (!object) return ImportReading{{}, false};  // nothing of a file that is not a tour
    out.objects.push_back(std::move(*object));
  }
  return out;
}

TourFolders FindTourFolders(const QString& windowsDriveC) {
  return {installed(windowsDriveC, QStringLiteral("/Celestron/NexRemote/Tours")),
          installed(windowsDriveC, QStringLiteral("/AstroGeeks/hcAnywhere/Tours"))};
}

TourTarget ChooseTourTarget(const TourFolders& folders, const QString& dataSource,
                            const QString& title) {
  const QString file = title + QStringLiteral(".hct");
  if (!folders.nexRemote.isEmpty())
    return {TourPlace::NexRemote, QDir(folders.nexRemote).filePath(file)};
  if (!folders.hcAnywhere.isEmpty())
    return {TourPlace::HcAnywhere, QDir(folders.hcAnywhere).filePath(file)};
  return {TourPlace::BesideList, PathStem(dataSource) + QStringLiteral(".hct")};
}

QString TourCompleteText(const TourTarget& target) {
  const int slash = int(target.path.lastIndexOf(QLatin1Char('/')));
  const QString folder = target.path.left(slash + 1);
  const QString lead = QStringLiteral("The file '") + target.path.mid(slash + 1) +
                       QStringLiteral("' has been placed in the ");
  const auto inProgram = [&](const QString& program) {
    return lead + program + QStringLiteral(" Tour folder.  You can now select it as a Tour in ") +
           program + QStringLiteral(".  Refer to the instuctions of ") + program +
           QStringLiteral(" for further details.");
  };
  switch (target.place) {
    case TourPlace::NexRemote: return inProgram(QStringLiteral("NexRemote"));
    case TourPlace::HcAnywhere: return inProgram(QStringLiteral("hcAnywhere"));
    case TourPlace::BesideList: break;
  }
  return lead + QStringLiteral("folder '") + folder +
         QStringLiteral(
             "'.  You must move the hct file to the Tour directory then you can select it as a "
             "Tour in NexRemote/hcAnywhere.  Refer to the instuctions of this program and "
             "NexRemote/hcAnywhere for further details.");
}

QString TourImportFolder(const TourFolders& folders, const QString& lastImportFolder) {
  if (!folders.nexRemote.isEmpty()) return folders.nexRemote;
  if (!folders.hcAnywhere.isEmpty()) return folders.hcAnywhere;
  return lastImportFolder;
}

#include "exchange/palmformat.h"

#include <QStringList>

#include "core/numtext.h"
#include "exchange/codepage.h"
#include "exchange/exportvalues.h"

namespace {

// A text inside an object line: a ';' would split the field and a line end the object.
QString inLine(const QString& text) {
  QString out = FitCodePage(text);
  for (QChar& c : out) {
    if (c == QLatin1Char(';')) c = QLatin1Char(',');
    else if (c == QLatin1Char('\r') || c == QLatin1Char('\n')) c = QLatin1Char(' ');
  }
  return out;
}

// Decimal hours or degrees from whole units and minutes, the minutes rounded to hundredths.
QString decimal(double units, double minutes) {
  return PrintedNumber(units + RoundHalfEven(minutes / 60, 2)).trimmed();
}

QByteArray fileBytes(const QString& text) {
  QString inner = FitCodePage(text);  // a full-width quote mark is a quote mark there too
  inner.replace(QLatin1Char('"'), QLatin1String("\"\""));
  return EncodeCodePage(QLatin1Char('"') + inner + QStringLiteral("\",\"0\",\"Unfiled\"\r\n"));
}

}  // namespace

QString PalmIdentifier(const QString& category, const QString& objectNum) {
  const QString cat = category.trimmed();
  if (cat == QLatin1String("NGC")) return QStringLiteral("NGC ") + objectNum.right(4);
  if (cat == QLatin1String("IC")) return QStringLiteral("IC ") + objectNum.right(4);
  if (cat == QLatin1String("Messier")) return QStringLiteral("M ") + objectNum.right(3);
  if (cat == QLatin1String("Double Star")) return QStringLiteral("DS ") + objectNum.trimmed();
  if (cat == QLatin1String("Caldwell")) return QStringLiteral("C ") + objectNum.right(3);
  return cat.left(5) + QLatin1Char(' ') + objectNum.trimmed();
}

QString PalmTypeCode(const QString& type, const QString& category) {
  static const TypeCodes codes({{"12", "SUP SNR NEB DIF BRI DAR"},
                                {"6", "ELL GAL"},
                                {"5", "LEN IRR GLX"},
                                {"7", "SPI"},
                                {"8", "BAR"},
                                {"11", "PLA"},
                                {"14", "AST"},
                                {"3", "DOU STA TRI"},
                                {"10", "OPE CLU OCL"},
                                {"9", "GLO GCL"}},
                               QStringLiteral("6"), QStringLiteral("3"));
  return codes.of(type, category);
}

QString PalmLine(const ListRows& list) {
  const QString category = list.trimmed(ColCategory);
  const QString type = list.trimmed(ColType);
  const QStringList fields = {
      inLine(PalmIdentifier(category, list.text(ColObjectNum)) + QStringLiteral(", ") +
             list.trimmed(ColName).left(30)),
      inLine((type.isEmpty() ? category : type) + QStringLiteral(", ") +
             list.trimmed(ColInfo).left(15)),
      decimal(list.number(ColRAHour), list.number(ColRAMinute)),
      inLine(list.trimmed(ColDecSign)) + decimal(list.number(ColDecDeg), list.number(ColDecMinute)),
      QStringLiteral("1"),
      PalmTypeCode(type, category),
      inLine(list.trimmed(ColMagnitude)),
      QStringLiteral("0")};
  return fields.join(QLatin1Char(';'));
}

std::vector<PalmFile> WritePalm(ListRows& list, const QString& pathStem, const QString& title) {
  const bool numbered = list.count() > PalmObjectsPerFile;
  std::vector<PalmFile> files;
  QString text;
  const auto start = [&] {
    const QString number =
        numbered ? QLatin1Char(' ') + QString::number(files.size() + 1) : QString();
    files.push_back({pathStem + number + QStringLiteral(".txt"), {}});
    text = inLine(title) + number + QStringLiteral(".txt\r\n");
  };
  start();
  for (int counter = 0; list.next(); ++counter) {
    if (counter == PalmObjectsPerFile) {
      files.back().bytes = fileBytes(text);
      start();
      counter = 0;
    }
    text += PalmLine(list) + QStringLiteral("\r\n");
  }
  files.back().bytes = fileBytes(text);
  return files;
}

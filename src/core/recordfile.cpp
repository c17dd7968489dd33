#include "core/recordfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>
#include <optional>

#include "core/apperror.h"
#include "core/numtext.h"

void RecordWriter::separate() {
  if (fieldInRecord_) data_ += ',';
  fieldInRecord_ = true;
}

RecordWriter& RecordWriter::text(const QString& value) {
  separate();
  data_ += '"';
  // A quote in a text is written twice, so that a list named my"list.tlf comes back whole.
  data_ += EncodeRecordText(value).replace('"', "\"\"");
  data_ += '"';
  return *this;
}

RecordWriter& RecordWriter::integer(qint64 value) {
  separate();
  data_ += QByteArray::number(value);
  return *this;
}

RecordWriter& RecordWriter::single(float value) {
  separate();
  data_ += ShortestSingle(value).toLatin1();
  return *this;
}

RecordWriter& RecordWriter::boolean(bool value) {
  separate();
  data_ += value ? "#TRUE#" : "#FALSE#";
  return *this;
}

RecordWriter& RecordWriter::endRecord() {
  data_ += "\r\n";
  fieldInRecord_ = false;
  return *this;
}

namespace {
// The UTF-8 reading of bytes, when they are UTF-8; a leading byte order mark is a character
// of the text like any other.
std::optional<QString> fromUtf8(const QByteArray& bytes) {
  QStringDecoder utf8(QStringDecoder::Utf8,
                      QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
  QString decoded = utf8.decode(bytes);
  if (utf8.hasError()) return std::nullopt;
  return decoded;
}
}  // namespace

// A folder or a list title may hold letters the single-byte code page lacks (a Linux path is
// UTF-8); such a text is kept in UTF-8 rather than turned into question marks. So is a text
// whose single-byte form would read as UTF-8, so that every text reads back as it was written.
QByteArray EncodeRecordText(const QString& text) {
  for (QChar c : text)
    if (c.unicode() > 0xFF) return text.toUtf8();
  const QByteArray latin1 = text.toLatin1();
  return fromUtf8(latin1) ? text.toUtf8() : latin1;
}

QString DecodeRecordText(const QByteArray& bytes) {
  if (std::optional<QString> decoded = fromUtf8(bytes)) return *decoded;
  return QString::fromLatin1(bytes);
}

namespace {
bool isLineEnd(char c) { return c == '\r' || c == '\n'; }
}  // namespace

bool RecordReader::atEnd() const {
  int p = pos_;
  while (p < data_.size() && (isLineEnd(data_[p]) || data_[p] == ' ' || data_[p] == '\t')) ++p;
  return p >= data_.size();
}

QByteArray RecordReader::field(bool* quoted) {
  // Line ends and blanks in front of a field are skipped.
  while (pos_ < data_.size() &&
         (isLineEnd(data_[pos_]) || data_[pos_] == ' ' || data_[pos_] == '\t'))
    ++pos_;
  if (pos_ >= data_.size()) throw AppError::of(ErrNo::InputPastEnd);

  QByteArray out;
  *quoted = data_[pos_] == '"';
  if (*quoted) {
    ++pos_;
    for (; pos_ < data_.size(); ++pos_) {
      if (data_[pos_] == '"') {
        if (pos_ + 1 < data_.size() && data_[pos_ + 1] == '"') ++pos_;  // a quote written twice
        else break;
      }
      out += data_[pos_];
    }
    if (pos_ < data_.size()) ++pos_;  // the closing quote
    // Anything up to the separator is dropped.
    while (pos_ < data_.size() && data_[pos_] != ',' && !isLineEnd(data_[pos_])) ++pos_;
  } else {
    while (pos_ < data_.size() && data_[pos_] != ',' && !isLineEnd(data_[pos_]))
      out += data_[pos_++];
    out = out.trimmed();
  }
  if (pos_ < data_.size() && data_[pos_] == ',') {
    ++pos_;
  } else if (pos_ < data_.size() && data_[pos_] == '\r') {
    ++pos_;
    if (pos_ < data_.size() && data_[pos_] == '\n') ++pos_;
  } else if (pos_ < data_.size() && data_[pos_] == '\n') {
    ++pos_;
  }
  return out;
}

QString RecordReader::text() {
  bool quoted = false;
  return DecodeRecordText(field(&quoted));
}

double RecordReader::number() {
  bool quoted = false;
  const QByteArray f = field(&quoted);
  if (f == "#TRUE#") return -1;
  if (f == "#FALSE#" || f.isEmpty()) return 0;
  const QString s = QString::fromLatin1(f);
  if (!IsNumeric(s)) throw AppError::of(ErrNo::TypeMismatch);
  return Val(s);
}

qint16 RecordReader::int16() { return CInt(number()); }
qint32 RecordReader::int32() { return CLng(number()); }

float RecordReader::single() { return CSng(number()); }

bool RecordReader::boolean() {
  bool quoted = false;
  const QByteArray f = field(&quoted);
  if (f == "#TRUE#") return true;
  if (f == "#FALSE#" || f.isEmpty()) return false;
  const QString s = QString::fromLatin1(f);
  if (!quoted && IsNumeric(s)) return Val(s) != 0;
  if (s.compare(QStringLiteral("True"), Qt::CaseInsensitive) == 0) return true;
  if (s.compare(QStringLiteral("False"), Qt::CaseInsensitive) == 0) return false;
  throw AppError::of(ErrNo::TypeMismatch);
}

QByteArray ReadWholeFile(const QString& path) {
  QFile f(path);
  if (!f.open(QIODevice::ReadOnly)) {
    if (!QFileInfo::exists(path)) throw AppError::ofFile(ErrNo::FileNotFound, path);
    throw AppError::ofFile(ErrNo::PathFileAccess, path, f.errorString());
  }
  return f.readAll();
}

void WriteWholeFile(const QString& path, const QByteArray& bytes) {
  const QString folder = QFileInfo(path).absolutePath();
  if (!QDir().mkpath(folder))
    throw AppError::ofFile(ErrNo::PathFileAccess, path,
                           QStringLiteral("the folder %1 cannot be made").arg(folder));
  QSaveFile f(path);
  if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size() || !f.commit()) {
    const QFileInfo info(folder);
    throw AppError::ofFile(ErrNo::PathFileAccess, path,
                           info.isWritable()
                               ? f.errorString()
                               : QStringLiteral("the folder %1 cannot be written").arg(folder));
  }
}

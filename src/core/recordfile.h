#pragma once

#include <QByteArray>
#include <QString>

// The delimited record format of the settings, filter and recent-file files: one record a
// line ended by CR LF, fields separated by a comma, texts in double quotes (a quote inside
// written twice), integers in decimal, floats in their shortest form with a point, booleans
// #TRUE#/#FALSE#. Files are in the single-byte code page (Latin-1).
class RecordWriter {
 public:
  RecordWriter& text(const QString& value);
  RecordWriter& integer(qint64 value);
  RecordWriter& single(float value);
  RecordWriter& boolean(bool value);
  // Ends the record with CR LF.
  RecordWriter& endRecord();
  const QByteArray& bytes() const { return data_; }

 private:
  void separate();
  QByteArray data_;
  bool fieldInRecord_ = false;
};

// Reads fields one at a time; a comma or a line end ends a field. Reading past the end raises
// error 62, a field that does not convert error 13 (the field is consumed either way).
class RecordReader {
 public:
  explicit RecordReader(QByteArray data) : data_(std::move(data)) {}

  QString text();
  qint16 int16();
  qint32 int32();
  float single();
  bool boolean();
  bool atEnd() const;

 private:
  // The next raw field, and whether it was quoted.
  QByteArray field(bool* quoted);
  double number();
  QByteArray data_;
  int pos_ = 0;
};

// Texts are written in the single-byte code page (Latin-1) when it holds them and that form is
// not also UTF-8, otherwise in UTF-8; a reader takes a text that is valid UTF-8 as such and
// any other as Latin-1. Every text reads back as it was written.
QByteArray EncodeRecordText(const QString& text);
QString DecodeRecordText(const QByteArray& bytes);

// Reads a whole file; a missing file raises error 53.
QByteArray ReadWholeFile(const QString& path);
// Writes a whole file safely (the old content stays if the write fails); raises error 75.
void WriteWholeFile(const QString& path, const QByteArray& bytes);

// The delimited record format of the settings, filter and recent-list files.
// - Whatever the bytes of a file, the reader either reads a field or raises the errors the
//   start-up traps (62 past the end, 13 a field that does not convert, 6 a number too big).
// - Every text, whole number, float and truth value the program writes reads back the same.
#include <cmath>
#include <cstring>

#include "core/apperror.h"
#include "core/recordfile.h"
#include "fuzzsupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  if (in.ConsumeBool()) {
    const std::string kinds = in.ConsumeBytesAsString(in.ConsumeIntegralInRange<size_t>(0, 32));
    RecordReader r(QByteArray::fromStdString(in.ConsumeRandomLengthString(512)));
    for (const char kind : kinds) {
      try {
        switch (static_cast<unsigned char>(kind) % 5) {
          case 0: r.text(); break;
          case 1: r.int16(); break;
          case 2: r.int32(); break;
          case 3: r.single(); break;
          default: r.boolean(); break;
        }
      } catch (const AppError& e) {
        Require(e.number == ErrNo::InputPastEnd || e.number == ErrNo::TypeMismatch ||
                    e.number == ErrNo::Overflow,
                "the reader raises only 62, 13 or 6", e.text());
      }
    }
    return 0;
  }

  const QString a = SomeText(in, 64), b = SomeText(in, 64);
  const qint16 i16 = in.ConsumeIntegral<qint16>();
  const qint32 i32 = in.ConsumeIntegral<qint32>();
  float f = 0;
  const uint32_t bits = in.ConsumeIntegral<uint32_t>();
  std::memcpy(&f, &bits, sizeof f);
  if (!std::isfinite(f)) f = 0;
  const bool t = in.ConsumeBool();
  RecordWriter w;
  w.text(a).integer(i16).integer(i32).single(f).boolean(t).text(b).endRecord();
  RecordReader r(w.bytes());
  const QString detail = Shown(w.bytes());
  RequireNoError(
      "a record the program wrote reads back without an error",
      [&] {
        Require(r.text() == a && r.int16() == i16 && r.int32() == i32 && r.single() == f &&
                    r.boolean() == t && r.text() == b && r.atEnd(),
                "a record the program wrote reads back unchanged, to its end", detail);
      },
      detail);
  return 0;
}

#pragma once

#include <QByteArray>
#include <QString>

// The exchange files (tours, Palm, CSV) go to and come from Windows programs and handhelds,
// which read and write the Western Windows code page, Windows-1252, with CR LF line ends.

// The text with every character Windows-1252 can hold kept as it is. Any other character is
// replaced by its base letters where it has them (o for o with a double acute, fi for the fi
// ligature) and otherwise by a question mark, one for each character, so the text's length
// and field layout stay readable and no byte of a line is ever a partial character.
QString FitCodePage(const QString& text);

// The text in Windows-1252 (characters it cannot hold treated as FitCodePage does).
QByteArray EncodeCodePage(const QString& text);

// Windows-1252 bytes as text; the five bytes the code page leaves undefined stand for the
// control characters of the same number, as Windows reads them.
QString DecodeCodePage(const QByteArray& bytes);

// The text of a file handed to an import: UTF-8 when it starts with the UTF-8 byte-order mark
// or is valid UTF-8 that uses it (what spreadsheet programs save today), Windows-1252
// otherwise. A byte-order mark is dropped.
QString DecodeImportText(const QByteArray& bytes);

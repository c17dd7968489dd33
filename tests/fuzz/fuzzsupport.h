#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <QString>
#include <memory>

#include "catalog/queryset.h"
#include "catalog/recordset.h"
#include "core/apperror.h"
#include "support/testenv.h"

// What the fuzz harnesses share.

// Stops the run when a property fails, naming it; libFuzzer keeps the input that broke it.
void Require(bool holds, const char* property, const QString& detail = QString());

// Runs f, which must end without the program's errors.
template <class F>
void RequireNoError(const char* property, F&& f, const QString& detail = QString()) {
  try {
    f();
  } catch (const AppError& e) {
    Require(false, property, e.text() + QLatin1Char('\n') + detail);
  }
}

// File bytes for a message, with the blanks and separators of the formats left readable.
QString Shown(const QByteArray& bytes);

// A text as a user could have typed it or the file system could name it: up to `most` bytes of
// the input, read as Latin-1 or as UTF-8 (valid code points only).
QString SomeText(FuzzedDataProvider& in, size_t most);

// Filter.ini reads back without an error as the filter in force.
void RequireFilterFileInForce(const AppState& state);

// Makes the core application object the program's code expects (once).
void EnsureCoreApplication();

// The program's state over a small copy of the shipped catalog database (about 60 rows of each
// table taken evenly through it) and a user list filled from its deep-sky rows, with every
// catalog page's rows unfiltered. A query over them takes microseconds, so a run can make
// millions.
struct SamplePages {
  SamplePages();
  TestEnv env;
  std::shared_ptr<Database> db[QuerySet::Count];
  std::unique_ptr<Recordset> rs[QuerySet::Count];
};

#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <QString>
#include <memory>

#include "catalog/queryset.h"
#include "catalog/recordset.h"
#include "core/apperror.h"
#include "support/testenv.h"

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

// Up to `most` bytes of the input read as Latin-1 or as UTF-8 (valid code points only).
QString SomeText(FuzzedDataProvider& in, size_t most);

void RequireFilterFileInForce(const AppState& state);
void EnsureCoreApplication();

// The program's state over a copy of the shipped catalog database thinned to about 60 rows of
// each table and a user list filled from its deep-sky rows, with every catalog page's rows
// unfiltered: a query takes microseconds, so a run can make millions.
struct SamplePages {
  SamplePages();
  TestEnv env;
  std::shared_ptr<Database> db[QuerySet::Count];
  std::unique_ptr<Recordset> rs[QuerySet::Count];
};

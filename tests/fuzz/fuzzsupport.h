#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>

// What the fuzz harnesses share.

// Stops the run when a property fails, naming it; libFuzzer keeps the input that broke it.
void Require(bool holds, const char* property, const QString& detail = QString());

// A folder of this process's own, removed at its end.
QString FuzzFolder();

// A small copy of the shipped catalog database (every table and view, about `rows` rows of each
// table taken evenly through it) and a user table filled from its deep-sky rows, both in
// FuzzFolder(). A query over them takes microseconds, so a run can make millions.
QString SampleCatalog(int rows);
QString SampleUserList(int rows);

// Makes the core application object the program's code expects (once).
void EnsureCoreApplication();

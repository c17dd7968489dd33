#pragma once

#include <vector>

#include "catalog/database.h"
#include "core/appstate.h"
#include "exchange/exchangeobject.h"
#include "support/listdocument.h"

// A list document made from the shipped template, holding the given objects in their order.
inline void MakeExchangeList(const AppState& state, const QString& path,
                             const std::vector<ImportedObject>& objects) {
  MakeListDocument(state, path, {});
  StoreImportedObjects(Database::open(path, Database::Mode::ReadWrite), ImportTarget::CurrentList,
                       objects);
}

// A small list with objects of most catalogs and the awkward values: Nulls, a comma, a
// semicolon, a double quote and a '#' in texts, a character beyond the code page, one inside
// it (an en dash), declinations just south of 0, a right ascension just short of 24 h.
inline std::vector<ImportedObject> AwkwardObjects() {
  const QVariant null;
  return {
      {"NGC", 224, "Andromeda Galaxy", "Galaxy", "3.4", "And", 0, 42.74, "+", 41, 16, "Sb"},
      {"Messier", 42, "Orion Nebula; M42", "Diffuse Nebula", "4", "Ori", 5, 35.3, "-", 5, 23,
       "size 85'x60'"},
      {"Caldwell", 14, "Double Cluster, h and chi", "Open Cluster", "3.7", "Per", 2, 20.5, "+", 57,
       8, "NGC 869 & 884"},
      {"IC", 2118, null, "Reflection Nebula", " ", "Eri", 5, 6.6, "-", 7, 13, null},
      {"Sh2", 155, QString::fromUtf8("The \"Cave\uff02 Nebula, \u03b1 Cep"), "Bright Nebula", "7.7",
       "Cep", 22, 56.8, "+", 62, 37, "size 50'"},
      {"Comet", "C/2023 A3", QString::fromUtf8("Tsuchinshan\u2013ATLAS"), "", "-1.46", "Vir", 23,
       59.9993, "-", 0, 30, "#1 of 2024"},
      {"Double Star", 1, "WDS 00003-4417,I 1477", "Double Star", "6.3,6.8", "Phe", 0, 0.6, "-", 44,
       17.4, "0.4\" PA 327, HR 9077"},
  };
}

#pragma once

#include <QObject>

class QLineEdit;

// Makes a text field select its whole content when it gets the focus, so that typing replaces
// it (the old "selection start 0, length 100").
void SelectAllOnFocus(QLineEdit* field);

#pragma once

#include <QString>

class QDialog;
class QLayout;

// The common close row of the information windows: an OK button on the right.
QLayout* InfoButtonRow(QDialog* dialog);

#pragma once

#include <vector>

class QLineEdit;
class QWidget;

// The panel of details on the object in view, shared by the list windows and the hand control
// window: Text1 to Text13 under their captions (Category, Number, Magnitude, name, type,
// constellation, position, altitude, information). The compact list window puts the heading
// "Current Object Info" above them. texts receives the thirteen boxes in order.
QWidget* BuildObjectDetails(QWidget* parent, bool compact, std::vector<QLineEdit*>& texts);

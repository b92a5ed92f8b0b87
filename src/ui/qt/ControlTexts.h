// What the controls are called where they have no text of their own, and what they are for.
#pragma once

#include <QWidget>

namespace tonvane {

// Gives a control its name for screen readers and its tooltip.
void DescribeControl(int id, QWidget& control);

// Its name; empty for one that needs none.
QString ControlName(int id);

}  // namespace tonvane

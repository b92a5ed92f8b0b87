// Qt's widgets for the kinds of controls.
#pragma once

#include <QString>
#include <QWidget>

#include "ui/DialogTemplate.h"

namespace tonvane {

// A widget of a kind, owned by its parent.
QWidget* MakeControl(ControlKind kind, const QString& text, QWidget* parent);

}  // namespace tonvane

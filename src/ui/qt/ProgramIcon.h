// The program's icon, drawn in code at every size.
#pragma once

#include <QIcon>

namespace tonvane {

QIcon ProgramIcon();

}  // namespace tonvane

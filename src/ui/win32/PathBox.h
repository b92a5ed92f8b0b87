// The combo box of recent files, which the program paints itself.
#pragma once

#include "ui/win32/WindowsApi.h"

namespace tonvane {

// Gives the closed box the height that its painting is made for.
void SetUpPathBox(HWND box);

// Paints a path of the list: from the left or, where it is as wide as the box or wider, up to the
// right edge, so that the file's name stays in view.
void PaintPath(const DRAWITEMSTRUCT& item);

}  // namespace tonvane

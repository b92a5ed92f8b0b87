// The audio devices of this computer for a window's menu.
#pragma once

#include <vector>

#include "ui/WaveDlg.h"

namespace tonvane {

// The one without hardware, if it is wanted, takes the first free place behind the others.
std::vector<DeviceChoice> WindowDevices(bool withSimulated);

}  // namespace tonvane

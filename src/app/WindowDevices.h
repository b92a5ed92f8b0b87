// The audio devices of this computer for a window's menu.
#pragma once

#include <vector>

#include "device/WaveDevice.h"
#include "ui/WaveDlg.h"

namespace tonvane {

// The one without hardware, if it is wanted, takes the first free place behind the others. Devices
// that show their errors by themselves do it by `showError`.
std::vector<DeviceChoice> WindowDevices(bool withSimulated, const ShowDeviceError& showError = {});

}  // namespace tonvane

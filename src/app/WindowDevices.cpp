#include "app/WindowDevices.h"

#include <utility>

#include "device/menu/DeviceMenu.h"

namespace tonvane {

std::vector<DeviceChoice> WindowDevices(bool withSimulated, const ShowDeviceError& showError) {
    std::vector<DeviceChoice> choices;
    int nextId = defaultDeviceId;
    for (DeviceEntry& entry : ListDevices(showError)) {
        if (entry.id == simulatedDeviceId && !withSimulated) {
            continue;
        }
        choices.push_back({nextId, std::move(entry.description), std::move(entry.make)});
        ++nextId;
    }
    return choices;
}

}  // namespace tonvane

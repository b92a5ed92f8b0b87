// devices: the audio devices that there are.
#include <cstdio>

#include "app/commands/Commands.h"
#include "device/menu/DeviceMenu.h"

namespace tonvane {

namespace {

void printDevices() {
    for (const DeviceEntry& entry : ListDevices()) {
        std::printf("%-4d %-20s %s\n", entry.id, entry.name.c_str(), entry.description.c_str());
    }
    std::printf("     %-20s %s\n", "simulated:FILE.qsr", "Loopback through a measured loudspeaker");
    for (const DevicePattern& pattern : DevicePatterns()) {
        std::printf("     %-20s %s\n", pattern.name.c_str(), pattern.description.c_str());
    }
}

}  // namespace

void AddDevicesCommand(Command& program) {
    program.subcommand("devices", "List the audio devices").action(printDevices);
}

}  // namespace tonvane

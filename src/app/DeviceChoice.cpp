#include "app/DeviceChoice.h"

#include <cstdio>

#include "device/DeviceFaults.h"
#include "device/menu/DeviceMenu.h"
#include "device/simulated/SimulatedSpeaker.h"
#include "files/InputError.h"
#include "files/ResponseFile.h"

namespace tonvane {

namespace {

const std::string speakerPrefix = "simulated:";

ChosenDevice simulatedSpeaker(const std::string& path) {
    const SpeakerResponse response = ReadCheckedResponseFile(path);
    return {speakerPrefix + path,
            SimulatedDevice(SimulatedSpeaker(response.samples)).make(),
            response.rate,
            {}};
}

bool canOpen(CWaveDevice& device) {
    const WAVEFORMATEX format = MakeWaveFormat(48000, 2, device.BitsPerSample());
    const bool opened = device.Open(nullptr, &format, 32768, nullptr);
    device.Close();
    return opened;
}

// The first device of the menu; the simulated one on a computer that has no sound at all.
ChosenDevice usualDevice() {
    const DeviceEntry first = FindDevice(ListDevices(), std::to_string(defaultDeviceId));
    if (first.make) {
        ChosenDevice chosen{first.name, first.make(), std::nullopt, {}};
        // A card that is merely in use must not be replaced behind the person's back.
        if (HasSoundCard() || canOpen(*chosen.device)) {
            return chosen;
        }
    }
    return {"simulated", SimulatedDevice({}).make(), std::nullopt,
            "This computer has no sound: the device is a simulated loopback."};
}

}  // namespace

ChosenDevice ChooseDevice(const DeviceOptions& options) {
    const std::string& wanted = options.device;
    if (wanted.empty()) {
        return usualDevice();
    }
    if (wanted.starts_with(speakerPrefix)) {
        return simulatedSpeaker(wanted.substr(speakerPrefix.size()));
    }
    const DeviceEntry entry = FindDevice(ListDevices(), wanted);
    if (!entry.make) {
        throw InputError(wanted,
                         "there is no such audio device; \"tonvane-cli devices\" lists them");
    }
    return {entry.name, entry.make(), std::nullopt, {}};
}

void DevicesCommand() {
    for (const DeviceEntry& entry : ListDevices()) {
        std::printf("%-4d %-20s %s\n", entry.id, entry.name.c_str(), entry.description.c_str());
    }
    std::printf("     %-20s %s\n", "simulated:FILE.qsr", "Loopback through a measured loudspeaker");
    for (const DevicePattern& pattern : DevicePatterns()) {
        std::printf("     %-20s %s\n", pattern.name.c_str(), pattern.description.c_str());
    }
}

}  // namespace tonvane

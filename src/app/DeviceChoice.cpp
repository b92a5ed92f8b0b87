#include "app/DeviceChoice.h"

#include <cstdio>

#include "device/simulated/SimulatedSpeaker.h"
#include "files/InputError.h"
#include "files/ResponseFile.h"

namespace tonvane {

namespace {

constexpr const char* simulatedPrefix = "simulated:";

ChosenDevice simulatedSpeaker(const std::string& path) {
    const SpeakerResponse response = ReadCheckedResponseFile(path);
    return {simulatedPrefix + path,
            std::make_unique<CSimulatedWave>(SimulatedSpeaker(response.samples)), response.rate};
}

}  // namespace

ChosenDevice ChooseDevice(const DeviceOptions& options) {
    const std::string prefix = simulatedPrefix;
    if (options.device.starts_with(prefix)) {
        return simulatedSpeaker(options.device.substr(prefix.size()));
    }
    throw InputError(options.device, "there is no such audio device");
}

void DevicesCommand() {
    std::printf("%sFILE.qsr\n", simulatedPrefix);
}

}  // namespace tonvane

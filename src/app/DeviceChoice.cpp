#include "app/DeviceChoice.h"

#include "app/DeviceGuard.h"
#include "device/menu/DeviceMenu.h"
#include "device/simulated/SimulatedSpeaker.h"
#include "files/InputError.h"
#include "files/ResponseFile.h"

namespace tonvane {

namespace {

const std::string speakerPrefix = "simulated:";

ChosenDevice simulatedSpeaker(const std::string& path) {
    const SpeakerResponse response = ReadCheckedResponseFile(path);
    return {speakerPrefix + path, SimulatedDevice(SimulatedSpeaker(response.samples)).make(),
            response.rate};
}

}  // namespace

void AddDeviceOptions(Command& command, DeviceOptions& options, const std::string& timeoutName) {
    command.option(
        "--device", options.device,
        "Audio device: a name or an id of the list that \"tonvane-cli devices\" prints, or "
        "simulated:FILE.qsr");
    command.option(timeoutName, options.timeLimitS, "Seconds that the device may deliver nothing")
        .range(1, 3600)
        .showDefault();
}

std::string FileOfDevice(const DeviceOptions& options) {
    const std::string& wanted = options.device;
    return wanted.starts_with(speakerPrefix) ? wanted.substr(speakerPrefix.size()) : std::string();
}

ChosenDevice ChooseDevice(const DeviceOptions& options) {
    const std::string usual = std::to_string(defaultDeviceId);
    const std::string& wanted = options.device.empty() ? usual : options.device;
    if (const std::string file = FileOfDevice(options); !file.empty()) {
        return simulatedSpeaker(file);
    }
    DeviceGuard guard(options.limit());
    guard.expect(options.limit(), options.device + (options.device.empty() ? "" : ": ") +
                                      "the sound server does not answer");
    const DeviceEntry entry = FindDevice(ListDevices(), wanted);
    if (!entry.make) {
        throw InputError(wanted,
                         "there is no such audio device; \"tonvane-cli devices\" lists them");
    }
    return {entry.name, entry.make(), std::nullopt};
}

}  // namespace tonvane

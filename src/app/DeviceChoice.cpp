#include "app/DeviceChoice.h"

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
    const std::string& wanted = options.device;
    if (wanted.empty()) {
        return usualDevice();
    }
    if (const std::string file = FileOfDevice(options); !file.empty()) {
        return simulatedSpeaker(file);
    }
    const DeviceEntry entry = FindDevice(ListDevices(), wanted);
    if (!entry.make) {
        throw InputError(wanted,
                         "there is no such audio device; \"tonvane-cli devices\" lists them");
    }
    return {entry.name, entry.make(), std::nullopt, {}};
}

}  // namespace tonvane

#include "device/menu/DeviceMenu.h"

#include "device/alsa/AlsaWave.h"
#include "device/jack/JackClient.h"
#include "device/jack/JackWave.h"

namespace tonvane {

namespace {

constexpr std::string_view alsaPrefix = "alsa:";

DeviceEntry alsaDevice(std::string name, std::string pcm, std::string description) {
    return {defaultDeviceId, std::move(name), std::move(description),
            [pcm = std::move(pcm)] { return std::make_unique<CAlsaWave>(pcm); }};
}

DeviceEntry jackDevice(int32_t id, const JackPair& pair) {
    return {id, "jack:" + pair.name,
            "JACK client \"" + pair.name + "\", " + std::to_string(pair.playback.size()) +
                " channels to play, " + std::to_string(pair.capture.size()) + " to capture",
            [name = pair.name] { return std::make_unique<CJackWave>(name); }};
}

}  // namespace

std::vector<DeviceEntry> ListDevices(const ShowDeviceError& /*showError*/) {
    std::vector<DeviceEntry> devices{alsaDevice("alsa", "default", "ALSA, default device")};
    for (const JackPair& pair : ListJackPairs()) {
        const auto id = firstFurtherDeviceId + static_cast<int32_t>(devices.size()) - 1;
        devices.push_back(jackDevice(id, pair));
    }
    devices.push_back(SimulatedDevice({}));
    return devices;
}

DeviceEntry UnlistedDevice(std::string_view name) {
    if (name.starts_with(alsaPrefix) && name.size() > alsaPrefix.size()) {
        const std::string pcm(name.substr(alsaPrefix.size()));
        return alsaDevice(std::string(name), pcm, "ALSA device \"" + pcm + "\"");
    }
    return {};
}

std::vector<DevicePattern> DevicePatterns() {
    return {{"alsa:PCM", "Another device of the ALSA configuration"}};
}

}  // namespace tonvane

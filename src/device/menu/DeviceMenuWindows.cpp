#include "device/menu/DeviceMenu.h"

#include "device/asio/AsioDriverList.h"
#include "device/asio/AsioWave.h"
#include "device/winmm/WaveInOutWave.h"

namespace tonvane {

namespace {

// Makes a device without a driver of one that cannot be loaded: it refuses every run.
DeviceEntry asioDevice(int32_t id, std::shared_ptr<const CAsioDriverList> drivers, int32_t driver,
                       const ShowDeviceError& showError) {
    const std::string name = drivers->Name(driver);
    return {id, "asio:" + name, name, [drivers = std::move(drivers), driver, name, showError] {
                AsioDriver loaded = drivers->Create(driver);
                const std::string refusal = loaded ? "" : "Failed to load ASIO driver: " + name;
                if (!loaded && showError) {
                    showError(refusal);
                }
                return std::make_unique<CAsioWave>(std::move(loaded), showError, refusal);
            }};
}

}  // namespace

std::vector<DeviceEntry> ListDevices(const ShowDeviceError& showError) {
    std::vector<DeviceEntry> devices{
        {defaultDeviceId, "winmm", "WinMM", [] { return std::make_unique<CWaveInOutWave>(); }}};
    const auto drivers = std::make_shared<const CAsioDriverList>();
    for (int32_t i = 0; i < drivers->Count(); ++i) {
        devices.push_back(asioDevice(firstFurtherDeviceId + i, drivers, i, showError));
    }
    devices.push_back(SimulatedDevice({}));
    return devices;
}

DeviceEntry UnlistedDevice(std::string_view /*name*/) {
    return {};
}

std::vector<DevicePattern> DevicePatterns() {
    return {};
}

}  // namespace tonvane

// The callback on a real JACK server, whose process the environment names.
#include <csignal>
#include <cstdlib>

#include <gmock/gmock.h>

#include "device/jack/JackWave.h"
#include "support/CallWatch.h"

namespace tonvane {
namespace {

TEST(JackCallback, DoesNotDisturbTheSystem) {
    const WAVEFORMATEX format = MakeWaveFormat(48000, 2, 32);
    CJackWave device;
    ASSERT_TRUE(device.Open(&format, &format, 32768, nullptr)) << device.refusal();
    ASSERT_TRUE(device.Start());
    const pid_t server = std::stoi(std::getenv("TONVANE_SERVER"));
    kill(server, SIGSTOP);  // so that this thread is the only one to call
    tests::ExpectQuiet([&] {
        for (int i = 0; i < 100; ++i) {
            device.Process(8192);
        }
    });
    kill(server, SIGCONT);
}

}  // namespace
}  // namespace tonvane

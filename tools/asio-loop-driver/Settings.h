// How the loop driver behaves, from the environment variable TONVANE_LOOP: words NAME=VALUE with
// blanks between them, such as "type=float32 frames=256 fault=rate".
#pragma once

#include <cstdint>
#include <string>

namespace tonvane::loop {

struct Settings {
    std::string type = "int32";  // of the samples: int32, float32, or int16, which no host must use
    int32_t frames = 512;        // of a buffer
    int32_t channels = 2;        // each way
    int32_t input = 512;         // latencies in frames; what is played comes back
    int32_t output = 512;        // so many frames later, input and output together
    int32_t rate = 48000;        // Hz, ahead of the first setSampleRate
    int32_t speed = 1;           // times real time
    int32_t ready = 0;           // 1: output counts only if outputReady is called within the switch

    // What goes wrong: init, rate (every one is refused), buffers, start; stall and resync at a
    // switch in the middle of a run.
    std::string fault;
    std::string log;  // a file that gets a line for every call of the host outside of switches
};

Settings ReadSettings();

}  // namespace tonvane::loop

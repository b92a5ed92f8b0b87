// A link without a server: what it would do, in order.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "amplifier/RegisterWrite.h"
#include "link/LinkTransport.h"

namespace tonvane::tests {

using Lines = std::vector<std::string>;

struct Recording {
    // "open", "connect 20000", "close", "wait 23", and the bytes of frames, "01 05 01 40".
    Lines log;

    bool opens = true;
    bool connects = true;
    std::deque<uint8_t> replies;  // bytes that reads are answered with; 0 behind the last

    // The log since the last call.
    Lines take() { return std::exchange(log, {}); }

    // A transport that keeps this record; the record outlives it.
    std::unique_ptr<LinkTransport> transport();
};

// The frames of the shutdown bracket around others, with their waits.
Lines Bracketed(const Lines& inside);

// The frame that writes a register.
std::string WriteFrame(const RegisterWrite& write);

// Frames that write sections of five words to the registers from `first` on, and unity sections up
// to `last`.
Lines SectionFrames(int first, std::span<const int32_t> words);
Lines UnityFrames(int first, int last);

}  // namespace tonvane::tests

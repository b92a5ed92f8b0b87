// A link without a server: what it would do, in order.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "link/LinkTransport.h"

namespace tonvane::tests {

// Bytes as two hexadecimal digits each with blanks between, "01 05 01 40".
std::string Hex(std::span<const uint8_t> bytes);

struct Recording {
    // "open", "connect 20000", "close", "wait 23", and frames as Hex has them.
    std::vector<std::string> log;

    bool opens = true;
    bool connects = true;
    std::deque<uint8_t> replies;  // bytes that reads are answered with; 0 behind the last

    // The log since the last call.
    std::vector<std::string> take() { return std::exchange(log, {}); }

    // A transport that keeps this record; the record outlives it.
    std::unique_ptr<LinkTransport> transport();
};

// The frames of the shutdown bracket around others, with their waits.
std::vector<std::string> Bracketed(const std::vector<std::string>& inside);

// Frames that write unity sections to a run of registers.
std::vector<std::string> UnityFrames(int first, int last);

}  // namespace tonvane::tests

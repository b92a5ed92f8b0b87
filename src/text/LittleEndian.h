// Unsigned numbers as bytes, the lowest first, whatever the order of this machine.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>

namespace tonvane {

// The number that a range of at most so many bytes holds, characters or integers.
template <std::unsigned_integral Value, typename Bytes>
constexpr Value LoadLittleEndian(const Bytes& bytes) {
    Value value = 0;
    unsigned shift = 0;
    for (const auto byte : bytes) {
        value |= static_cast<Value>(Value{static_cast<uint8_t>(byte)} << shift);
        shift += 8;
    }
    return value;
}

// Fills a range of bytes with the number's lowest ones.
template <std::unsigned_integral Value, typename Bytes>
constexpr void StoreLittleEndian(Value value, Bytes&& bytes) {
    unsigned shift = 0;
    for (auto& byte : bytes) {
        byte = static_cast<uint8_t>(value >> shift & 0xFFU);
        shift += 8;
    }
}

// All bytes of the number behind those that are there.
template <std::unsigned_integral Value>
void AppendLittleEndian(std::string& bytes, Value value) {
    for (unsigned shift = 0; shift < 8 * sizeof value; shift += 8) {
        bytes.push_back(static_cast<char>(value >> shift & 0xFFU));
    }
}

}  // namespace tonvane

// The frames of the link protocol: each is one message of the client and has one reply.
//
//     write   0x01, register, n, n data bytes    reply: one byte of no meaning
//     read    0x00, register, n                  reply: n bytes, the register's contents
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace tonvane::linkframe {

constexpr uint8_t readCommand = 0x00;
constexpr uint8_t writeCommand = 0x01;
constexpr int32_t headerBytes = 3;

// How many bytes answer a whole frame.
size_t ReplyLength(std::span<const uint8_t> frame);

// "write of 29 PEQ Coef L0" or "read of 29 PEQ Coef L0", for a sentence.
std::string NameFrame(std::span<const uint8_t> frame);

// The whole frame in words, with its register's contents or the number of bytes asked for:
// "write 05 System Control 2: 40", "read 1A Start/Stop Period: 1 byte".
std::string DescribeFrame(std::span<const uint8_t> frame);

}  // namespace tonvane::linkframe

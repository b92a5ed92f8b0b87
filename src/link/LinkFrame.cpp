#include "link/LinkFrame.h"

#include "amplifier/RegisterText.h"

namespace tonvane::linkframe {

namespace {

const char* commandName(std::span<const uint8_t> frame) {
    return frame[0] == writeCommand ? "write" : "read";
}

}  // namespace

size_t ReplyLength(std::span<const uint8_t> frame) {
    return frame[0] == writeCommand ? 1 : frame[2];
}

std::string NameFrame(std::span<const uint8_t> frame) {
    return std::string(commandName(frame)) + " of " + RegisterLabel(frame[1]);
}

std::string DescribeFrame(std::span<const uint8_t> frame) {
    const std::string head = std::string(commandName(frame)) + " " + RegisterLabel(frame[1]) + ": ";
    if (frame[0] == writeCommand) {
        return head + DescribeContents(frame[1], frame.subspan(headerBytes));
    }
    return head + std::to_string(frame[2]) + (frame[2] == 1 ? " byte" : " bytes");
}

}  // namespace tonvane::linkframe

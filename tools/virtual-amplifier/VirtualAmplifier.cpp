#include "virtual-amplifier/VirtualAmplifier.h"

#include "link/LinkFrame.h"

namespace tonvane::virtualamp {

std::vector<uint8_t> VirtualAmplifier::answer(std::span<const uint8_t> frame) {
    const int32_t reg = frame[1];
    std::vector<std::string> remarks;
    std::vector<uint8_t> reply(linkframe::ReplyLength(frame));
    if (frame[0] == linkframe::writeCommand) {
        remarks = registers.write(reg, frame.subspan(linkframe::headerBytes));
    } else {
        reply = registers.read(reg, reply.size());
    }
    witness_(frame, remarks);
    return reply;
}

}  // namespace tonvane::virtualamp

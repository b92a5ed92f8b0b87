#include "virtual-amplifier/FrameParser.h"

#include "link/LinkFrame.h"

namespace tonvane::virtualamp {

void FrameParser::take(std::span<const uint8_t> bytes) {
    pending_.insert(pending_.end(), bytes.begin(), bytes.end());
}

bool FrameParser::isLost() const {
    return !pending_.empty() && pending_[0] != linkframe::readCommand &&
           pending_[0] != linkframe::writeCommand;
}

std::optional<std::vector<uint8_t>> FrameParser::next() {
    if (pending_.size() < linkframe::headerBytes || isLost()) {
        return std::nullopt;
    }
    const size_t data = pending_[0] == linkframe::writeCommand ? pending_[2] : 0;
    const size_t length = linkframe::headerBytes + data;
    if (pending_.size() < length) {
        return std::nullopt;
    }
    const auto end = pending_.begin() + static_cast<std::ptrdiff_t>(length);
    std::vector<uint8_t> frame(pending_.begin(), end);
    pending_.erase(pending_.begin(), end);
    return frame;
}

}  // namespace tonvane::virtualamp

// What a client sends: the server's parser and the virtual amplifier behind it.
//
// The first byte of the input is the size of the pieces in which the rest arrives.
#include <algorithm>

#include "FuzzSupport.h"
#include "link/LinkFrame.h"
#include "virtual-amplifier/FrameParser.h"
#include "virtual-amplifier/VirtualAmplifier.h"

namespace tonvane::fuzz {

namespace {

using Bytes = std::vector<uint8_t>;

struct Cut {
    std::vector<Bytes> frames;
    bool isLost;
};

Cut cutInPieces(std::span<const uint8_t> stream, size_t piece) {
    Cut cut{{}, false};
    virtualamp::FrameParser parser;
    while (!stream.empty()) {
        const size_t count = std::min(piece, stream.size());
        parser.take(stream.first(count));
        stream = stream.subspan(count);
        while (auto frame = parser.next()) {
            cut.frames.push_back(std::move(*frame));
        }
    }
    cut.isLost = parser.isLost();
    return cut;
}

void checkCut(std::span<const uint8_t> stream, const Cut& cut) {
    size_t position = 0;
    for (const Bytes& frame : cut.frames) {
        Require(frame.size() >= 3 && frame[0] <= 1, "a frame has a head");
        Require(frame.size() == (frame[0] == 1 ? 3U + frame[2] : 3U), "a frame has its length");
        Require(std::ranges::equal(frame, stream.subspan(position, frame.size())),
                "frames are the stream's bytes");
        position += frame.size();
    }
    const auto rest = stream.subspan(position);
    Require(cut.isLost == (!rest.empty() && rest[0] > 1), "only a wrong head is lost");
    Require(cut.isLost || rest.size() < 3 || (rest[0] == 1 && rest.size() < 3U + rest[2]),
            "whole frames do not stay behind");
}

void checkAnswers(const std::vector<Bytes>& frames) {
    size_t witnessed = 0;
    virtualamp::VirtualAmplifier amplifier([&](auto frame, auto /*remarks*/) {
        Require(!linkframe::DescribeFrame(frame).empty(), "every frame has words");
        ++witnessed;
    });
    for (const Bytes& frame : frames) {
        const Bytes reply = amplifier.answer(frame);
        const bool isWrite = frame[0] == 1;
        Require(reply.size() == (isWrite ? 1U : frame[2]), "a reply has its length");
        if (!isWrite) {
            continue;
        }
        const auto length = static_cast<size_t>(LookUpRegister(frame[1]).length);
        const size_t kept = std::min<size_t>(frame[2], length);
        const Bytes back = amplifier.answer(Bytes{0, frame[1], frame[2]});
        Require(std::equal(back.begin(), back.begin() + static_cast<std::ptrdiff_t>(kept),
                           frame.begin() + 3),
                "what fits is kept");
        --witnessed;
    }
    Require(witnessed == frames.size(), "every frame is witnessed once");
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane::fuzz;
    if (size == 0) {
        return 0;
    }
    const std::span stream(data + 1, size - 1);
    const Cut cut = cutInPieces(stream, data[0] % 64U + 1U);
    checkCut(stream, cut);
    Require(cutInPieces(stream, size).frames == cut.frames, "the pieces do not matter");
    checkAnswers(cut.frames);
    return 0;
}

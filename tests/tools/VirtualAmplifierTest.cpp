// The virtual amplifier's registers and its cutting of frames, without a socket.
#include <gmock/gmock.h>

#include "virtual-amplifier/FrameParser.h"
#include "virtual-amplifier/RegisterFile.h"

namespace tonvane::virtualamp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Bytes = std::vector<uint8_t>;

TEST(RegisterFile, KeepsContentsAtTheirLengths) {
    RegisterFile registers;
    EXPECT_THAT(registers.words(0x29), ElementsAre(0x800000, 0, 0, 0, 0));
    EXPECT_THAT(registers.read(0x57, 4), ElementsAre(0, 2, 0, 0));
    EXPECT_THAT(registers.write(0x07, Bytes{0x30}), IsEmpty());
    EXPECT_THAT(registers.read(0x07, 3), ElementsAre(0x30, 0, 0));
    EXPECT_THAT(registers.write(0x51, Bytes{1, 2, 3, 4, 5, 6, 7, 8}), IsEmpty());
    EXPECT_THAT(registers.words(0x51), ElementsAre(0x01020304, 0x05060708, 0, 0, 0));
}

TEST(RegisterFile, TakesWhatIsOddAndSaysSo) {
    RegisterFile registers;
    EXPECT_THAT(registers.write(0x51, Bytes{9, 9}), ElementsAre("2 bytes for a register of 8"));
    EXPECT_THAT(registers.read(0x51, 4), ElementsAre(9, 9, 0, 0));
    EXPECT_THAT(registers.write(0x07, Bytes{1, 2}), ElementsAre("2 bytes for a register of 1"));
    EXPECT_THAT(registers.read(0x07, 2), ElementsAre(1, 0));
    EXPECT_THAT(registers.write(0x55, Bytes{1}), ElementsAre("1 bytes for a register of 0"));
    EXPECT_THAT(registers.write(0x78, Bytes{1}), ElementsAre("there is no such register"));
    EXPECT_THAT(registers.read(0xFF, 2), ElementsAre(0, 0));
}

TEST(RegisterFile, ReportsFiltersAndDynamicsThatChangeWhileTheAudioRuns) {
    RegisterFile registers;
    const auto isReported = [&](int32_t reg) {
        return !registers.write(reg, registers.read(reg, LookUpRegister(reg).length)).empty();
    };
    for (const int32_t reg : {0x29, 0x36, 0x58, 0x5F, 0x3B, 0x40, 0x43, 0x46}) {
        EXPECT_TRUE(isReported(reg)) << reg;
    }
    for (const int32_t reg : {0x05, 0x07, 0x1B, 0x3A, 0x50, 0x57, 0x70}) {
        EXPECT_FALSE(isReported(reg)) << reg;
    }
    registers.write(0x05, Bytes{0x40});
    EXPECT_TRUE(registers.isShutDown());
    EXPECT_FALSE(isReported(0x29));
    registers.write(0x05, Bytes{0x00});
    EXPECT_FALSE(registers.isShutDown());
    EXPECT_TRUE(isReported(0x29));
}

TEST(FrameParser, CutsFramesHoweverTheyCome) {
    const std::vector<Bytes> frames{
        {1, 5, 1, 0x40}, {0, 0x29, 20}, {1, 7, 0}, {1, 0x51, 3, 0, 1, 2}};
    Bytes stream;
    for (const Bytes& frame : frames) {
        stream.insert(stream.end(), frame.begin(), frame.end());
    }
    for (size_t piece = 1; piece <= stream.size(); ++piece) {
        FrameParser parser;
        std::vector<Bytes> found;
        for (size_t at = 0; at < stream.size(); at += piece) {
            parser.take(std::span(stream).subspan(at, std::min(piece, stream.size() - at)));
            while (const auto frame = parser.next()) {
                found.push_back(*frame);
            }
        }
        EXPECT_EQ(found, frames) << piece;
        EXPECT_FALSE(parser.isLost());
        parser.take(Bytes{2, 0, 0, 0});
        EXPECT_TRUE(parser.isLost());
        EXPECT_FALSE(parser.next());
    }
}

}  // namespace
}  // namespace tonvane::virtualamp

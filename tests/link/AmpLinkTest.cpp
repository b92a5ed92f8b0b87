// The client's frames, waits and states, without a server.
#include <gmock/gmock.h>

#include "link/AmpLink.h"
#include "link/Recording.h"
#include "link/RegisterWrites.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using tests::Bracketed;
using tests::Lines;

class AmpLink : public testing::Test {
  protected:
    Lines connect() {
        link.Connect();
        return record.take();
    }

    tests::Recording record;
    std::intptr_t socket = 99;
    CAmpLink link{socket, 4711, record.transport()};
    const std::vector<RegisterWrite> writes{{0x70, {0x800000}}, {0x06, {1}}};
};

TEST_F(AmpLink, WithoutASocketNothingGoesOutAndNothingWaits) {
    EXPECT_EQ(socket, -1);
    std::array<uint8_t, 4> buffer{9, 9, 9, 9};
    link.ReadRegister(0x20, 4, buffer);
    EXPECT_THAT(buffer, ElementsAre(9, 9, 9, 9));
    link.TrimOscillator();
    WriteRegisters(link, writes);
    WriteInShutdown(link, writes);
    link.Term();
    EXPECT_THAT(record.log, testing::IsEmpty());
}

TEST_F(AmpLink, WordsGoOutMostSignificantByteFirst) {
    const std::array words{0x1800000, 0x1234567, 0, -2, 0xAF};
    const std::pair<int32_t, Lines> cases[] = {
        {1, {"01 29 01 00"}},
        {6, {"01 29 06 01 80 00 00 45 67"}},
        {20, {"01 29 14 01 80 00 00 01 23 45 67 00 00 00 00 FF FF FF FE 00 00 00 AF"}},
        {0, {}},
        {-1, {}},
        {21, {}},
        {1000000, {}}};
    connect();
    for (const auto& [byteCount, frame] : cases) {
        link.WriteRegister(0x29, words, byteCount);
        EXPECT_EQ(record.take(), frame);
    }
}

TEST_F(AmpLink, AReadFillsItsBytesAndNoMore) {
    connect();
    record.replies = {0x11, 0x22, 0x33, 0x44, 0x55};
    std::array<uint8_t, 6> buffer{9, 9, 9, 9, 9, 9};
    link.ReadRegister(0x20, 4, buffer);
    EXPECT_THAT(buffer, ElementsAre(0x11, 0x22, 0x33, 0x44, 9, 9));
    link.ReadRegister(0x3B, 4, buffer);  // the server has one byte left
    EXPECT_THAT(buffer, ElementsAre(0x55, 0, 0, 0, 9, 9));
    link.ReadRegister(0x29, 21, {});
    EXPECT_THAT(record.take(), ElementsAre("00 20 04", "00 3B 04"));
}

TEST_F(AmpLink, ARefusedSocketStaysAndIsSentOn) {
    record.connects = false;
    EXPECT_THAT(connect(), ElementsAre("open", "connect 4711"));
    EXPECT_EQ(socket, 5);
    WriteInShutdown(link, writes);
    EXPECT_EQ(record.take(), Bracketed({"01 70 04 00 80 00 00", "01 06 01 01"}));
    record.connects = true;
    EXPECT_THAT(connect(), ElementsAre("close", "open", "connect 4711"));
    link.Term();
    EXPECT_EQ(socket, -1);
}

}  // namespace
}  // namespace tonvane

// The client's frames, waits and states, without a server.
#include <gmock/gmock.h>

#include "link/AmpLink.h"
#include "link/Recording.h"
#include "link/RegisterWrites.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class AmpLink : public testing::Test {
  protected:
    void write(int32_t reg, std::initializer_list<int32_t> words, int32_t byteCount) {
        const std::vector<int32_t> list(words);
        link.WriteRegister(reg, list, byteCount);
    }

    tests::Recording record;
    std::intptr_t socket = 99;
    CAmpLink link{socket, 4711, record.transport()};
};

TEST_F(AmpLink, WithoutASocketNothingGoesOutAndNothingWaits) {
    EXPECT_EQ(socket, -1);
    const RegisterWrite presetVolume{0x07, {0x30}};
    std::array<uint8_t, 4> buffer{9, 9, 9, 9};
    write(0x05, {0x40}, 1);
    link.ReadRegister(0x20, 4, buffer);
    link.TrimOscillator();
    WriteRegisters(link, {&presetVolume, 1});
    WriteInShutdown(link, {&presetVolume, 1});
    link.Term();
    EXPECT_THAT(record.log, IsEmpty());
    EXPECT_THAT(buffer, ElementsAre(9, 9, 9, 9));
}

TEST_F(AmpLink, WordsGoOutMostSignificantByteFirst) {
    link.Connect();
    record.take();
    write(0x05, {0x40}, 1);
    write(0x07, {0x12345678}, 1);
    write(0x46, {0x800000}, 4);
    write(0x3C, {0xAF, -0xAF}, 8);
    write(0x53, {1, 2, 3, -1}, 16);
    write(0x29, {0x800000, 0x3800000, 0x1234567, 0, -2}, 20);
    write(0x20, {0x01020304, 0x05060708}, 6);
    EXPECT_THAT(record.take(),
                ElementsAre("01 05 01 40", "01 07 01 78", "01 46 04 00 80 00 00",
                            "01 3C 08 00 00 00 AF FF FF FF 51",
                            "01 53 10 00 00 00 01 00 00 00 02 00 00 00 03 FF FF FF FF",
                            "01 29 14 00 80 00 00 03 80 00 00 01 23 45 67 00 00 00 00 FF FF FF FE",
                            "01 20 06 01 02 03 04 07 08"));
    for (const int32_t count : {0, -1, 21, 1000000}) {
        write(0x29, {1, 2, 3, 4, 5, 6}, count);
        link.ReadRegister(0x29, count, {});
    }
    EXPECT_THAT(record.log, IsEmpty());
}

TEST_F(AmpLink, AReadFillsItsBytesAndNoMore) {
    link.Connect();
    record.take();
    record.replies = {0x11, 0x22, 0x33, 0x44, 0x55};
    std::array<uint8_t, 6> buffer{9, 9, 9, 9, 9, 9};
    link.ReadRegister(0x20, 4, buffer);
    EXPECT_THAT(buffer, ElementsAre(0x11, 0x22, 0x33, 0x44, 9, 9));
    link.ReadRegister(0x3B, 4, buffer);  // the server has one byte left
    EXPECT_THAT(buffer, ElementsAre(0x55, 0, 0, 0, 9, 9));
    EXPECT_THAT(record.take(), ElementsAre("00 20 04", "00 3B 04"));
}

TEST_F(AmpLink, TheBracketStopsAndStartsTheAudioWithAWaitEach) {
    link.Connect();
    record.take();
    const RegisterWrite writes[] = {{0x70, {0x800000}}, {0x06, {1}}};
    WriteInShutdown(link, writes);
    EXPECT_THAT(record.take(),
                ElementsAreArray(tests::Bracketed({"01 70 04 00 80 00 00", "01 06 01 01"})));
    WriteInShutdown(link, {});
    EXPECT_THAT(record.take(), ElementsAreArray(tests::Bracketed({})));
    WriteRegisters(link, writes);
    EXPECT_THAT(record.take(), ElementsAre("01 70 04 00 80 00 00", "01 06 01 01"));
}

TEST_F(AmpLink, ARefusedSocketStaysAndIsSentOn) {
    record.connects = false;
    EXPECT_EQ(link.Connect(), CAmpLink::Connection::refused);
    EXPECT_EQ(socket, 5);
    link.EnterShutdown();
    EXPECT_THAT(record.take(),
                ElementsAre("open", "connect 4711", "00 1A 01", "01 05 01 40", "wait 23"));
    record.connects = true;
    EXPECT_EQ(link.Connect(), CAmpLink::Connection::made);
    link.TrimOscillator();
    EXPECT_THAT(record.take(),
                ElementsAre("close", "open", "connect 4711", "01 1B 01 80", "wait 240"));
    link.Term();
    EXPECT_EQ(socket, -1);
    EXPECT_THAT(record.take(), ElementsAre("close"));
    record.opens = false;
    EXPECT_EQ(link.Connect(), CAmpLink::Connection::noSocket);
    EXPECT_THAT(record.take(), ElementsAre("open"));
}

}  // namespace
}  // namespace tonvane

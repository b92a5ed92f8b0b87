// The register panel by its events, against a link that only records.
#include "amplifier/RegisterGroups.h"
#include "link/Recording.h"
#include "ui/DialogDesk.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using tests::Bracketed;
using tests::Lines;
using namespace controls;

constexpr const char* refusal = ": Illegal input (not a number or out of range)";

class Panel : public tests::DialogDesk {
  protected:
    Panel() { start(); }
    // What follows on the link from what a person does.
    Lines press(int id) {
        host.press(id);
        return link.take();
    }
    Lines click(int id) {
        host.click(id);
        return link.take();
    }
    Lines enter(int id, const std::string& text) {
        host.type(id, text);
        host.leave(id);
        return link.take();
    }
    // The texts of a row of boxes, with blanks between.
    std::string texts(int first, int last) {
        return control(first).text + (first < last ? " " + texts(first + 1, last) : "");
    }
    std::string wordTexts() { return texts(wordFirst, wordLast); }
};

TEST_F(Panel, LinkControlsFollowTheConnection) {
    const auto onLink = [&] { return usable(connect, linkLast); };
    link.opens = false;
    EXPECT_THAT(press(connect), ElementsAre("open"));
    EXPECT_EQ(control(status2).text, "");
    link.opens = true;
    link.connects = false;
    EXPECT_THAT(press(connect), ElementsAre("open", "connect 20000"));
    EXPECT_THAT(onLink(), ElementsAre(connect));
    EXPECT_EQ(control(status2).text, "Failed to connect");
    EXPECT_EQ(host.posts, 3);

    link.connects = true;
    link.replies = {0x6C};
    EXPECT_THAT(press(connect), ElementsAre("close", "open", "connect 20000", "01 1B 01 80",
                                            "wait 240", "00 00 01"));
    EXPECT_THAT(onLink(), ElementsAre(2061, 2070, 2071, 2072, 2073, 2074, 2079, 2080, 2081, 2082,
                                      2083, 2084, 2085));
    EXPECT_EQ(control(status2).text, "");
    EXPECT_EQ(wordTexts(), "6C    ");
    press(term);
    EXPECT_THAT(onLink(), ElementsAre(connect));
    EXPECT_THAT(usable(drcBoxFirst, crossover), testing::SizeIs(9));
}

TEST_F(Panel, ANumberIsOneOrTwoHexadecimalDigits) {
    const std::pair<const char*, const char*> cases[] = {
        {"7", "7 1 Master Vol"},   {"7G", "7 1 Master Vol"},    {"", "7 1 Master Vol"},
        {"123", "7 1 Master Vol"}, {"-1", "7 1 Master Vol"},    {" 7", "7 1 Master Vol"},
        {"0x1", "7 1 Master Vol"}, {"78", "78 0 OUT OF RANGE"}, {"3b", "3b 8 DRC1 Alpha/Omega"},
    };
    const auto shown = [&] { return texts(registerNumber, registerName); };
    EXPECT_EQ(shown(), "0 1 Clock Control");
    for (const auto& [typed, row] : cases) {
        host.type(registerNumber, typed);
        EXPECT_EQ(shown(), row) << typed;
    }
}

TEST_F(Panel, AReadFillsAsManyBoxesAsTheRegisterHasWords) {
    press(connect);
    host.type(registerNumber, "2A");
    link.replies = {0, 0x80, 0, 0, 3, 0xAB, 0xCD, 0xEF, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    EXPECT_THAT(press(read), ElementsAre("00 2A 14"));
    EXPECT_EQ(wordTexts(), "00800000 03ABCDEF 01020304 05060708 090A0B0C");
    for (const char* empty : {"78", "55"}) {
        EXPECT_THAT(enter(registerNumber, empty), IsEmpty());
        EXPECT_EQ(wordTexts(), "    ");
        EXPECT_THAT(usable(wordFirst, wordLast), IsEmpty());
    }
    EXPECT_THAT(enter(registerNumber, "3B"), ElementsAre("00 3B 08"));
    EXPECT_EQ(wordTexts(), "00000000 00000000   ");
    EXPECT_THAT(usable(wordFirst, wordLast), ElementsAre(word1, word2));
}

TEST_F(Panel, ASendTakesTheAcceptedTexts) {
    press(connect);
    enter(registerNumber, "46");
    const struct {
        const char *typed, *shown, *frame;
    } cases[] = {
        {"800000", "800000", "01 46 04 00 80 00 00"},
        {"1", "1", "01 46 04 00 00 00 01"},
        {"", "1", "01 46 04 00 00 00 01"},
        {"123456789", "1", "01 46 04 00 00 00 01"},
        {"12G", "1", "01 46 04 00 00 00 01"},
        {"ffFFffFF", "ffFFffFF", "01 46 04 FF FF FF FF"},
    };
    for (const auto& c : cases) {
        host.type(word1, c.typed);
        EXPECT_EQ(control(word1).text, c.shown) << c.typed;
        EXPECT_THAT(press(send), ElementsAre(c.frame));
    }
    enter(registerNumber, "5");
    host.type(word2, "1");  // a box of no bytes is left alone
    EXPECT_EQ(control(word2).text, "1");
    EXPECT_THAT(press(send), ElementsAre("01 05 01 00"));
    host.type(registerNumber, "55");
    EXPECT_THAT(press(send), IsEmpty());
}

TEST_F(Panel, Set1SwitchesEverythingOffInsideOneBracket) {
    for (int id = biq; id <= drcLast; ++id) {
        host.click(id);
    }
    press(connect);
    const std::pair<int, int32_t> startValues[] = {
        {0x07, 0xFF},     {0x08, 0x30},     {0x09, 0x30},     {0x06, 0},        {0x02, 0},
        {0x50, 0},        {0x56, 0x800000}, {0x57, 0x20000},  {0x73, 0x800000}, {0x77, 0x800000},
        {0x72, 0},        {0x76, 0},        {0x51, 0x800000}, {0x52, 0x800000}, {0x70, 0x800000},
        {0x74, 0x800000}, {0x71, 0},        {0x75, 0},        {0x58, 0x800000}, {0x59, 0x800000},
        {0x70, 0x800000}, {0x5A, 0x800000}, {0x5B, 0x800000}, {0x71, 0},        {0x46, 0x20020},
    };
    Lines inside;
    for (const auto& [reg, word] : startValues) {
        inside.push_back(tests::WriteFrame({reg, {word}}));
    }
    EXPECT_EQ(press(set1), Bracketed(inside));
    for (int id = biq; id <= drcLast; ++id) {
        EXPECT_EQ(control(id).check, 0) << id;
    }
    host.press(showSpec1);  // the switches are looked at, and stay off
    EXPECT_EQ(press(set1), Bracketed(inside));
}

TEST_F(Panel, ADesignIsSentAsUnityUntilBiqIsOnAndNotAtAllWithoutAResponse) {
    press(connect);
    host.choose(gainClamp, 6);  // nothing is designed yet
    EXPECT_THAT(link.take(), IsEmpty());
    EXPECT_EQ(click(biq), Bracketed({}));
    click(biq);
    const Lines unity = Bracketed(tests::UnityFrames(0x29, 0x2F));
    host.chosenFiles = {tests::GoldenPath("small48.qsr")};
    EXPECT_EQ(press(openResponse), unity);
    EXPECT_EQ(click(biq), Bracketed(tests::SectionFrames(0x29, words())));
    EXPECT_EQ(click(biq), unity);
    control(biq).check = 1;  // by a program that tells nothing of it
    host.choose(gainClamp, 2);
    EXPECT_EQ(link.take(), Bracketed(tests::SectionFrames(0x29, words())));
    EXPECT_EQ(press(set1).size(), 3U + 25U + 7U + 3U);  // with the unity sections
    host.chosenFiles = {folder / "missing.csv"};
    EXPECT_EQ(press(openTable), Bracketed({}));
}

TEST_F(Panel, SwitchesSendTheirGroupInsideTheBracket) {
    press(connect);
    const auto bracketed = [](const auto& group) {
        Lines frames;
        for (const RegisterWrite& write : group) {
            frames.push_back(tests::WriteFrame(write));
        }
        return Bracketed(frames);
    };
    AmplifierSettings settings = run().amplifier;
    settings.splitEnabled = settings.drcEnabled[1] = true;
    EXPECT_EQ(click(split), bracketed(CrossoverGroup(settings)));
    EXPECT_EQ(click(drc2), bracketed(DrcGroup(settings)));
    press(term);
    for (const int id : {split, drc2, biq, set1}) {
        EXPECT_THAT(click(id), IsEmpty());
    }
}

TEST_F(Panel, NumberBoxesTakeTheirRangesAndSendWhatIsInUse) {
    press(connect);
    host.take();
    const auto expectRefused = [&](int box, const std::string& typed) {
        const std::string before = control(box).text;
        EXPECT_THAT(enter(box, typed), IsEmpty());
        EXPECT_THAT(host.take(), ElementsAre(refusal, "focus " + std::to_string(box))) << typed;
        EXPECT_EQ(control(box).text, before);
    };
    EXPECT_EQ(texts(drcBoxFirst, crossover), "-30 1 1000 1000 -30 1 1000 1000 300");
    for (int box = drcBoxFirst; box <= crossover; ++box) {
        const bool isLevel = box == threshold1 || box == threshold2;
        const int low = isLevel ? -48 : box == crossover ? 10 : 1;
        const int high = isLevel ? 12 : box == crossover ? 43200 : 5000;
        for (const int taken : {low, high}) {  // split or not, a crossover is sent
            EXPECT_EQ(enter(box, std::to_string(taken)).size(), box == crossover ? 12U : 0U);
            EXPECT_THAT(host.take(), IsEmpty());
        }
        expectRefused(box, std::to_string(low - 1));
        expectRefused(box, std::to_string(high + 1));
    }
    for (const char* typed :
         {"", "12a", "1e3", "99999999999", "4 0", "+", "+-40", "+ 40", "--40"}) {
        expectRefused(crossover, typed);
    }
    EXPECT_EQ(enter(crossover, "  +4000 ").size(), 12U);
    EXPECT_EQ(run().amplifier.crossoverHz, 4000);
    EXPECT_THAT(run().amplifier.drc, testing::Each(DrcSettings{12, 5000, 5000, 5000}));
    host.type(crossover, "1");
    EXPECT_EQ(control(crossover).text, "1");  // until the box is left
    host.choose(inputRate, 1);
    EXPECT_EQ(enter(crossover, "39690").size(), 12U);
    expectRefused(crossover, "39691");  // nine tenths of the rate
    click(drc2);
    EXPECT_EQ(enter(threshold2, "0"),
              Bracketed({"01 3E 08 00 00 00 23 00 7F FF DD", "01 3F 08 00 00 00 23 FF FF FF DD",
                         "01 43 08 08 00 00 00 07 FF FF FF"}));
    EXPECT_THAT(enter(threshold2, "0"), IsEmpty());
    EXPECT_THAT(enter(threshold1, "0"), IsEmpty());
    EXPECT_EQ(run().amplifier.coefficients.drc[0].attackThreshold, 0x8000000);
}

TEST_F(Panel, ADumpWritesALineForEachRegister) {
    press(connect);
    host.take();
    press(dump);  // cancelled
    EXPECT_THAT(host.take(), ElementsAre("open dat file (*.dat) *.dat dat"));
    host.chosenFiles = {folder / "none/dump.dat"};
    EXPECT_THAT(press(dump), IsEmpty());
    host.chosenFiles = {folder / "dump.dat"};
    link.replies = {0x12};
    EXPECT_EQ(press(dump).front(), "00 00 01");
    const std::string dump = tests::Contents(folder / "dump.dat");
    EXPECT_EQ(std::ranges::count(dump, '\n'), 120);
    EXPECT_THAT(dump, StartsWith("00\t12\n01\t00\n"));
}

}  // namespace
}  // namespace tonvane

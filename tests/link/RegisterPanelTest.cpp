// The register panel by its events, against a view and a server that only record.
#include <map>
#include <numeric>

#include <gmock/gmock.h>

#include "link/PanelControls.h"
#include "link/Recording.h"
#include "link/RegisterPanel.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

// The controls as a screen would have them. Like a window's, its edit boxes tell of every text
// that is set.
struct Screen : PanelView {
    void setText(int id, const std::string& text) override {
        texts[id] = text;
        if (panel != nullptr) {
            tell(id);
        }
    }
    void enable(int id, bool on) override { enabled[id] = on; }
    void setChecked(int id, bool on) override { checked[id] = on; }
    void focus(int id) override { focused = id; }
    void message(const std::string& text) override { messages.push_back(text); }
    void status(const std::string& text) override { statusLine = text; }

    void tell(int id) const {
        if (id == controls::registerNumber) {
            panel->NumberChanged(texts.at(id));
        } else if (id >= 2074 && id <= 2078) {
            panel->WordChanged(id - 2074, texts.at(id));
        }
    }
    // The texts of a row of boxes, with blanks between.
    std::string row(int first, int last) {
        return texts[first] + (first < last ? " " + row(first + 1, last) : "");
    }
    std::string words() { return row(2074, 2078); }

    RegisterPanel* panel = nullptr;
    std::map<int, std::string> texts;
    std::map<int, bool> enabled;
    std::map<int, bool> checked;
    int focused = 0;
    Lines messages;
    std::string statusLine = "old";
};

class Panel : public testing::Test {
  protected:
    Panel() {
        settings.reset(48000);
        std::iota(designed.begin(), designed.end(), 0x100);
        screen.panel = &panel;
        panel.Start();
    }
    void connect() {
        panel.Connect();
        record.take();
    }
    void type(int id, const std::string& text) { screen.setText(id, text); }

    tests::Recording record;
    std::intptr_t socket = -1;
    CAmpLink link{socket, CAmpLink::usualPort, record.transport()};
    AmplifierSettings settings;
    std::vector<int32_t> designed = std::vector<int32_t>(35);
    Screen screen;
    RegisterPanel panel{link, settings, screen, [this] { return std::span(designed); }};
};

TEST_F(Panel, LinkControlsFollowTheConnection) {
    const auto expectConnected = [&](bool connected) {
        EXPECT_EQ(screen.enabled[2060], !connected);
        EXPECT_EQ(screen.enabled[2061], connected);
        for (const int id : {2070, 2071, 2072, 2073, 2074, 2079, 2080, 2081, 2082, 2083, 2085}) {
            EXPECT_EQ(screen.enabled[id], connected) << id;
        }
        EXPECT_EQ(screen.enabled.count(2090), 0U);
    };
    expectConnected(false);
    EXPECT_EQ(screen.texts[2071], "0");

    record.connects = false;
    panel.Connect();
    expectConnected(false);
    EXPECT_EQ(screen.statusLine, "Failed to connect");
    EXPECT_THAT(record.take(), ElementsAre("open", "connect 20000"));

    record.connects = true;
    record.replies = {0x6C};
    panel.Connect();
    expectConnected(true);
    EXPECT_EQ(screen.statusLine, "");
    EXPECT_THAT(record.take(), ElementsAre("close", "open", "connect 20000", "01 1B 01 80",
                                           "wait 240", "00 00 01"));
    EXPECT_EQ(screen.words(), "6C    ");
    panel.Term();
    expectConnected(false);
    record.opens = false;
    screen.statusLine = "old";
    panel.Connect();
    expectConnected(false);
    EXPECT_EQ(screen.statusLine, "");
}

TEST_F(Panel, ANumberIsOneOrTwoHexadecimalDigits) {
    const auto expectRow = [&](const char* text, const char* length, const char* name) {
        EXPECT_EQ(screen.texts[2071], text);
        EXPECT_EQ(screen.texts[2072], length);
        EXPECT_EQ(screen.texts[2073], name);
    };
    expectRow("0", "1", "Clock Control");
    type(2071, "7");
    expectRow("7", "1", "Master Vol");
    for (const char* wrong : {"7G", "", "123", "-1", " 7", "0x1"}) {
        type(2071, wrong);
        expectRow("7", "1", "Master Vol");
    }
    type(2071, "78");
    expectRow("78", "0", "OUT OF RANGE");
    type(2071, "3b");
    expectRow("3b", "8", "DRC1 Alpha/Omega");
}

TEST_F(Panel, AReadFillsAsManyBoxesAsTheRegisterHasWords) {
    connect();
    type(2071, "2A");
    record.replies = {0, 0x80, 0, 0, 3, 0xAB, 0xCD, 0xEF, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    panel.Read();
    EXPECT_THAT(record.take(), ElementsAre("00 2A 14"));
    EXPECT_EQ(screen.words(), "00800000 03ABCDEF 01020304 05060708 090A0B0C");
    for (const char* empty : {"78", "55"}) {
        type(2071, empty);
        panel.Read();
        EXPECT_THAT(record.take(), IsEmpty());
        EXPECT_EQ(screen.words(), "    ");
        EXPECT_FALSE(screen.enabled[2074]);
    }
    type(2071, "3B");
    panel.Read();
    EXPECT_EQ(screen.words(), "00000000 00000000   ");
    EXPECT_TRUE(screen.enabled[2075]);
    EXPECT_FALSE(screen.enabled[2076]);
}

TEST_F(Panel, ASendTakesTheAcceptedTexts) {
    connect();
    type(2071, "46");
    panel.Read();
    record.take();
    type(2074, "800000");
    panel.Send();
    type(2074, "1");
    for (const char* wrong : {"", "123456789", "12G", "0x1", "-1"}) {
        type(2074, wrong);
        EXPECT_EQ(screen.texts[2074], "1") << wrong;
    }
    panel.Send();
    type(2074, "ffFFffFF");
    panel.Send();
    EXPECT_THAT(record.take(), ElementsAre("01 46 04 00 80 00 00", "01 46 04 00 00 00 01",
                                           "01 46 04 FF FF FF FF"));
    type(2071, "5");
    panel.Read();
    type(2074, "123");
    type(2075, "1");  // a box of no bytes takes nothing
    record.take();
    panel.Send();
    type(2071, "29");  // before a read the old texts stay, as numbers
    panel.Send();
    type(2071, "55");
    panel.Send();
    EXPECT_THAT(record.take(), ElementsAre("01 05 01 00",
                                           "01 29 14 00 00 00 00 00 00 00 00 00 00 "
                                           "00 00 00 00 00 00 00 00 00 00"));
}

TEST_F(Panel, Set1SwitchesEverythingOffInsideOneBracket) {
    settings.biqEnabled = settings.splitEnabled = true;
    settings.drcEnabled = {true, true};
    connect();
    panel.Set1();
    Lines inside;
    for (const char* preset :
         {"07 01 FF", "08 01 30", "09 01 30", "06 01 00", "02 01 00", "50 04 00 00 00 00",
          "56 04 00 80 00 00", "57 04 00 02 00 00", "73 04 00 80 00 00", "77 04 00 80 00 00",
          "72 04 00 00 00 00", "76 04 00 00 00 00", "51 08 00 80 00 00 00 00 00 00",
          "52 08 00 80 00 00 00 00 00 00", "70 04 00 80 00 00", "74 04 00 80 00 00",
          "71 04 00 00 00 00", "75 04 00 00 00 00"}) {
        inside.push_back(std::string("01 ") + preset);
    }
    const auto append = [&](const Lines& more) {
        inside.insert(inside.end(), more.begin(), more.end());
    };
    append(tests::UnityFrames(0x29, 0x2F));
    append(tests::UnityFrames(0x58, 0x59));
    append({"01 70 04 00 80 00 00"});
    append(tests::UnityFrames(0x5A, 0x5B));
    append({"01 71 04 00 00 00 00", "01 46 04 00 02 00 20"});
    EXPECT_THAT(record.take(), ElementsAreArray(tests::Bracketed(inside)));
    for (const int id : {2082, 2083, 2084, 2085}) {
        EXPECT_FALSE(screen.checked.at(id)) << id;
    }
    EXPECT_FALSE(settings.biqEnabled || settings.splitEnabled || settings.drcEnabled[0] ||
                 settings.drcEnabled[1]);
    designed.clear();  // then there are no sections to reset
    panel.Set1();
    EXPECT_EQ(record.take().size(), 3U + inside.size() - 7U + 3U);
}

TEST_F(Panel, SwitchesSendTheirGroupInsideTheBracket) {
    connect();
    panel.ClickBiq(true);
    Lines sent = record.take();
    ASSERT_EQ(sent.size(), 13U);
    EXPECT_EQ(sent[3], "01 29 14 00 00 01 00 00 00 01 01 00 00 01 02 00 00 01 03 00 00 01 04");
    EXPECT_EQ(sent[9].substr(0, 20), "01 2F 14 00 00 01 1E");
    panel.ClickBiq(false);
    EXPECT_THAT(record.take(), ElementsAreArray(tests::Bracketed(tests::UnityFrames(0x29, 0x2F))));
    designed.clear();
    panel.ClickBiq(true);
    EXPECT_THAT(record.take(), ElementsAreArray(tests::Bracketed({})));
    panel.ClickSplit(true);
    sent = record.take();
    ASSERT_EQ(sent.size(), 12U);
    EXPECT_EQ(sent[3].substr(0, 20), "01 58 14 00 7C 7E 9D");
    panel.ClickDrc(1, true);
    sent = record.take();
    ASSERT_EQ(sent.size(), 10U);
    EXPECT_EQ(sent[3], "01 46 04 00 02 00 22");
    panel.Term();
    record.take();
    panel.ClickSplit(false);
    panel.ClickDrc(1, false);
    panel.Set1();
    EXPECT_THAT(record.take(), IsEmpty());
}

TEST_F(Panel, TheCrossoverBoxTakesTenHertzToNineTenthsOfTheRate) {
    connect();
    const auto leave = [&](const std::string& text, int32_t rate) {
        panel.LeaveCrossoverBox(text, rate);
        return record.take().size();
    };
    EXPECT_EQ(leave("300", 48000), 0U);
    EXPECT_EQ(leave("10", 48000), 12U);  // split or not
    EXPECT_EQ(leave(" 43200", 48000), 12U);
    EXPECT_EQ(leave("39690", 44100), 12U);
    EXPECT_THAT(screen.messages, IsEmpty());
    for (const char* wrong : {"9", "39691", "", "12a", "1e3", "-20", "99999999999", "4 0"}) {
        screen.focused = 0;
        type(2098, wrong);
        EXPECT_EQ(leave(wrong, 44100), 0U) << wrong;
        EXPECT_EQ(screen.texts[2098], "39690");
        EXPECT_EQ(screen.focused, 2098);
    }
    EXPECT_THAT(screen.messages, testing::Each("Illegal input (not a number or out of range)"));
    EXPECT_EQ(screen.messages.size(), 8U);
    EXPECT_EQ(settings.coefficients.sampleRate, 48000);
}

TEST_F(Panel, DrcBoxesTakeTheirRangesAndSendOnlyWhileOn) {
    EXPECT_EQ(screen.row(2090, 2098), "-30 1 1000 1000 -30 1 1000 1000 300");
    connect();
    for (const int first : {2090, 2094}) {
        for (const char* right : {"-48", "12"}) {
            panel.LeaveDrcBox(first, right);
        }
        for (int box = 1; box < 4; ++box) {
            panel.LeaveDrcBox(first + box, "1");
            panel.LeaveDrcBox(first + box, "5000");
        }
    }
    EXPECT_THAT(screen.messages, IsEmpty());
    EXPECT_THAT(record.log, IsEmpty());
    EXPECT_EQ(settings.drc[0], (DrcSettings{12, 5000, 5000, 5000}));
    EXPECT_EQ(settings.drc[1], settings.drc[0]);
    for (const auto& [id, wrong] : {std::pair{2090, "-49"},
                                    {2094, "13"},
                                    {2091, "0"},
                                    {2096, "5001"},
                                    {2093, ""},
                                    {2097, "x"}}) {
        panel.LeaveDrcBox(id, wrong);
        EXPECT_EQ(screen.focused, id);
    }
    EXPECT_EQ(screen.messages.size(), 6U);
    EXPECT_EQ(screen.row(2090, 2098), "12 5000 5000 5000 12 5000 5000 5000 300");
    panel.ClickDrc(1, true);
    record.take();
    panel.LeaveDrcBox(2094, "0");
    EXPECT_THAT(record.take(),
                ElementsAreArray(tests::Bracketed({"01 3E 08 00 00 00 23 00 7F FF DD",
                                                   "01 3F 08 00 00 00 23 FF FF FF DD",
                                                   "01 43 08 08 00 00 00 07 FF FF FF"})));
    panel.LeaveDrcBox(2094, "0");
    panel.LeaveDrcBox(2090, "0");
    EXPECT_THAT(record.log, IsEmpty());
    EXPECT_EQ(settings.coefficients.drc[0].attackThreshold, 0x8000000);
}

}  // namespace
}  // namespace tonvane

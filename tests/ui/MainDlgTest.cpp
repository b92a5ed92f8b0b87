// The dialog from its start to its end: what it shows, asks for, answers and writes.
#include "files/FilterFile.h"
#include "ui/DialogDesk.h"

namespace tonvane {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsSupersetOf;
using tests::Lines;
using namespace controls;

using MainDlg = tests::DialogDesk;

// Programs outside reach the controls by these numbers.
TEST_F(MainDlg, EachControlHasItsNumber) {
    std::vector<int> ids;
    for (const DialogItem& item : MainDialogTemplate.items) {
        ids.push_back(item.id);
    }
    const std::vector<int> published{
        2000, noId, 2006, 2007, 2008, noId, 2021, noId, 3001, 8,    2060, 2061, 2070, 2071, 2072,
        2073, 2074, 2075, 2076, 2077, 2078, 2079, 2080, 2081, 2082, 2083, 2084, 2085, 2090, 2091,
        2092, 2093, 2094, 2095, 2096, 2097, 2098, 2030, 2031, 2032, 2033, 2034, 2035, 2036, 2037,
        2011, 2012, 2020, 2026, 2024, 2025, 2010, 2040, 1000, 1002, 1003, 1004, 1005, 2050, 2051};
    EXPECT_EQ(ids, published);
    EXPECT_EQ(std::pair(openResponse, openTable), std::pair(2001, 2003));
}

TEST(DialogTemplate, TextsHaveRoomUpToTheirNeighbourOrFrame) {
    const auto item = [](int id) {
        return *std::ranges::find(MainDialogTemplate.items, id, &DialogItem::id);
    };
    EXPECT_EQ(RightLimit(MainDialogTemplate, item(legendTarget)), 123 - 1);
    EXPECT_EQ(RightLimit(MainDialogTemplate, item(legendMeasured)), 233 - 1);
    EXPECT_EQ(RightLimit(MainDialogTemplate, item(legendBiquads)), 326 - 1);
}

TEST_F(MainDlg, APlainStartShowsPlotListsAndCloseAndDesignsNothing) {
    start();
    EXPECT_THAT(visible(), ElementsAre(close, legendTarget, legendMeasured, legendBiquads,
                                       gainClamp, inputRate));
    EXPECT_EQ(control(curve).items.size(), 10U);
    EXPECT_EQ(control(curve).items.back(), "Curve 10");
    EXPECT_EQ(control(gainClamp).items,
              Lines({" 0 dB", "-1 dB", "-2 dB", "-3 dB", "-4 dB", "-5 dB", "-6 dB", "-7 dB",
                     "-8 dB", "-9 dB", "-10 dB", "-11 dB", "-12 dB"}));
    EXPECT_EQ(control(inputRate).items,
              Lines({"32 KHz", "44 KHz", "48 KHz", "88 KHz", "96 KHz", "192 KHz"}));
    EXPECT_EQ(control(curve).selected, 0);
    EXPECT_EQ(control(results).items, Lines({"Speaker", "Polarity", "Delay", "Loud", "Cutoff"}));
    EXPECT_EQ(control(results).cells, Lines({"LTop", "", "", "", ""}));
    EXPECT_EQ(control(controls::time).text, "00:00");
    EXPECT_THAT(run().curves, Each(BuiltInTargetCurve));
    EXPECT_FALSE(run().responseReady);
    std::vector<int> checks;
    for (int id = showFirst; id <= showLast; ++id) {
        checks.push_back(control(id).check);
    }
    EXPECT_THAT(checks, ElementsAre(0, 1, 1, 0, 0, 0, 1, 0));
    EXPECT_THAT(host.take(), ElementsAre("bold 2050 10", "bold 2051 10"));
}

TEST_F(MainDlg, RateAndGainOfTheStartAreSelectedWhereTheListsHaveThem) {
    const struct {
        int32_t rate, gain;
        int rateItem, gainItem;
    } starts[] = {{32000, -3, 0, 3},   {192000, 3, 5, 3},   {44100, 0, 1, 0},
                  {22050, -12, 2, 12}, {88200, -13, 2, -1}, {48000, INT32_MIN, 2, -1}};
    for (const auto& s : starts) {
        values.InputSampleRate = values.FilterSampleRate = s.rate;
        values.InitialGainClamp = s.gain;
        start();
        EXPECT_EQ(control(inputRate).selected, s.rateItem) << s.rate;
        EXPECT_EQ(control(gainClamp).selected, s.gainItem) << s.gain;
        EXPECT_EQ(run().gainClampDb(), s.gainItem < 0 ? 1.0 : -s.gainItem);
        EXPECT_THAT(control(filterRate).items, ElementsAre(std::to_string(s.rate) + " Hz"));
        EXPECT_EQ(run().designRate, s.rate);
    }
}

TEST_F(MainDlg, EndsWithTheFilesAndTheExitCodeOfEachWay) {
    constexpr int closeBox = controls::dialog;
    const struct {
        int way;
        bool prompts, answer;
        bool asks, writes;
        const char* last;
    } ways[] = {{close, true, true, true, true, "quit 0"},
                {close, true, false, true, false, "quit 0"},
                {close, false, false, false, true, "quit 0"},
                {closeBox, true, true, true, true, "quit 2"},
                {closeBox, true, false, true, false, "quit 2"},
                {cancel, true, true, false, false, "quit 2"}};
    setGolden(0);
    for (const auto& w : ways) {
        host.answer = w.answer;
        promptOnExit = w.prompts;
        start();
        EXPECT_EQ(visible().size(), 6U);
        EXPECT_THAT(host.take(), Contains("focus 0"));  // the response is loaded
        if (w.way != closeBox) {
            host.press(w.way);
        } else if (!host.tell({.message = message::close})) {
            host.press(cancel);
        }
        Lines events{"gone", w.last};
        if (w.asks) {
            events.insert(events.begin(), "Prompt: Do you want to save filters?");
        }
        EXPECT_EQ(host.take(), events) << w.way;
        const std::string filter = FormatFilterFile(words(), run().registerAddresses);
        EXPECT_EQ(tests::Contents(folder / "filter.txt"), w.writes ? filter : "no file") << w.way;
        EXPECT_EQ(folder.names().contains("target.txt"), w.writes) << w.way;
        std::remove((folder / "filter.txt").c_str());
        std::remove((folder / "target.txt").c_str());
    }
    values.FilterFilePath.clear();  // nothing to save, nothing to ask
    start();
    host.take();
    host.press(close);
    EXPECT_THAT(host.take(), ElementsAre("gone", "quit 0"));
    EXPECT_THAT(folder.names(), ElementsAre("state"));  // of the recent files
}

TEST_F(MainDlg, AnswersItsMessagesAndPassesOnTheOthers) {
    constexpr auto passedOn = std::nullopt;
    const struct {
        uint32_t message;
        int id, code;
        std::optional<std::intptr_t> answer;
    } cases[] = {{message::paint, 0, 0, passedOn},
                 {message::close, 0, 0, passedOn},
                 {message::status, 0, 0, 1},
                 {message::captureDone, 0, 0, 1},
                 {message::curveChanged, 0, 0, 0},
                 {message::timer, 2, 0, passedOn},
                 {message::sliderMoved, path, 0, passedOn},
                 {message::systemCommand, 0xF060, 0, passedOn},
                 {message::command, showMixed2, 0, passedOn},
                 {message::command, 1, 0, passedOn},
                 {message::command, registerNumber, 0x300, 0}};
    start();
    for (const auto& c : cases) {
        EXPECT_EQ(host.tell({.message = c.message, .id = c.id, .code = c.code}), c.answer)
            << c.message << " of " << c.id;
    }
    EXPECT_THAT(host.take(),
                IsSupersetOf({"line 13-103 y175 w3 FF008F", "line 123-213 y175 w3 FF0000",
                              "line 233-316 y175 w3 0000FF"}));
}

}  // namespace
}  // namespace tonvane

// The dialog by what a person does to it and what it then shows, asks for and writes.
#include <limits>

#include "link/DeskAmplifier.h"
#include "link/Recording.h"
#include "ui/DialogDesk.h"

namespace tonvane {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using tests::Lines;

using MainDlg = tests::DialogDesk;

TEST_F(MainDlg, APlainStartShowsPlotListsAndCloseAndDesignsNothing) {
    start();
    EXPECT_THAT(host.visible(), ElementsAre(8, 2006, 2007, 2008, 2021, 3001));
    EXPECT_THAT(control(2020).items, AllOf(SizeIs(10), Contains("Curve 1"), Contains("Curve 10")));
    EXPECT_THAT(control(2021).items, SizeIs(13));
    EXPECT_EQ(control(2021).items[0], " 0 dB");
    EXPECT_EQ(control(2021).items[12], "-12 dB");
    EXPECT_THAT(control(3001).items,
                ElementsAre("32 KHz", "44 KHz", "48 KHz", "88 KHz", "96 KHz", "192 KHz"));
    EXPECT_THAT(control(2040).items, ElementsAre("48000 Hz"));
    EXPECT_EQ(control(2020).selected, 0);
    EXPECT_EQ(control(2021).selected, 0);
    EXPECT_EQ(control(3001).selected, 2);
    EXPECT_THAT(control(2010).items, ElementsAre("Speaker", "Polarity", "Delay", "Loud", "Cutoff"));
    EXPECT_THAT(control(2010).cells, ElementsAre("LTop", "", "", "", ""));
    EXPECT_EQ(control(1005).text, "00:00 / --:--");
    EXPECT_THAT(run().curves, Each(BuiltInTargetCurve));
    EXPECT_FALSE(run().responseReady);
    std::vector<int> checks;
    for (int id = 2030; id <= 2037; ++id) {
        checks.push_back(control(id).check);
    }
    EXPECT_THAT(checks, ElementsAre(0, 1, 1, 0, 0, 0, 1, 0));
    EXPECT_THAT(host.take(), ElementsAre("bold 2050 10", "bold 2051 10"));
}

TEST_F(MainDlg, RateAndGainOfTheStartAreSelectedWhereTheListsHaveThem) {
    const struct {
        int32_t rate, gain;
        int rateItem, gainItem;
        double clampDb;
    } starts[] = {
        {32000, -3, 0, 3, -3.0},  {192000, 3, 5, 3, -3.0},
        {44100, 0, 1, 0, 0.0},    {22050, -12, 2, 12, -12.0},
        {88200, -13, 2, -1, 1.0}, {48000, std::numeric_limits<int32_t>::min(), 2, -1, 1.0}};
    for (const auto& s : starts) {
        host.renew();
        values.InputSampleRate = values.FilterSampleRate = s.rate;
        values.InitialGainClamp = s.gain;
        start();
        EXPECT_EQ(control(3001).selected, s.rateItem) << s.rate;
        EXPECT_EQ(control(2021).selected, s.gainItem) << s.gain;
        EXPECT_EQ(run().gainClampDb(), s.clampDb);
        EXPECT_EQ(std::signbit(run().gainClampDb()), s.clampDb < 0.0);  // 0 dB is not -0 dB
        EXPECT_THAT(control(2040).items, ElementsAre(std::to_string(s.rate) + " Hz"));
        EXPECT_EQ(run().designRate, s.rate);
    }
}

TEST_F(MainDlg, ABatchStartDesignsAndCloseWritesTheFiles) {
    const auto& golden = tests::GoldenCases()[0];
    setGolden(golden);
    start();
    tests::ExpectGoldenResponse(words(), golden);
    // 10 log10 0.33428 is -4.76.
    EXPECT_THAT(control(2010).cells, ElementsAre("LTop", "Pos", "148 smpl", "-4.8 dB", "175 Hz"));
    EXPECT_EQ(control(2050).text, "");
    EXPECT_THAT(host.visible(), ElementsAre(8, 2006, 2007, 2008, 2021, 3001));
    EXPECT_THAT(host.take(), Contains("focus 0"));
    host.press(8);
    EXPECT_THAT(host.take(), ElementsAre("gone", "quit 0"));
    EXPECT_EQ(tests::ParseFilterFile(tests::Contents(folder / "filter.txt")).words, words());
    EXPECT_EQ(tests::Contents(folder / "target.txt"),
              tests::Contents(tests::GoldenPath("small48-tilt6.target.txt")));
}

TEST_F(MainDlg, EndsWithTheFilesAndTheExitCodeOfEachWay) {
    const struct {
        const char* way;
        bool prompts;
        bool answer;
        bool writes;
        const char* last;
    } ways[] = {{"close", true, true, true, "quit 0"},   {"close", true, false, false, "quit 0"},
                {"close", false, false, true, "quit 0"}, {"box", true, true, true, "quit 2"},
                {"box", false, false, true, "quit 2"},   {"box", true, false, false, "quit 2"},
                {"escape", true, true, false, "quit 2"}};
    setGolden(tests::GoldenCases()[0]);
    for (const auto& w : ways) {
        host.renew();
        host.answer = w.answer;
        promptOnExit = w.prompts;
        start();
        host.take();
        if (w.way == std::string("box")) {
            host.closeBox();
        } else {
            host.press(w.way == std::string("close") ? 8 : 2);
        }
        Lines events = host.take();
        const bool asks = w.prompts && w.way != std::string("escape");
        EXPECT_EQ(std::ranges::count(events, "Prompt: Do you want to save filters?"), asks);
        EXPECT_EQ(events.back(), w.last) << w.way;
        EXPECT_THAT(events, Contains("gone"));
        EXPECT_EQ(std::remove((folder / "filter.txt").c_str()) == 0, w.writes) << w.way;
        EXPECT_EQ(std::remove((folder / "target.txt").c_str()) == 0, w.writes) << w.way;
    }
    values.FilterFilePath.clear();  // nothing to save, nothing to ask
    promptOnExit = true;
    start();
    host.press(8);
    EXPECT_THAT(host.take(), testing::Not(Contains(testing::StartsWith("Prompt"))));
    EXPECT_THAT(folder.names(), ElementsAre("state"));  // of the recent files
}

TEST_F(MainDlg, PassesOnWhatItDoesNotAnswer) {
    start();
    const auto answer = [&](const DialogMessage& m) { return host.tell(m); };
    EXPECT_EQ(answer({.message = message::paint}), std::nullopt);
    EXPECT_THAT(host.take(),
                testing::IsSupersetOf({"line 13-103 y175 w3 FF008F", "line 123-213 y175 w3 FF0000",
                                       "line 233-316 y175 w3 0000FF"}));
    EXPECT_EQ(answer({.message = message::close}), std::nullopt);
    EXPECT_EQ(answer({.message = message::status}), 1);
    EXPECT_EQ(answer({.message = message::captureDone}), 1);
    EXPECT_EQ(answer({.message = message::curveChanged}), 0);
    EXPECT_EQ(answer({.message = message::timer, .id = 1}), 0);
    EXPECT_EQ(answer({.message = message::timer, .id = 2}), std::nullopt);
    EXPECT_EQ(answer({.message = message::sliderMoved, .id = 1000}), std::nullopt);
    for (const int entry : {199, 211, 0xF060}) {
        EXPECT_EQ(answer({.message = message::systemCommand, .id = entry}), std::nullopt);
    }
    for (const auto& [id, code] :
         {std::pair{2020, 2}, {2071, 0x400}, {2037, 0}, {2099, 0}, {1, 0}}) {
        EXPECT_EQ(answer({.message = message::command, .id = id, .code = code}), std::nullopt);
    }
    for (const auto& [id, code] : {std::pair{1002, 0}, {1003, 0}, {2030, 0}, {2071, 0x300}}) {
        EXPECT_EQ(answer({.message = message::command, .id = id, .code = code}), 0) << id;
    }
}

TEST_F(MainDlg, ADraggedKnotRedrawsWhileItMovesAndDesignsWhenItIsLetGo) {
    setGolden(tests::GoldenCases()[0]);
    start();
    const auto before = words();
    const TargetRecord record = run().curves[0];
    host.take();
    CCurveGraphWindow& plot = dialog->plot;
    plot.OnLeftButtonDown(onPlot(1300, 0));
    plot.OnMouseMove(onPlot(1700, -6));
    EXPECT_EQ(words(), before);
    EXPECT_NEAR(run().curves[0].points[3].frequency, 1700, 10);  // a pixel is 1 %
    EXPECT_EQ(run().curves[0].points[3].level, -6);
    host.deliver();
    EXPECT_EQ(control(2050).text,
              "(" + std::to_string(run().curves[0].points[3].frequency) + " Hz, -6 dB)");
    plot.OnLeftButtonUp();
    host.deliver();
    EXPECT_NE(words(), before);
    EXPECT_EQ(values.TargetCurveKind, savedCurve);
    EXPECT_EQ(control(2050).text, "");
    EXPECT_THAT(host.take(), ElementsAre("mouse captured", "mouse free"));

    const auto after = words();
    host.press(controls::undo);
    EXPECT_EQ(run().curves[0], record);
    EXPECT_EQ(values.TargetCurveKind, userCurve);
    EXPECT_EQ(words(), before);
    EXPECT_EQ(plot.record, record);
    host.press(controls::undo);
    host.press(controls::redo);
    EXPECT_EQ(words(), after);
    EXPECT_EQ(values.TargetCurveKind, savedCurve);
    host.press(2026);
    EXPECT_EQ(run().curves[0], values.DefaultTargetCurve);
    host.press(controls::redo);
    EXPECT_EQ(run().curves[0], record);
    host.press(controls::undo);
    EXPECT_EQ(words(), after);
}

TEST_F(MainDlg, UndoGoesBackToTheCurveThatWasEdited) {
    start();
    host.drag(onPlot(1250, 0), onPlot(1250, 5));
    host.choose(2020, 4);
    EXPECT_EQ(dialog->plot.record, BuiltInTargetCurve);
    host.press(controls::undo);
    EXPECT_EQ(control(2020).selected, 0);
    EXPECT_EQ(run().currentCurve, 0);
    EXPECT_EQ(run().curves[0], BuiltInTargetCurve);
    EXPECT_EQ(run().curves[4], BuiltInTargetCurve);
}

TEST_F(MainDlg, GainClampAndCurveDesignAnewAndRedrawTheirResponse) {
    setGolden(tests::GoldenCases()[0]);
    start();
    const auto atSix = words();
    host.choose(2021, 3);
    EXPECT_EQ(run().gainClampDb(), -3.0);
    const auto atThree = words();
    EXPECT_NE(atThree, atSix);
    host.drag(onPlot(1300, 0), onPlot(1300, -8));
    const auto edited = words();
    host.choose(2020, 1);
    EXPECT_EQ(run().currentCurve, 1);
    EXPECT_EQ(words(), atThree);
    host.choose(2020, 0);
    EXPECT_EQ(words(), edited);
    host.press(8);
    EXPECT_THAT(tests::Contents(folder / "target.txt"), testing::StartsWith("-savedcurve\n-3\n"));
}

TEST_F(MainDlg, AnotherInputRateReadsTheCommandLinesResponseAgain) {
    setGolden(tests::GoldenCases()[2]);
    start();
    const auto before = words();
    host.choose(3001, 1);
    EXPECT_EQ(values.InputSampleRate, 44100);
    EXPECT_EQ(run().measurement.sampleRate, 44100);
    EXPECT_NE(words(), before);
    EXPECT_THAT(control(2040).items, ElementsAre("48000 Hz"));

    host.choose(3001, 2);  // with the target still on the grid of 44100 Hz
    host.choose(3001, 2);
    EXPECT_EQ(words(), before);

    values.ResponseFilePath.clear();
    host.choose(3001, 4);
    EXPECT_EQ(values.SampleRateTable[0], 96000);
    EXPECT_EQ(run().designRate, 96000);
    EXPECT_EQ(run().measurement.sampleRate, 48000);
    EXPECT_EQ(words(), before);
}

TEST_F(MainDlg, TheCurveBoxesRedrawExceptTheLast) {
    start();
    for (int id = 2030; id <= 2036; ++id) {
        host.redraws = 0;
        host.click(id);
        EXPECT_EQ(host.redraws, 1) << id;
    }
    EXPECT_FALSE(dialog->plot.showKnots);
    EXPECT_TRUE(dialog->plot.showBandEdges);
    control(2032).check = 2;  // the curve without its knots
    host.press(2032);
    EXPECT_FALSE(dialog->plot.showKnots);
    host.redraws = 0;
    host.click(2037);
    EXPECT_EQ(host.redraws, 0);
    host.choose(2040, 0);
    EXPECT_EQ(host.redraws, 1);
}

TEST_F(MainDlg, ParameterFilesCarryAllCurvesAndTheGainIntoADesign) {
    setGolden(tests::GoldenCases()[0]);
    start();
    host.choose(2020, 7);
    host.drag(onPlot(1300, 0), onPlot(1300, 5));
    host.choose(2021, 4);
    const auto curves = run().curves;
    const auto saved = words();
    host.chosenFiles = {folder / "parameters.txt"};
    host.take();
    host.press(2025);
    EXPECT_THAT(host.take(), ElementsAre("save Design Parameters (*.txt) *.txt txt"));
    host.press(2026);
    host.choose(2020, 0);
    host.choose(2021, 0);
    host.press(2024);  // cancelled
    EXPECT_EQ(control(2020).selected, 0);
    EXPECT_NE(words(), saved);
    host.chosenFiles = {folder / "parameters.txt"};
    host.press(2024);
    EXPECT_EQ(words(), saved);
    EXPECT_EQ(control(2020).selected, 7);
    EXPECT_EQ(control(2021).selected, 4);
    EXPECT_EQ(run().curves, curves);
    EXPECT_EQ(dialog->plot.record, curves[7]);
    EXPECT_EQ(run().gainClampDb(), -4.0);

    host.chosenFiles = {folder.write("other.txt", "[Global]\nTargetCurveIndex=12\nEqAttn=13\n")};
    host.press(2024);
    EXPECT_EQ(control(2020).selected, 9);
    EXPECT_EQ(control(2021).selected, -1);
    EXPECT_EQ(run().gainClampDb(), 1.0);
}

TEST_F(MainDlg, OpensAResponseThatAPersonChooses) {
    start();
    host.take();
    values.ResponseIsCsv = false;
    host.chosenFiles = {folder / "missing.qsr"};
    host.press(2001);
    EXPECT_THAT(host.take(), ElementsAre("open Quorrel Speaker response (*.qsr) *.qsr qsr",
                                         "focus 0", "Error: Failed to open speaker response file"));
    EXPECT_FALSE(run().responseReady);
    EXPECT_EQ(control(2050).text, "Analyzing Loaded Data ...");

    folder.copyGolden("small48.qsr", "OTHER.qsr");
    folder.write("other.qsr", "not the one that was chosen");
    host.chosenFiles = {folder / "OTHER.qsr"};
    host.press(2001);
    EXPECT_EQ(control(2010).cells[2], "148 smpl");
    EXPECT_EQ(control(2050).text, "");

    values.ResponseIsCsv = true;
    host.take();
    host.chosenFiles = {folder / "missing.csv"};
    host.press(2003);
    EXPECT_THAT(host.take(), Contains("Error: Failed to process data."));
    EXPECT_TRUE(run().responseReady);
    EXPECT_THAT(control(2010).cells, ElementsAre("LTop", "", "", "", ""));
}

TEST_F(MainDlg, AMeasurementThatCannotStartWaitsForStop) {
    start();
    host.take();
    const auto enabled = [&] {
        std::vector<bool> all;
        for (const int id : {2000, 2020, 2021, 2024, 2025, 2026}) {
            all.push_back(control(id).enabled);
        }
        return all;
    };
    host.press(2000);
    EXPECT_EQ(control(2050).text, "Preparing ...");
    EXPECT_THAT(enabled(), Each(false));
    host.press(1003);
    EXPECT_EQ(control(2050).text, "");
    EXPECT_THAT(enabled(), Each(true));
    EXPECT_THAT(host.take(), IsEmpty());
    EXPECT_FALSE(run().responseReady);
}

TEST_F(MainDlg, TheLinksControlsReachTheAmplifier) {
    tests::DeskAmplifier amplifier;
    linkPort = amplifier.port();
    setGolden(tests::GoldenCases()[0]);
    start();
    EXPECT_FALSE(control(2061).enabled);
    host.press(2060);
    EXPECT_TRUE(control(2061).enabled);
    EXPECT_THAT(amplifier.events(), ElementsAre("01 1B 01 80", "00 00 01"));

    host.type(2071, "29");
    EXPECT_EQ(control(2072).text, "20");
    host.leave(2071);
    host.type(2074, "12345");
    host.type(2075, "xyz");
    EXPECT_EQ(control(2075).text, "00000000");
    host.press(2079);
    EXPECT_EQ(amplifier.events().back(),
              "01 29 14 00 01 23 45 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    host.click(2082);
    EXPECT_TRUE(run().amplifier.biqEnabled);
    host.click(2083);
    host.click(2085);
    EXPECT_EQ(amplifier.events()[amplifier.events().size() - 6].substr(0, 20),
              "01 46 04 00 02 00 22");
    host.type(2098, "9");
    host.leave(2098);
    EXPECT_THAT(host.take(), testing::IsSupersetOf(
                                 {": Illegal input (not a number or out of range)", "focus 2098"}));
    EXPECT_EQ(control(2098).text, "300");
    host.chosenFiles = {folder / "dump.dat"};
    host.press(2070);
    EXPECT_EQ(std::ranges::count(tests::Contents(folder / "dump.dat"), '\n'), 120);
    EXPECT_THAT(tests::Contents(folder / "dump.dat"), HasSubstr("\n46\t00020022\n"));
}

TEST_F(MainDlg, ADesignGoesOutAsUnityUntilBiqIsOnAndEmptyWithoutAValidResponse) {
    tests::DeskAmplifier amplifier;
    linkPort = amplifier.port();
    values.ResponseIsCsv = false;
    start();
    host.press(2060);
    host.choose(2021, 6);  // no response yet: nothing is designed
    Lines expected{"01 1B 01 80", "00 00 01"};
    EXPECT_EQ(amplifier.events(), expected);
    const auto expectBracket = [&](const Lines& inside) {
        Lines frames = tests::Bracketed(inside);
        std::erase(frames, "wait 23");  // waits are the link's
        expected.insert(expected.end(), frames.begin(), frames.end());
        EXPECT_EQ(amplifier.events(), expected);
    };
    host.chosenFiles = {tests::GoldenPath("small48.qsr")};
    host.press(2001);
    expectBracket(tests::UnityFrames(0x29, 0x2F));
    host.click(2082);
    host.choose(2021, 2);
    const auto designed = words();
    expected = amplifier.events();
    values.ResponseIsCsv = true;
    host.chosenFiles = {folder / "missing.csv"};
    host.press(2003);
    expectBracket({});
    amplifier.stop();
    EXPECT_THAT(amplifier.remarks(), IsEmpty());
    EXPECT_FALSE(amplifier.amplifier.registers.isShutDown());
    for (int32_t k = 0; k < 7; ++k) {
        EXPECT_THAT(amplifier.amplifier.registers.words(0x29 + k),
                    testing::ElementsAreArray(std::span(designed).subspan(5 * k, 5)));
        EXPECT_THAT(amplifier.amplifier.registers.words(0x30 + k),
                    ElementsAre(0x800000, 0, 0, 0, 0));
    }
}

}  // namespace
}  // namespace tonvane

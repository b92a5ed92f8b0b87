// The dialog at work: targets, rates, curves, parameters and responses as a person changes them.
#include <filesystem>
#include <functional>
#include <numeric>

#include "tuning/RecordingMessages.h"
#include "ui/DialogDesk.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using namespace controls;

using TargetDlg = tests::DialogDesk;

TEST_F(TargetDlg, ADraggedKnotRedrawsWhileItMovesAndDesignsWhenItIsLetGo) {
    setGolden(0);
    start();
    const auto before = words();
    const CurvePoint& knot = run().curves[0].points[3];
    host.take();
    CCurveGraphWindow& plot = dialog->plot;
    plot.OnLeftButtonDown(onPlot(1300, 0));
    plot.OnMouseMove(onPlot(1700, -6), true);
    host.deliver();
    EXPECT_EQ(words(), before);
    EXPECT_NEAR(knot.frequency, 1700, 10);  // a pixel is 1 %
    EXPECT_EQ(knot.level, -6);
    EXPECT_EQ(control(status1).text, "(" + std::to_string(knot.frequency) + " Hz, -6 dB)");
    plot.OnLeftButtonUp();
    host.deliver();
    const auto after = words();
    EXPECT_NE(after, before);
    EXPECT_EQ(control(status1).text, "");
    EXPECT_EQ(host.posts, 2);
    EXPECT_THAT(host.take(), ElementsAre("mouse captured", "mouse free"));

    const std::pair<int, bool> steps[] = {{undo, false}, {undo, false}, {redo, true}, {redo, true}};
    for (const auto& [step, isEdited] : steps) {  // the second has nothing more
        host.press(step);
        EXPECT_EQ(plot.record, run().curves[0]);
        EXPECT_EQ(plot.record != values.DefaultTargetCurve, isEdited);
        EXPECT_EQ(values.TargetCurveKind, isEdited ? savedCurve : userCurve);
        EXPECT_EQ(words(), isEdited ? after : before);
    }
    host.press(reset);
    EXPECT_EQ(run().curves[0], values.DefaultTargetCurve);
}

class LiveDlg : public tests::DialogDesk {
  protected:
    LiveDlg() {
        setGolden(0);
        values.fitMethod = FitMethod::refined;
        values.followsMouse = true;
        start();
        host.press(connect);
        host.click(biq);
        host.controls[liveAmplifier] = {};
        link.take();
    }
    void onGain(int code, int gain) {
        host.send({.message = message::command, .id = gainClamp, .code = code, .lParam = gain});
    }
    // Checks that the filter follows moves, and that what their end leaves and sends is a design.
    void follow(const std::function<void()>& moves, const std::function<void()>& end) {
        const auto before = levels(run());
        host.redraws = 0;
        moves();
        EXPECT_EQ(host.redraws, 0);
        host.deliver();
        EXPECT_EQ(host.redraws, 1);
        EXPECT_THAT(link.take(), testing::IsEmpty());
        const auto moving = levels(run());
        moves();  // a step is due when it ends
        end();
        host.deliver();
        ProgramValues fresh = values;
        fresh.DefaultTargetCurve = run().curves[0];
        fresh.InitialGainClamp = run().gainIndex;
        tests::RecordingMessages messages;
        const auto design = std::make_unique<TuningRun>(fresh, messages);
        design->InitTuningState();
        EXPECT_THAT(words(), testing::ElementsAreArray(design->fittedWords()));
        EXPECT_EQ(link.take(), tests::Bracketed(tests::SectionFrames(0x29, words())));
        const auto designed = levels(*design);
        EXPECT_LT(farthest(moving, designed), 0.25 * farthest(before, designed));
    }
    static std::vector<double> levels(const TuningRun& of) {
        std::vector<double> levels;
        for (size_t bin = 10; bin < 850; ++bin) {
            levels.push_back(20.0 * std::log10(std::abs(of.fittedCurve()[bin])));
        }
        return levels;
    }
    static double farthest(const std::vector<double>& a, const std::vector<double>& b) {
        return std::transform_reduce(
            a.begin(), a.end(), b.begin(), 0.0, [](double x, double y) { return std::max(x, y); },
            [](double x, double y) { return std::abs(x - y); });
    }
};

TEST_F(LiveDlg, TheFilterFollowsTheMouseAndWhatThatLeavesIsADesign) {
    const auto drag = [&](Point from, Point to) {
        follow(
            [&] {
                dialog->plot.OnLeftButtonDown(from);
                dialog->plot.OnMouseMove(onPlot(1300, 8), true);
                dialog->plot.OnMouseMove(to, true);
            },
            [&] { dialog->plot.OnLeftButtonUp(); });
    };
    drag(onPlot(1300, 0), onPlot(1700, -8));
    host.click(showWeight);
    drag(onPlot(16000, -3), onPlot(6000, -3));
    const auto hoverTo = [&](int gain) {
        return [this, gain] {
            onGain(notifications::hover, 9);
            onGain(notifications::hover, gain);
        };
    };
    follow(hoverTo(3), [&] { host.choose(gainClamp, 3); });
    const auto chosen = words();
    hoverTo(12)();
    host.deliver();
    EXPECT_NE(words(), chosen);
    onGain(notifications::closeUp, 0);
    EXPECT_EQ(words(), chosen);
}

TEST_F(LiveDlg, TheAmplifierFollowsAtMostTenTimesASecondWhenThatIsSwitchedOn) {
    host.click(liveAmplifier);
    dialog->plot.OnLeftButtonDown(onPlot(1300, 0));
    size_t times = 0;
    const auto isProgrammed = [&] {
        const auto frames = link.take();
        EXPECT_TRUE(frames.empty() ||
                    frames == tests::Bracketed(tests::SectionFrames(0x29, words())));
        return !frames.empty();
    };
    for (int i = 0; i < 50; ++i, host.time += std::chrono::milliseconds(20)) {
        dialog->plot.OnMouseMove(onPlot(1700, -i / 5), true);
        host.deliver();
        times += isProgrammed() ? 1 : 0;
    }
    EXPECT_EQ(times, 10U);
    for (const bool isThere : {true, false}) {  // the last move, when there is time
        EXPECT_EQ(host.timerMs > 0, isThere);
        host.tell({.message = message::timer, .id = LiveDesign::timer});
        EXPECT_EQ(isProgrammed(), isThere);
    }
}

TEST_F(TargetDlg, UndoGoesBackToTheCurveThatWasEdited) {
    start();
    const auto edit = [&](int index) {
        host.choose(curve, index);
        EXPECT_EQ(dialog->plot.record, BuiltInTargetCurve);
        host.drag(onPlot(1250, 0), onPlot(1250, 5));
    };
    const auto edited = [&](int index) { return run().curves[index] != BuiltInTargetCurve; };
    edit(0);
    edit(4);
    host.press(undo);
    EXPECT_EQ(std::pair(edited(0), edited(4)), std::pair(true, false));
    host.press(undo);
    EXPECT_EQ(std::pair(control(curve).selected, run().currentCurve), std::pair(0, 0));
    EXPECT_FALSE(edited(0));
    edit(0);
    host.press(redo);  // a new change has taken away what could be done again
    EXPECT_FALSE(edited(4));
}

TEST(TargetHistory, KeepsTheNewestSteps) {
    TargetHistory history;
    for (int32_t i = 1; i <= 250; ++i) {
        history.edited({.curve = i});
    }
    std::optional<TargetState> oldest;
    for (auto state = history.undo(); state; state = history.undo()) {
        oldest = state;
    }
    EXPECT_EQ(oldest->curve, 50);
}

TEST_F(TargetDlg, GainClampAndCurveDesignAnew) {
    setGolden(0);
    start();
    host.choose(gainClamp, 3);
    EXPECT_EQ(run().gainClampDb(), -3.0);
    const auto atThree = words();
    host.drag(onPlot(1300, 0), onPlot(1300, -8));
    const auto edited = words();
    EXPECT_NE(edited, atThree);
    host.choose(curve, 1);
    EXPECT_EQ(words(), atThree);
    host.choose(curve, 0);
    EXPECT_EQ(words(), edited);
    host.press(controls::close);
    EXPECT_THAT(tests::Contents(folder / "target.txt"), testing::StartsWith("-savedcurve\n-3\n"));
}

TEST_F(TargetDlg, AnotherInputRateReadsTheCommandLinesResponseAgain) {
    setGolden(2);
    start();
    const auto before = words();
    host.choose(inputRate, 1);
    EXPECT_EQ(std::pair(values.InputSampleRate, run().measurement.sampleRate),
              std::pair(44100, 44100));
    EXPECT_NE(words(), before);
    EXPECT_THAT(control(filterRate).items, ElementsAre("48000 Hz"));
    host.choose(inputRate, 2);  // with the target still on the grid of 44100 Hz
    host.choose(inputRate, 2);
    EXPECT_EQ(words(), before);

    values.ResponseFilePath.clear();
    host.choose(inputRate, 4);
    EXPECT_EQ(std::pair(run().designRate, run().measurement.sampleRate), std::pair(96000, 48000));
    EXPECT_EQ(words(), before);
}

TEST_F(TargetDlg, TheCurveBoxesRedrawExceptTheLast) {
    start();
    for (int id = showFirst; id <= showLast; ++id) {
        host.redraws = 0;
        host.click(id);
        EXPECT_EQ(host.redraws, id == showLast ? 0 : 1) << id;
    }
    EXPECT_FALSE(dialog->plot.showKnots);
    EXPECT_TRUE(dialog->plot.showBandEdges);
    host.choose(filterRate, 0);
    EXPECT_EQ(host.redraws, 1);
}

TEST_F(TargetDlg, ParameterFilesCarryAllCurvesAndTheGainIntoADesign) {
    setGolden(0);
    start();
    host.choose(curve, 7);
    host.drag(onPlot(1300, 0), onPlot(1300, 5));
    host.choose(gainClamp, 4);
    const auto curves = run().curves;
    const auto saved = words();
    host.take();
    host.chosenFiles = {folder / "parameters.txt"};
    host.press(saveParameters);
    EXPECT_THAT(host.take(), ElementsAre("save Design Parameters (*.txt) *.txt txt"));
    host.press(reset);
    host.choose(gainClamp, 0);
    host.press(loadParameters);  // cancelled
    EXPECT_NE(words(), saved);
    host.chosenFiles = {folder / "parameters.txt"};
    host.press(loadParameters);
    EXPECT_EQ(words(), saved);
    EXPECT_EQ(std::pair(control(curve).selected, control(gainClamp).selected), std::pair(7, 4));
    EXPECT_EQ(dialog->plot.record, curves[7]);
    host.press(undo);  // what was loaded cannot be taken back
    host.press(undo);
    EXPECT_EQ(run().curves, curves);

    host.chosenFiles = {folder.write("other.txt", "[Global]\nTargetCurveIndex=12\nEqAttn=13\n")};
    host.press(loadParameters);
    EXPECT_EQ(std::pair(control(curve).selected, control(gainClamp).selected), std::pair(9, -1));
}

TEST_F(TargetDlg, OpensAResponseThatAPersonChooses) {
    start();
    host.take();
    values.ResponseIsCsv = false;
    host.chosenFiles = {folder / "missing.qsr"};
    host.press(openResponse);
    EXPECT_THAT(host.take(), ElementsAre("open Quorrel Speaker response (*.qsr) *.qsr qsr",
                                         "focus 0", "Error: Failed to open speaker response file"));
    EXPECT_FALSE(run().responseReady);
    EXPECT_EQ(control(status1).text, "Analyzing Loaded Data ...");

    folder.copyGolden("small48.qsr", "OTHER.qsr");
    folder.write("other.qsr", "not the one that was chosen");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    host.chosenFiles = {"OTHER.qsr"};
    host.press(openResponse);
    std::filesystem::current_path(before);
    // 10 log10 0.33428 is -4.76.
    EXPECT_THAT(control(results).cells,
                ElementsAre("LTop", "Pos", "148 smpl", "-4.8 dB", "175 Hz"));
    EXPECT_EQ(control(status1).text, "");
    EXPECT_EQ(host.posts, 0);

    host.take();
    host.chosenFiles = {folder / "missing.csv"};
    host.press(openTable);
    EXPECT_THAT(host.take(), ElementsAre("open CSV (Comma delimited) (*.csv) *.csv csv", "focus 0",
                                         "Error: Failed to process data.", "focus 0"));
    EXPECT_TRUE(run().responseReady);
    EXPECT_THAT(control(results).cells, ElementsAre("LTop", "", "", "", ""));
}

TEST_F(TargetDlg, AMeasurementThatCannotStartWaitsForStop) {
    start();
    const auto usedForEdits = [&] {
        return usable(curve, reset).size() + usable(measure, measure).size();
    };
    EXPECT_EQ(usedForEdits(), 6U);
    host.press(measure);
    EXPECT_EQ(control(status1).text, "Preparing ...");
    EXPECT_EQ(usedForEdits(), 0U);
    EXPECT_EQ(host.posts, 0);
    host.press(controls::stop);
    EXPECT_EQ(control(status1).text, "");
    EXPECT_EQ(usedForEdits(), 6U);
    EXPECT_EQ(host.posts, 2);
    EXPECT_FALSE(run().responseReady);
}

}  // namespace
}  // namespace tonvane

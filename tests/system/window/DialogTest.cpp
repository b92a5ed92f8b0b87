// tonvane in a real window, with a real mouse and keyboard.
#include "app/CommandLine.h"
#include "app/ConsoleMessages.h"
#include "files/TargetFile.h"
#include "system/window/DialogEnding.h"
#include "system/window/WindowDesk.h"
#include "transform/FftTables.h"
#include "tuning/TuningRun.h"

namespace tonvane {
namespace {

using testing::Gt;
using testing::HasSubstr;
using testing::StartsWith;
using tests::Contents;
using tests::ScreenPoint;

// The dialog has two pixels a dialog unit, along both sides.
constexpr ScreenPoint unit(int x, int y) {
    return {2 * x, 2 * y};
}
constexpr ScreenPoint closeButton = unit(482, 168);
constexpr ScreenPoint gainClamp = unit(359, 168);
constexpr ScreenPoint inputRate = unit(421, 168);
constexpr ScreenPoint plotCorner = unit(4, 4);
constexpr ScreenPoint plotSize = unit(500, 144);

// Where a frequency and a level lie on the plot: 56, 16, 8 and 24 pixels of margin; 20 Hz to 24 kHz
// and 10 to -40 dB.
ScreenPoint onPlot(double hertz, double decibels) {
    const double x = std::log10(hertz / 20.0) / std::log10(1200.0) * (plotSize.x - 72);
    const double y = (10.0 - decibels) / 50.0 * (plotSize.y - 32);
    return {plotCorner.x + 56 + static_cast<int>(std::lround(x)),
            plotCorner.y + 8 + static_cast<int>(std::lround(y))};
}

class Dialog : public tests::WindowDesk {
  protected:
    void startBatch(const std::string& response, const std::vector<std::string>& prompt) {
        kind = response.ends_with("qsr") ? "qsr" : "csv";
        name = folder.copyGolden(response, "response." + kind);
        folder.copyGolden("tilt6.txt", "target.txt");
        std::vector<std::string> arguments{"-cmd", "48000",      "response." + kind,
                                           kind,   "filter.txt", "target.txt"};
        arguments.insert(arguments.end(), prompt.begin(), prompt.end());
        start(TONVANE, arguments);
    }

    // What the command line program designs from the files of the folder.
    std::string filterWithoutWindow(const std::string& rate, const std::string& target) {
        tests::RunProgram(
            {"-cmd", rate, "response." + kind, kind, "other.txt", target, "-noprompt"},
            {.folder = folder.path()});
        return Contents(folder / "other.txt");
    }

    TargetSettings target() {
        TargetSettings settings;
        LoadTargetFile(folder / "target.txt", settings);
        return settings;
    }

    std::string kind;
    std::string name;
};

TEST_F(Dialog, ShowsTheCurvesOfABatchStartAndWritesThemOnClose) {
    startBatch("small48.qsr", {"-noprompt"});
    const ScreenPoint corner = screen.cornerOf(window);
    const ScreenPoint plot{corner.x + plotCorner.x, corner.y + plotCorner.y};
    const auto shows = [&] {
        const auto picture = screen.picture();
        const auto has = [&](uint32_t color) { return picture.count(color, plot, plotSize) > 800; };
        return has(0x8F00FF) && has(0x0000FF) && has(0xFF0000) && has(0xEEE9BF);
    };
    EXPECT_TRUE(tests::Await(shows));
    EXPECT_EQ(Contents(folder / "filter.txt"), "no file");
    screen.click(window, closeButton);
    EXPECT_EQ(program->exitCode(), 0);
    const std::string written = Contents(folder / "filter.txt");
    EXPECT_EQ(written, filterWithoutWindow("48000", "target.txt"));
    EXPECT_EQ(Contents(folder / "target.txt"),
              Contents(tests::GoldenPath("small48-tilt6.target.txt")));
    EXPECT_EQ(Contents(folder / "printed"), "");
}

TEST_F(Dialog, ADraggedKnotChangesTargetAndFilterAsTheDragSays) {
    startBatch("small48.qsr", {"-noprompt"});
    const TargetSettings before = target();
    screen.drag(window, onPlot(1300, 0), onPlot(1700, -6));
    screen.click(window, closeButton);
    ASSERT_EQ(program->exitCode(), 0);
    const TargetSettings after = target();
    EXPECT_EQ(after.kind, savedCurve);
    EXPECT_EQ(after.gainClampDb, -6);
    TargetRecord expected = before.curve;
    expected.points[3] = after.curve.points[3];
    EXPECT_EQ(after.curve, expected);
    EXPECT_NEAR(after.curve.points[3].frequency, 1700, 14);  // one pixel
    EXPECT_NEAR(after.curve.points[3].level, -6, 1);
    const std::string written = Contents(folder / "filter.txt");
    EXPECT_EQ(written, filterWithoutWindow("48000", "target.txt"));
    EXPECT_NE(written, Contents(tests::GoldenPath("small48-tilt6.filter.txt")));
}

TEST_F(Dialog, KnotsStopAtTheirNeighboursAndUndoTakesThemBack) {
    startBatch("small48.qsr", {"-noprompt"});
    const TargetSettings before = target();
    screen.drag(window, onPlot(1300, 0), onPlot(9000, 0));
    screen.drag(window, onPlot(220, 2), onPlot(220, 5));
    screen.key({"ctrl+z"});
    screen.click(window, closeButton);
    ASSERT_EQ(program->exitCode(), 0);
    TargetRecord expected = before.curve;
    expected.points[3].frequency = 2678;  // 3000 / 1.12
    EXPECT_EQ(target().curve, expected);
}

// The same steps on a run without a window: a change of the rate leaves its traces in a run.
TEST_F(Dialog, GainClampAndInputRateAreThoseOfTheLists) {
    startBatch("logspaced.csv", {"-noprompt"});
    screen.click(window, inputRate);
    screen.key({"Up", "Return"});
    screen.click(window, gainClamp);
    screen.key({"Down", "Down", "Return"});
    screen.click(window, closeButton);
    ASSERT_EQ(program->exitCode(), 0);
    EXPECT_EQ(target().gainClampDb, -8);

    InitFftTables(responseLength);
    ProgramValues values;
    ConsoleMessages messages;
    InterpretCommandLine(std::vector<std::string>{"-cmd", "48000", folder / "response.csv", "csv",
                                                  "", tests::GoldenPath("tilt6.txt")},
                         values, messages);
    TuningRun run(values, messages);
    run.InitTuningState();
    run.ChangeInputRate(2);
    run.gainIndex = 8;
    run.RunDesign();
    EXPECT_EQ(tests::ParseFilterFile(Contents(folder / "filter.txt")).words,
              run.iirFitter.coefficientWords);
}

class DialogEnding : public Dialog, public testing::WithParamInterface<tests::Ending> {};

TEST_P(DialogEnding, GivesItsExitCodeAndFiles) {
    const tests::Ending& ending = GetParam();
    startBatch("small48.qsr",
               ending.prompts ? std::vector<std::string>() : std::vector<std::string>{"-noprompt"});
    ASSERT_NO_FATAL_FAILURE(
        tests::LeaveBy(ending, screen, window, [&] { screen.click(window, closeButton); }));
    EXPECT_EQ(program->exitCode(), ending.exitCode);
    EXPECT_EQ(Contents(folder / "filter.txt") != "no file", ending.writes);
    EXPECT_EQ(target().kind == userCurve && target().curve.points[0].frequency == 90, true);
}

INSTANTIATE_TEST_SUITE_P(Of, DialogEnding, tests::EveryEnding(), tests::EndingName);

TEST_F(Dialog, APlainStartHasItsMenuOnTheKeyboard) {
    start(TONVANE, {});
    screen.key({"Menu"});
    EXPECT_NE(screen.awaitWindow("tonvane"), "");
    screen.key({"Escape"});
    EXPECT_TRUE(screen.awaitNoWindow("tonvane"));
    screen.key({"Escape"});
    EXPECT_EQ(program->exitCode(), 2);
}

TEST_F(Dialog, TellsOfFilesThatCannotBeReadAndComesUpAllTheSame) {
    folder.write("bad.txt", "no target");
    start(TONVANE, {"-cmd", "48000", "missing.qsr", "qsr", "f.txt", "bad.txt"}, "Error");
    const std::string first = window;
    screen.key({"Return"});  // the target
    ASSERT_NE(screen.awaitFocused("Error", first), "");
    screen.key({"Return"});  // the response
    window = screen.awaitFocused("Tonvane");
    ASSERT_NE(window, "");
    screen.click(window, closeButton);
    EXPECT_EQ(program->exitCode(), 0);
    EXPECT_EQ(Contents(folder / "f.txt"), "no file");
    EXPECT_EQ(Contents(folder / "bad.txt"), "no target");
}

}  // namespace
}  // namespace tonvane

// Tonvane.exe in a real window, with a real mouse and keyboard, and driven by a program outside.
#include <algorithm>

#include "app/CommandLine.h"
#include "app/ConsoleMessages.h"
#include "design/CascadeResponse.h"
#include "files/TargetFile.h"
#include "system/AmplifierProgram.h"
#include "system/window/DialogEnding.h"
#include "system/wine/WineDesk.h"
#include "transform/FftTables.h"
#include "tuning/TuningRun.h"
#include "ui/Controls.h"
#include "ui/DialogTemplate.h"
#include "ui/Pictures.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using tests::Contents;
using tests::ScreenPoint;
using Lines = std::vector<std::string>;

// Four dialog units across and eight down, in Tahoma 8 at 96 dots an inch.
constexpr int baseWidth = 6;
constexpr int baseHeight = 13;

ScreenPoint inPixels(int x, int y) {
    return {static_cast<int>(std::lround(x * baseWidth / 4.0)),
            static_cast<int>(std::lround(y * baseHeight / 8.0))};
}

const ScreenPoint plotCorner = inPixels(4, 4);
const ScreenPoint plotSize = inPixels(500, 144);
const ScreenPoint closeButton = inPixels(482, 168);
const ScreenPoint gainClamp = inPixels(359, 168);
const ScreenPoint inputRate = inPixels(421, 168);

// Where a frequency and a level lie on the plot: 56, 16, 8 and 24 pixels of margin; 20 Hz to 24 kHz
// and 10 to -40 dB.
ScreenPoint onPlot(double hertz, double decibels) {
    const double x = std::log10(hertz / 20.0) / std::log10(1200.0) * (plotSize.x - 72);
    const double y = (10.0 - decibels) / 50.0 * (plotSize.y - 32);
    return {plotCorner.x + 56 + static_cast<int>(std::lround(x)),
            plotCorner.y + 8 + static_cast<int>(std::lround(y))};
}

void append(std::string& bytes, uint32_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
    }
}

// A wave file of one channel of bytes, all at the level of silence.
std::string silence(uint32_t rate, uint32_t frames) {
    std::string bytes = "RIFF";
    append(bytes, 36 + frames, 4);
    bytes += "WAVEfmt ";
    append(bytes, 16, 4);
    append(bytes, 1, 2);
    append(bytes, 1, 2);
    append(bytes, rate, 4);
    append(bytes, rate, 4);
    append(bytes, 1, 2);
    append(bytes, 8, 2);
    bytes += "data";
    append(bytes, frames, 4);
    return bytes + std::string(frames, '\x80');
}

class Dialog : public tests::WineDesk {
  protected:
    void startBatch(const std::string& response, const Lines& prompt) {
        kind = response.ends_with("qsr") ? "qsr" : "csv";
        folder.copyGolden(response, "response." + kind);
        folder.copyGolden("tilt6.txt", "target.txt");
        Lines arguments{"-cmd", "48000", "response." + kind, kind, "filter.txt", "target.txt"};
        arguments.insert(arguments.end(), prompt.begin(), prompt.end());
        start(arguments);
        origin = corner();
    }
    void click(ScreenPoint at) { screen.click("", {origin.x + at.x, origin.y + at.y}); }
    void drag(ScreenPoint from, ScreenPoint to) {
        screen.drag("", {origin.x + from.x, origin.y + from.y}, {origin.x + to.x, origin.y + to.y});
    }

    // Expects the response of words where that of others has it, all at 48 kHz.
    static void expectResponse(const std::vector<int32_t>& words,
                               const std::vector<int32_t>& expected) {
        ASSERT_EQ(words.size(), 35U);
        std::vector<double> grid;
        for (double hertz = 20.0; hertz < 24000.0; hertz *= 1.02) {
            grid.push_back(hertz);
        }
        EXPECT_THAT(CascadeResponseDb(words, grid, 48000),
                    testing::Pointwise(testing::DoubleNear(0.02),
                                       CascadeResponseDb(expected, grid, 48000)));
    }

    // The words that the command line program designs from the files of the folder.
    std::vector<int32_t> wordsWithoutWindow() {
        tests::RunProgram({"-cmd", "48000", "response." + kind, kind, "other.txt", "target.txt"},
                          {.folder = folder.path()});
        return tests::ParseFilterFile(Contents(folder / "other.txt")).words;
    }
    std::vector<int32_t> writtenWords() {
        return tests::ParseFilterFile(Contents(folder / "filter.txt")).words;
    }

    TargetSettings target() {
        TargetSettings settings;
        LoadTargetFile(folder / "target.txt", settings);
        return settings;
    }

    std::string kind;
    ScreenPoint origin{};
};

TEST_F(Dialog, EveryControlHasItsIdAndPlaceAndNearlyAllAreHidden) {
    start({});
    const auto all = controls();
    for (const DialogItem& item : MainDialogTemplate.items) {
        const auto found = std::ranges::find_if(all, [&](const tests::WindowControl& c) {
            const ScreenPoint at = inPixels(item.place.x, item.place.y);
            return c.id == item.id && c.corner.x == at.x && c.corner.y == at.y;
        });
        ASSERT_NE(found, all.end()) << item.id;
        const bool isOpen = item.place.width > 0 && item.id != controls::plotPlace;
        EXPECT_EQ(found->isShown, isOpen) << item.id;
        if (isOpen) {
            EXPECT_EQ(found->size.x, inPixels(item.place.width, 0).x) << item.id;
        }
    }
}

TEST_F(Dialog, ShowsTheCurvesOfABatchStartAndWritesThemOnClose) {
    startBatch("small48.qsr", {"-noprompt"});
    const std::string picture =
        screen.png({origin.x + plotCorner.x, origin.y + plotCorner.y}, plotSize);
    tests::ExpectLikeReference(picture, "three.png", {56, 8, 735, 211}, 100, 60);
    EXPECT_EQ(Contents(folder / "filter.txt"), "no file");
    click(closeButton);
    EXPECT_EQ(program->exitCode(), 0);
    tests::ExpectGoldenResponse(writtenWords(), tests::GoldenCases()[0]);
    EXPECT_EQ(target().kind, userCurve);
}

TEST_F(Dialog, ADraggedKnotChangesTargetAndFilterAsTheDragSays) {
    startBatch("small48.qsr", {"-noprompt"});
    const TargetSettings before = target();
    drag(onPlot(1300, 0), onPlot(1700, -6));
    click(closeButton);
    ASSERT_EQ(program->exitCode(), 0);
    const TargetSettings after = target();
    EXPECT_EQ(after.kind, savedCurve);
    EXPECT_EQ(after.gainClampDb, -6);
    TargetRecord expected = before.curve;
    expected.points[3] = after.curve.points[3];
    EXPECT_EQ(after.curve, expected);
    EXPECT_NEAR(after.curve.points[3].frequency, 1700, 18);  // one pixel
    EXPECT_NEAR(after.curve.points[3].level, -6, 1);
    expectResponse(writtenWords(), wordsWithoutWindow());
}

// The same steps on a run without a window: a change of the rate leaves its traces in a run.
TEST_F(Dialog, GainClampAndInputRateAreThoseOfTheLists) {
    startBatch("logspaced.csv", {"-noprompt"});
    click(inputRate);
    screen.key({"Up", "Return"});
    click(gainClamp);
    screen.key({"Down", "Down", "Return"});
    click(closeButton);
    ASSERT_EQ(program->exitCode(), 0);
    EXPECT_EQ(target().gainClampDb, -8);

    InitFftTables(responseLength);
    ProgramValues values;
    ConsoleMessages messages;
    InterpretCommandLine(
        Lines{"-cmd", "48000", folder / "response.csv", "csv", "", tests::GoldenPath("tilt6.txt")},
        values, messages);
    TuningRun run(values, messages);
    run.InitTuningState();
    run.ChangeInputRate(2);
    run.gainIndex = 8;
    run.RunDesign();
    expectResponse(writtenWords(), run.iirFitter.coefficientWords);
}

class DialogEnding : public Dialog, public testing::WithParamInterface<tests::Ending> {};

TEST_P(DialogEnding, GivesItsExitCodeAndFiles) {
    const tests::Ending& ending = GetParam();
    startBatch("small48.qsr", ending.prompts ? Lines() : Lines{"-noprompt"});
    ASSERT_NO_FATAL_FAILURE(tests::LeaveBy(ending, screen, window, [&] { click(closeButton); }));
    EXPECT_EQ(program->exitCode(), ending.exitCode);
    EXPECT_EQ(Contents(folder / "filter.txt") != "no file", ending.writes);
    EXPECT_EQ(target().curve.points[0].frequency, 90);
}

INSTANTIATE_TEST_SUITE_P(Of, DialogEnding, tests::EveryEnding(), tests::EndingName);

// What a program outside does with the controls that nobody sees.
struct PanelStep {
    Lines words;   // for the probe
    Lines frames;  // that the amplifier gets for it, in this order, others between them
};

TEST_F(Dialog, APanelThatNobodySeesReachesTheAmplifier) {
    tests::AmplifierProgram amplifier;
    folder.copyGolden("small48.qsr", "r.qsr");
    start({"-cmd", "48000", "r.qsr", "qsr", "f.txt"}, "Tonvane",
          {{"TONVANE_LINK_PORT", amplifier.port()}});
    const std::string into = "write 05 System Control 2: 40";
    const std::string outOf = "write 05 System Control 2: 00";
    const PanelStep steps[] = {
        {{"send", "2060"}, {"write 1B Oscilator Trim: 80"}},
        {{"settext", "2071", "29"}, {}},
        {{"send", "2080"}, {"read 29 PEQ Coef L0: 20 bytes"}},
        {{"settext", "2074", "00123456"}, {}},
        {{"send", "2079"}, {"write 29 PEQ Coef L0: 00123456 "}},
        {{"send", "2081"}, {into, "write 07 Master Vol: FF", outOf}},
        {{"check", "2082", "1"}, {into, "write 2F", outOf}},
        {{"check", "2083", "1"}, {into, "write 5A", outOf}},
        {{"check", "2084", "1"}, {into, "write 46 DRC control: 00020021", outOf}},
        {{"settext", "2098", "1000"}, {}},
        {{"send", "2098", "512"}, {into, "write 58", outOf}},
    };
    for (const PanelStep& step : steps) {
        probe(step.words);
        const Lines sent = amplifier.frames();
        auto from = sent.begin();
        for (const std::string& frame : step.frames) {
            from = std::find_if(from, sent.end(), [&](const std::string& line) {
                return line.find(frame) != std::string::npos;
            });
            ASSERT_NE(from, sent.end()) << testing::PrintToString(step.words) << frame;
        }
    }
    EXPECT_EQ(probe({"text", "2073"}), "PEQ Coef L0\n");

    probe({"post", "2070"});
    ASSERT_NE(screen.awaitFocused("Open"), "");
    std::string path = "Z:" + folder.path() + "/dump";
    std::ranges::replace(path, '/', '\\');
    screen.type(path);
    screen.key({"Return"});
    const auto dump = [&] { return Contents(folder / "dump.dat"); };
    ASSERT_TRUE(tests::Await([&] { return std::ranges::count(dump(), '\n') == 120; }))
        << testing::PrintToString(folder.names());
    EXPECT_THAT(dump(), HasSubstr("\n46\t00020021"));
    probe({"send", "2061"});
    screen.key({"Escape"});
    EXPECT_EQ(program->exitCode(), 2);
}

TEST_F(Dialog, RecentFilesAreThoseOfTheRegistryNewestFirst) {
    const std::string key = R"(HKCU\Software\Halvern\Tonvane2\Recent File List)";
    const auto registry = [&](Lines words) {
        words.insert(words.begin() + 1, key);
        return tool("reg", words);
    };
    folder.write("short.wav", silence(8000, 8000));
    folder.write("long.wav", silence(8000, 10 * 8000 + 800));
    registry({"delete", "/f"});
    registry({"add", "/v", "FileCount", "/t", "REG_DWORD", "/d", "2", "/f"});
    registry({"add", "/v", "File0", "/d", "short.wav", "/f"});
    registry({"add", "/v", "File1", "/t", "REG_EXPAND_SZ", "/d", "long.wav", "/f"});
    start({});
    EXPECT_EQ(probe({"items", "1000"}), "* short.wav\nlong.wav\n");
    EXPECT_EQ(probe({"text", "1005"}), "00:00 / 00:01\n");
    probe({"choose", "1000", "1"});
    EXPECT_EQ(probe({"text", "1005"}), "00:00 / 00:11\n");  // 10.1 seconds
    probe({"slide", "1004", "21"});
    EXPECT_EQ(probe({"text", "1005"}), "00:05 / 00:11\n");
    probe({"post", "8"});
    ASSERT_EQ(program->exitCode(), 0);
    EXPECT_THAT(registry({"query", "/v", "File0"}), HasSubstr("long.wav"));
    EXPECT_THAT(registry({"query", "/v", "File1"}), HasSubstr("short.wav"));
    start({});
    EXPECT_EQ(probe({"items", "1000"}), "* long.wav\nshort.wav\n");
    registry({"delete", "/f"});
}

// By hand an entry of the menu may arrive as another message than from a program outside.
TEST_F(Dialog, ADeviceIsChosenFromTheSystemMenu) {
    const std::string key = R"(HKLM\Software\ASIO\Nobody)";
    const std::string clsid = "{5B1C8A10-0000-4000-8000-00000000A51A}";
    tool("reg", {"add", key, "/v", "clsid", "/d", clsid, "/f"});
    start({});
    const auto expectRefusal = [&](const char* how) {
        ASSERT_NE(screen.awaitFocused("Error"), "") << how;
        EXPECT_EQ(probe("Error", {"text", "65535"}), "Failed to load ASIO driver: Nobody\n");
        screen.key({"Return"});
        ASSERT_TRUE(screen.awaitNoWindow("Error"));
        ASSERT_NE(screen.awaitFocused("Tonvane"), "");
    };
    probe({"system", "61696", "32"});  // the menu of the Alt and the blank key
    screen.key({"Up", "Right", "Down", "Return"});
    expectRefusal("by hand");
    probe({"system", "201"});
    expectRefusal("by a message");
    probe({"system", "200"});
    probe({"post", "8"});
    EXPECT_EQ(program->exitCode(), 0);
    tool("reg", {"delete", key, "/f"});
}

TEST_F(Dialog, TellsOfFilesThatCannotBeReadAndComesUpAllTheSame) {
    folder.write("bad.txt", "no target");
    start({"-cmd", "48000", "missing.qsr", "qsr", "f.txt", "bad.txt"}, "Error");
    EXPECT_EQ(probe("Error", {"text", "65535"}),
              "Failed to load desired response data. File is missing.\n");
    const std::string first = window;
    screen.key({"Return"});
    ASSERT_NE(screen.awaitFocused("Error", first), "");
    EXPECT_EQ(probe("Error", {"text", "65535"}), "Failed to open speaker response file\n");
    screen.key({"Return"});
    ASSERT_NE(screen.awaitFocused("Tonvane"), "");
    probe({"post", "8"});
    EXPECT_EQ(program->exitCode(), 0);
    EXPECT_EQ(Contents(folder / "f.txt"), "no file");
    EXPECT_EQ(Contents(folder / "bad.txt"), "no target");
}

}  // namespace
}  // namespace tonvane

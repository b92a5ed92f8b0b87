// tonvane-lab in a real window: the controls that the dialog hides.
#include <cstring>

#include "files/TargetFile.h"
#include "system/AmplifierProgram.h"
#include "system/window/LabDesk.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using tests::Contents;
using tests::Lab;
using Lines = std::vector<std::string>;

TEST_F(Lab, ThePanelReachesTheAmplifier) {
    tests::AmplifierProgram amplifier;
    folder.copyGolden("small48.qsr", "r.qsr");
    startLab({"--port", amplifier.port(), "-cmd", "48000", "r.qsr", "qsr", "f.txt"});
    Lines frames;
    const auto sends = [&](const std::string& frame) {
        return tests::Await([&] {
            const Lines more = amplifier.frames();
            frames.insert(frames.end(), more.begin(), more.end());
            const auto found = std::ranges::find_if(
                frames, [&](const std::string& f) { return f.find(frame) != std::string::npos; });
            const bool hasCome = found != frames.end();
            frames.erase(frames.begin(), hasCome ? found + 1 : frames.end());
            return hasCome;
        });
    };
    const auto sendsInBracket = [&](const std::string& frame) {
        return sends("write 05 System Control 2: 40") && sends(frame) &&
               sends("write 05 System Control 2: 00");
    };
    click(2060);
    ASSERT_TRUE(sends("write 1B Oscilator Trim: 80"));
    type(2071, "29");
    click(2080);
    EXPECT_TRUE(sends("read 29 PEQ Coef L0: 20 bytes"));
    type(2074, "00123456");
    click(2079);
    EXPECT_TRUE(sends("write 29 PEQ Coef L0: 00123456 "));
    click(2081);
    EXPECT_TRUE(sendsInBracket("write 07 Master Vol: FF"));
    click(2082);
    EXPECT_TRUE(sendsInBracket("write 2F"));
    click(2083);
    EXPECT_TRUE(sendsInBracket("write 5A"));
    click(2084);
    EXPECT_TRUE(sendsInBracket("write 46 DRC control: 00020021"));
    type(2098, "1000");
    click(2090);
    EXPECT_TRUE(sendsInBracket("write 58"));
    type(2090, "99");
    click(2091);  // the value is refused, which is said in a box
    ASSERT_NE(screen.awaitFocused("tonvane"), "");
    screen.key({"Return"});
    ASSERT_EQ(screen.awaitFocused("Tonvane Lab"), window);
    click(2070);
    choose("Open", folder / "dump");
    const auto dump = [&] { return Contents(folder / "dump.dat"); };
    ASSERT_TRUE(tests::Await([&] { return std::ranges::count(dump(), '\n') == 120; }));
    EXPECT_THAT(dump(), HasSubstr("\n46\t00020021\n"));
    EXPECT_THAT(dump(), HasSubstr("\n40\t0040C371 0040C370\n"));  // still -30 dB
    click(2061);
    screen.key({"Escape"});
    EXPECT_EQ(program->exitCode(), 2);
}

TEST_F(Lab, MeasuresOnTheDeviceWithoutHardware) {
    startLab({});
    click(deviceButton);
    screen.key({"Up", "Return"});  // the last one
    click(2000);
    const std::string file = folder / "measured.qsr";
    ASSERT_TRUE(tests::Await([&] { return Contents(file).size() == 262148; }));
    const std::string contents = Contents(file);
    double onset = 0.0;
    double before = 0.0;
    std::memcpy(&before, contents.data() + 4 + 31 * sizeof before, sizeof before);
    std::memcpy(&onset, contents.data() + 4 + 32 * sizeof onset, sizeof onset);
    EXPECT_GT(onset, 0.9);  // a wire
    EXPECT_LT(std::abs(before), 0.1);
    click(8);
    EXPECT_EQ(program->exitCode(), 0);
}

TEST_F(Lab, WaveFilesThatWereOpenedAreThereAtTheNextStart) {
    folder.write("a.wav", "");
    folder.write("b.wav", "");
    startLab({});
    for (const char* name : {"a.wav", "b.wav"}) {
        click(openWave);
        choose("Open", folder / name);
    }
    click(8);
    ASSERT_EQ(program->exitCode(), 0);
    const std::string store = folder / "state/tonvane/recent-files";
    const std::string kept = Contents(store);
    EXPECT_EQ(kept, "[Recent File List]\nFile0=" + folder.path() +
                        "/b.wav\nFile1=" + folder.path() + "/a.wav\nFileCount=2\n");
    startLab({});
    click(1000);
    screen.key({"Down", "Return"});
    click(8);
    ASSERT_EQ(program->exitCode(), 0);
    EXPECT_THAT(Contents(store), HasSubstr("File0=" + folder.path() + "/a.wav\n"));
}

TEST_F(Lab, TheKeyboardMovesAKnotAndSavesThePlot) {
    folder.copyGolden("small48.qsr", "r.qsr");
    folder.copyGolden("tilt6.txt", "t.txt");
    startLab({"-cmd", "48000", "r.qsr", "qsr", "f.txt", "t.txt", "-noprompt"});
    screen.click(window, {60, 20});  // a corner of the plot without handles
    screen.key({"Page_Down", "Page_Down", "Up", "Up", "shift+Right"});
    screen.key({"ctrl+s"});
    choose("Save As", folder / "plot");
    EXPECT_TRUE(tests::Await([&] { return Contents(folder / "plot.png").starts_with("\x89PNG"); }));
    click(8);
    ASSERT_EQ(program->exitCode(), 0);
    TargetSettings settings;
    LoadTargetFile(folder / "t.txt", settings);
    EXPECT_EQ(settings.kind, savedCurve);
    EXPECT_EQ(settings.curve.points[2], (CurvePoint{501, 3}));  // 500 Hz, 1 dB before
}

}  // namespace
}  // namespace tonvane

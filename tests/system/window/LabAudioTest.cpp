// tonvane-lab with a real audio server: measuring, and playing a file that is dropped on it.
#include <cmath>

#include "device/AudioServers.h"
#include "device/menu/DeviceMenu.h"
#include "files/ResponseFile.h"
#include "system/window/LabDesk.h"

namespace tonvane {
namespace {

using tests::Contents;

class LabAudio : public tests::Lab {
  protected:
    void SetUp() override {
        Lab::SetUp();
        ASSERT_TRUE(server.isUp) << server.process.log();
        ASSERT_TRUE(speaker.isUp);
        startLab({});
        std::vector<std::string> keys;
        for (const DeviceEntry& device : ListDevices()) {
            keys.emplace_back("Down");
            if (device.name == "jack:speaker") {
                break;
            }
        }
        keys.emplace_back("Return");
        click(deviceButton);
        screen.key(keys);
    }

    tests::JackServer server;
    tests::JackSpeaker speaker;
};

TEST_F(LabAudio, MeasuresThroughJack) {
    click(2000);
    const std::string file = folder / "measured.qsr";
    ASSERT_TRUE(tests::Await([&] { return Contents(file).size() == 262148; }));
    const SpeakerResponse response = ReadCheckedResponseFile(file);
    EXPECT_EQ(response.rate, 48000);
    EXPECT_NEAR(response.samples[32], 1.0, 0.05);  // the speaker is a wire
    EXPECT_NEAR(response.samples[40], 0.0, 0.05);
}

TEST_F(LabAudio, PlaysPausesAndSeeksAFileThatIsDropped) {
    const std::string file = folder / "long.wav";
    tests::Process({.arguments = {"sox", "-n", "-r", "48000", "-c", "2", "-b", "16", file, "synth",
                                  "60", "sine", "100"}})
        .exitCode();
    const std::string noTime = look(1005);
    const std::string idle = look(1002);
    tests::Process source(
        {.arguments = {TONVANE_DRAG_SOURCE, file},
         .environment = {{"DISPLAY", screen.display()}, {"QT_QPA_PLATFORM", "xcb"}},
         .output = folder / "drags"});
    ASSERT_NE(screen.awaitWindow("Source"), "");
    const auto corner = screen.cornerOf(window);
    // A drop that comes before the window has said that it takes the file is none.
    const auto drags = [&] { return Contents(folder / "drags"); };
    for (int tries = 0; tries < 10 && drags() != "taken\n" && !drags().ends_with("\ntaken\n");
         ++tries) {
        const std::string before = drags();
        screen.drag("", {30, 30}, {corner.x + 300, corner.y + 300});
        ASSERT_TRUE(tests::Await([&] { return drags() != before; }));
        screen.moveTo("", {30, 30});
    }
    ASSERT_TRUE(tests::Await([&] { return look(1005) != noTime; }));
    const std::string start = look(1005);

    click(1002);
    EXPECT_TRUE(tests::Await([&] { return look(1005) != start; }));
    screen.moveTo(window, {300, 300});
    ASSERT_TRUE(tests::Await([&] { return look(1002) != idle; }));
    const std::string playing = look(1002);
    click(1002);
    ASSERT_TRUE(tests::Await([&] { return look(1002) != playing; }));

    const std::string paused = look(1005);
    const auto slider = middles.at(1004);
    const int left = slider.x - sizes.at(1004).x / 2;
    screen.click(window, {left + sizes.at(1004).x * 3 / 4, slider.y});
    EXPECT_TRUE(tests::Await([&] { return look(1005) != paused; }));
    click(1003);
    EXPECT_TRUE(tests::Await([&] { return look(1005) == start; }));
    click(8);
    EXPECT_EQ(program->exitCode(), 0);
    EXPECT_THAT(Contents(folder / "state/tonvane/recent-files"),
                testing::HasSubstr("File0=" + file + "\n"));
}

}  // namespace
}  // namespace tonvane

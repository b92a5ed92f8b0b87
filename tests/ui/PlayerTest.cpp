// The audio side of the dialog: player, recent files, devices, measurement.
#include "device/simulated/SimulatedWave.h"
#include "ui/DialogDesk.h"
#include "wavefile/WaveFile.h"

namespace tonvane {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using tests::Lines;

constexpr int32_t waveRate = 8000;

class Player : public tests::DialogDesk {
  protected:
    Player() { offer(0, {}); }
    void offer(int count, const SimulatedSetup& setup) {
        devices.clear();
        for (int i = 0; i <= count; ++i) {
            devices.push_back({200 + i, "Device " + std::to_string(i), [this, setup] {
                                   ++made;
                                   return std::make_unique<CSimulatedWave>(setup);
                               }});
        }
    }
    std::string wave(const std::string& name, double seconds) {
        CWaveFile file;  // of silence
        const auto frames = static_cast<int32_t>(std::lround(seconds * waveRate));
        EXPECT_TRUE(file.Create(folder / name, waveRate, 16, 1));
        file.Write(std::vector<double>(static_cast<size_t>(frames)).data(), frames);
        return folder / name;
    }
    void drop(const std::string& path) { host.tell({.message = message::dropFiles, .text = path}); }
    [[nodiscard]] const Lines& recent() { return control(1000).items; }
    [[nodiscard]] std::string time() { return control(1005).text; }

    int made = 0;
};

TEST_F(Player, ADroppedFileIsReadyToPlay) {
    start();
    EXPECT_FALSE(control(1004).enabled);
    drop(wave("ten.wav", 10.1));
    EXPECT_EQ(time(), "00:00 / 00:11");
    EXPECT_EQ(control(1004).range, 41);
    EXPECT_TRUE(control(1004).enabled);
    EXPECT_EQ(control(2050).text, "8000 Hz, 1 ch");

    drop(folder.write("text.wav", "no wave file"));
    EXPECT_EQ(time(), "--:-- / --:--");
    EXPECT_FALSE(control(1004).enabled);
    EXPECT_EQ(recent().size(), 2U);
    host.take();
    host.press(1002);
    EXPECT_THAT(host.take(), Contains(testing::StartsWith("Error: Failed to open")));
    EXPECT_EQ(host.timerMs, 0);
    EXPECT_EQ(control(1002).text, "|>");
}

TEST_F(Player, TheButtonPlaysPausesAndGoesOn) {
    SimulatedSetup setup;
    setup.stopsAfter = 60 * waveRate;  // holds the player in the middle of the file
    offer(2, setup);
    start();
    drop(wave("long.wav", 100));
    host.press(1002);
    EXPECT_EQ(control(1002).text, "||");
    EXPECT_EQ(host.timerMs, 125);
    EXPECT_FALSE(control(1000).enabled);
    EXPECT_THAT(host.disabledDevices, ElementsAre(200, 201, 202));
    EXPECT_FALSE(control(2000).enabled);
    host.press(1002);
    EXPECT_EQ(control(1002).text, "|>");
    EXPECT_TRUE(dialog->engine.paused);
    host.press(1002);
    EXPECT_EQ(control(1002).text, "||");

    control(1004).held = true;
    host.tell({.message = message::timer, .id = 1});
    EXPECT_EQ(time(), "00:00 / 01:40");
    control(1004).position = 150;
    host.tell({.message = message::sliderMoved, .id = 1004, .code = 5});
    EXPECT_EQ(time(), "00:37 / 01:40");
    EXPECT_EQ(dialog->engine.inputFile.seekRequested, 0);
    control(1004).held = false;
    host.tell({.message = message::sliderMoved, .id = 1004, .code = notifications::endTrack});
    EXPECT_EQ(dialog->engine.inputFile.seekTarget, 37.5 * waveRate);

    host.press(1003);
    EXPECT_EQ(control(1002).text, "|>");
    EXPECT_EQ(host.timerMs, 0);
    EXPECT_EQ(control(1004).position, 0);
    EXPECT_EQ(time(), "00:00 / 01:40");
    EXPECT_THAT(host.disabledDevices, IsEmpty());
    EXPECT_TRUE(control(2000).enabled);
}

TEST_F(Player, TheListOfRecentFilesOutlivesTheProgram) {
    start();
    Lines newestFirst;
    for (int i = 0; i < 21; ++i) {
        newestFirst.insert(newestFirst.begin(), folder / ("F" + std::to_string(i) + ".WAV"));
        drop(newestFirst.front());
    }
    newestFirst.pop_back();
    EXPECT_THAT(recent(), ElementsAreArray(newestFirst));
    const std::string lower = wave("f9.wav", 2);
    drop(lower);
    std::erase(newestFirst, folder / "F9.WAV");
    newestFirst.insert(newestFirst.begin(), lower);
    EXPECT_THAT(recent(), ElementsAreArray(newestFirst));
    host.press(8);

    host.renew();
    start();
    EXPECT_THAT(recent(), ElementsAreArray(newestFirst));
    EXPECT_EQ(control(1000).selected, 0);
    EXPECT_EQ(time(), "00:00 / 00:02");
    control(1000).selected = 3;
    host.press(1000, notifications::selectionChange);
    EXPECT_EQ(recent().front(), newestFirst[3]);
}

TEST_F(Player, AStoreOfAnyContentsGivesAListAndIsWrittenWithoutLeftovers) {
    std::string many = "[Recent File List]\nFileCount=30\n";
    for (int i = 0; i < 30; ++i) {
        many += "File" + std::to_string(i) + "=/f" + std::to_string(i) + "\n";
    }
    const auto paths = [&](const std::string& contents) {
        return ReadRecentFiles(FileUserStore(folder.write("store", contents)));
    };
    // 20 entries from the old end, as long as there are so many.
    EXPECT_THAT(paths(many), testing::AllOf(testing::SizeIs(20), testing::Contains("/f10"),
                                            testing::Contains("/f29")));
    EXPECT_THAT(paths("FileCount=2\nFile0=\nFile1=/a=b\nFile2=/c\n"), ElementsAre("/a=b"));
    EXPECT_THAT(paths("File0=/a\nFile15=/b\nFile16=/c\n"), ElementsAre("/a", "/b"));
    EXPECT_THAT(paths("FileCount=4000000000\nFile1=/a"), ElementsAre("/a"));
    EXPECT_THAT(paths("FileCount=1\nFile0=/" + std::string(259, 'x')), IsEmpty());
    EXPECT_THAT(paths("\xFF\n=\nFileCount=x"), IsEmpty());

    FileUserStore kept(folder.write("store", "FileCount=3\nFile0=/a\nFile1=/b\nFile2=/c\n"));
    WriteRecentFiles(kept, {"/d\n", "/e"});
    EXPECT_EQ(tests::Contents(folder / "store"), "[Recent File List]\nFile1=/e\nFileCount=2\n");
    FileUserStore nowhere("/proc/none/store");
    WriteRecentFiles(nowhere, {"/d"});
}

TEST_F(Player, TheMenuChoosesAmongItsFirstElevenDevices) {
    offer(12, {});
    start();
    EXPECT_EQ(host.devices.size(), 13U);
    EXPECT_EQ(host.markedDevice, 200);
    EXPECT_NE(dialog->engine.device, nullptr);
    EXPECT_EQ(host.tell({.message = message::systemCommand, .id = 210}), 0);
    EXPECT_EQ(host.markedDevice, 210);
    EXPECT_EQ(host.tell({.message = message::systemCommand, .id = 211}), std::nullopt);
    EXPECT_EQ(made, 2);

    devices[3].make = [] { return nullptr; };
    host.renew();
    start();
    host.take();
    host.tell({.message = message::systemCommand, .id = 203});
    EXPECT_THAT(host.take(), ElementsAre("Error: Failed to load audio device: Device 3"));
    EXPECT_EQ(dialog->engine.device, nullptr);
    host.press(8);
}

TEST_F(Player, AMeasurementThroughADeviceBecomesTheResponseAndItsFile) {
    SimulatedSetup setup;
    setup.impulse = {0.0, 0.0, 0.0, -0.5};
    offer(0, setup);
    values.ResponseIsCsv = false;
    start();
    host.press(2000);
    EXPECT_FALSE(control(2000).enabled);
    ASSERT_TRUE(host.await(message::captureDone));
    EXPECT_TRUE(control(2000).enabled);
    EXPECT_EQ(control(2050).text, "");
    EXPECT_EQ(control(2010).cells[1], "Neg");
    EXPECT_EQ(control(2010).cells[2], "3 smpl");
    EXPECT_EQ(tests::Contents(folder / "measured.qsr").size(), 262148U);
    const auto designed = words();
    EXPECT_THAT(host.take(), Contains("focus 0"));

    // A playback that ends changes nothing of it.
    drop(wave("short.wav", 0.5));
    host.press(1002);
    ASSERT_TRUE(host.await(message::captureDone));
    EXPECT_EQ(words(), designed);
    EXPECT_TRUE(control(2000).enabled);
    EXPECT_EQ(control(1002).text, "|>");
}

}  // namespace
}  // namespace tonvane

// The audio side of the dialog: player, recent files, devices, measurement.
#include "device/simulated/SimulatedWave.h"
#include "ui/DialogDesk.h"
#include "wavefile/WaveFile.h"

namespace tonvane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using tests::Lines;
using namespace controls;

constexpr int32_t waveRate = 8000;

class Player : public tests::DialogDesk {
  protected:
    Player() { offer(1, {}); }
    void offer(int count, const SimulatedSetup& setup) {
        devices.clear();
        for (int i = 0; i < count; ++i) {
            devices.push_back({deviceFirst + i, "Device " + std::to_string(i),
                               [setup] { return std::make_unique<CSimulatedWave>(setup); }});
        }
    }
    std::string wave(const std::string& name, double seconds) {
        CWaveFile file;  // of silence
        const auto frames = static_cast<size_t>(std::lround(seconds * waveRate));
        EXPECT_TRUE(file.Create(folder / name, waveRate, 16, 1));
        file.Write(std::vector<double>(frames));
        return folder / name;
    }
    void drop(const std::string& file) { host.tell({.message = message::dropFiles, .text = file}); }
    void moveSlider(int code) {
        host.tell({.message = message::sliderMoved, .id = position, .code = code});
    }
    std::optional<std::intptr_t> chooseDevice(int id) {
        return host.tell({.message = message::systemCommand, .id = id});
    }
    [[nodiscard]] const Lines& recent() { return control(path).items; }
    [[nodiscard]] std::string timeText() { return control(controls::time).text; }
};

TEST_F(Player, ADroppedFileIsReadyToPlay) {
    start();
    EXPECT_FALSE(control(position).enabled);
    drop(wave("ten.wav", 10.1));
    EXPECT_EQ(timeText(), "00:00 / 00:11");
    EXPECT_EQ(control(position).range, 41);
    EXPECT_TRUE(control(position).enabled);
    EXPECT_EQ(control(status1).text, "8000 Hz, 1 ch");

    drop(folder.write("text.wav", "no wave file"));
    EXPECT_EQ(timeText(), "--:-- / --:--");
    EXPECT_FALSE(control(position).enabled);
    EXPECT_THAT(recent(), SizeIs(2));
    host.take();
    host.press(play);
    EXPECT_THAT(host.take(), Contains(StartsWith("Error: Failed to open")));
    EXPECT_EQ(host.timerMs, 0);
    EXPECT_EQ(control(play).text, "|>");
}

TEST_F(Player, TheButtonPlaysPausesAndGoesOn) {
    SimulatedSetup setup;
    setup.stopsAfter = 60 * waveRate;  // holds the player in the middle of the file
    offer(3, setup);
    start();
    drop(wave("long.wav", 100));
    host.press(play);
    EXPECT_EQ(control(play).text, "||");
    EXPECT_EQ(host.timerMs, 125);
    EXPECT_FALSE(control(path).enabled);
    EXPECT_FALSE(control(measure).enabled);
    EXPECT_THAT(usable(200, 202), IsEmpty());
    host.timerMs = 0;
    host.press(play);
    EXPECT_EQ(control(play).text, "|>");
    EXPECT_TRUE(dialog->engine.paused);
    host.press(play);
    EXPECT_EQ(control(play).text, "||");
    EXPECT_EQ(host.timerMs, 0);                             // it runs already
    host.tell({.message = message::captureDone, .id = 1});  // stops nothing
    EXPECT_EQ(control(play).text, "||");

    control(position).held = true;
    host.tell({.message = message::timer, .id = 1});
    EXPECT_EQ(timeText(), "00:00 / 01:40");
    control(position).position = 150;
    moveSlider(notifications::endTrack - 3);
    EXPECT_EQ(timeText(), "00:37 / 01:40");
    EXPECT_EQ(dialog->engine.inputFile.seekRequested, 0);
    control(position).held = false;
    moveSlider(notifications::endTrack);
    EXPECT_EQ(dialog->engine.inputFile.seekTarget, 37.5 * waveRate);

    host.press(controls::stop);
    EXPECT_EQ(control(play).text, "|>");
    EXPECT_EQ(control(position).position, 0);
    EXPECT_EQ(timeText(), "00:00 / 01:40");
    EXPECT_THAT(usable(200, 202), SizeIs(3));
    EXPECT_TRUE(control(measure).enabled);
}

TEST_F(Player, TheListOfRecentFilesOutlivesTheProgram) {
    start();
    Lines newestFirst;
    for (int i = 0; i < 21; ++i) {
        newestFirst.insert(newestFirst.begin(), folder / ("F" + std::to_string(i) + ".WAV"));
        drop(newestFirst.front());
    }
    newestFirst.pop_back();
    EXPECT_EQ(recent(), newestFirst);
    const std::string lower = wave("f9.wav", 2);
    drop(lower);
    std::erase(newestFirst, folder / "F9.WAV");
    newestFirst.insert(newestFirst.begin(), lower);
    EXPECT_EQ(recent(), newestFirst);
    host.press(controls::close);

    start();
    EXPECT_EQ(recent(), newestFirst);
    EXPECT_EQ(control(path).selected, 0);
    EXPECT_EQ(timeText(), "00:00 / 00:02");
    host.choose(path, 3);
    EXPECT_EQ(recent().front(), newestFirst[3]);
}

TEST_F(Player, AStoreOfAnyContentsGivesAListAndIsWrittenWithoutLeftovers) {
    std::string many = "[Recent File List]\nFileCount=30\n";
    for (int i = 0; i < 30; ++i) {
        many += "File" + std::to_string(i) + "=/f" + std::to_string(i) + "\n";
    }
    const std::pair<std::string, testing::Matcher<Lines>> cases[] = {
        // 20 entries from the old end, as long as there are so many.
        {many, testing::AllOf(SizeIs(20), Contains("/f10"), Contains("/f29"))},
        {"File0=/a\nFile15=/b\nFile16=/c\n", ElementsAre("/a", "/b")},
        {"FileCount=4000000000\nFile1=/a", ElementsAre("/a")},
        {"FileCount=1\nFile0=/" + std::string(258, 'x'), SizeIs(1)},
        {"FileCount=1\nFile0=/" + std::string(259, 'x'), IsEmpty()},
        {"\xFF\n=\nFileCount=1x\nFile0=\nFile1=/a=b\n", ElementsAre("/a=b")},
    };
    for (const auto& [contents, paths] : cases) {
        EXPECT_THAT(ReadRecentFiles(FileUserStore(folder.write("store", contents))), paths);
    }
    FileUserStore kept(folder.write("store", "FileCount=3\nFile0=/a\nFile1=/b\nFile2=/c\n"));
    WriteRecentFiles(kept, {"/d\n", "/e"});
    EXPECT_EQ(tests::Contents(folder / "store"), "[Recent File List]\nFile1=/e\nFileCount=2\n");
    FileUserStore nowhere("/proc/none/store");
    WriteRecentFiles(nowhere, {"/d"});
}

TEST_F(Player, TheMenuChoosesAmongItsFirstElevenDevices) {
    offer(13, {});
    devices[3].make = [] { return nullptr; };
    devices[4].make = []() -> std::unique_ptr<CWaveDevice> { throw std::runtime_error("gone"); };
    start();
    EXPECT_THAT(usable(200, 212), SizeIs(13));
    EXPECT_EQ(host.markedDevice, 200);
    EXPECT_NE(dialog->engine.device, nullptr);
    EXPECT_EQ(chooseDevice(210), 0);
    EXPECT_EQ(host.markedDevice, 210);
    EXPECT_EQ(chooseDevice(211), std::nullopt);
    host.take();
    EXPECT_EQ(chooseDevice(203), 0);
    EXPECT_THAT(host.take(), ElementsAre("Error: Failed to load audio device: Device 3"));
    EXPECT_EQ(dialog->engine.device, nullptr);
    EXPECT_EQ(chooseDevice(204), 0);  // what a handler throws is shown, and the dialog goes on
    EXPECT_THAT(host.take(), ElementsAre("Error: gone"));
    host.press(controls::close);
}

TEST_F(Player, AMeasurementThroughADeviceBecomesTheResponseAndItsFile) {
    SimulatedSetup setup;
    setup.impulse = {0.0, 0.0, 0.0, -0.5};
    offer(1, setup);
    values.ResponseIsCsv = false;
    start();
    host.press(measure);
    EXPECT_FALSE(control(measure).enabled || control(path).enabled);
    EXPECT_THAT(usable(200, 200), IsEmpty());
    EXPECT_EQ(control(play).text, "||");
    host.await(message::captureDone);
    EXPECT_TRUE(control(measure).enabled);
    EXPECT_EQ(control(status1).text, "");
    EXPECT_EQ(control(results).cells[1], "Neg");
    EXPECT_EQ(control(results).cells[2], "3 smpl");
    EXPECT_EQ(tests::Contents(folder / "measured.qsr").size(), 262148U);
    EXPECT_THAT(host.take(), Contains("focus 0"));

    // What is not of the engine designs anew, and a playback that ends changes nothing.
    const auto designed = words();
    std::remove((folder / "measured.qsr").c_str());
    host.tell({.message = message::captureDone, .id = 1, .lParam = 1});
    EXPECT_EQ(words(), designed);
    EXPECT_FALSE(folder.names().contains("measured.qsr"));
    drop(wave("short.wav", 0.5));
    host.press(play);
    host.await(message::captureDone);
    EXPECT_EQ(words(), designed);
    EXPECT_TRUE(control(measure).enabled);
    host.tell({.message = message::status, .lParam = message::byWorker});  // too late
    EXPECT_EQ(control(status1).text, "");
    EXPECT_EQ(control(play).text, "|>");
}

}  // namespace
}  // namespace tonvane

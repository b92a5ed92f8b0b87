// A measurement on WinMM, by the program for Windows: through Wine's ALSA driver into a private
// PulseAudio sink and back.
#include <filesystem>

#include <gmock/gmock.h>

#include "device/AudioServers.h"
#include "files/TestFiles.h"
#include "support/Signals.h"
#include "system/MeasuredFile.h"
#include "system/wine/Wine.h"

namespace tonvane {
namespace {

using testing::HasSubstr;
using tests::Contents;
using tests::RunUnderWine;

tests::WineStart measurement(const tests::TemporaryFolder& folder) {
    return {"tonvane-cli.exe",
            {"measure", "--device", "winmm", "-o", "out.qsr", "--timeout", "2"},
            folder.path(),
            {},
            folder / "printed"};
}

// A client that asks for short delays, without which the capture begins a second late. It has
// settled when it has recorded three seconds.
bool hold(tests::ServerProcess& recorder) {
    recorder.Run({"parec", "--raw", "--latency-msec=5", "-d", "loop.monitor"});
    constexpr uintmax_t settled = 3 * 48000 * 4;
    return recorder.Await([&] {
        std::error_code ignored;
        const auto size = std::filesystem::file_size(recorder.folder() + "/log", ignored);
        return !ignored && size >= settled;
    });
}

// Wine's sound through ALSA: it is the one that keeps every frame.
class AlsaDriver {
  public:
    AlsaDriver() { change("add", {"/d", "alsa"}); }
    ~AlsaDriver() { change("delete", {}); }
    AlsaDriver(const AlsaDriver&) = delete;
    AlsaDriver& operator=(const AlsaDriver&) = delete;

  private:
    static void change(const std::string& verb, const std::vector<std::string>& data) {
        std::vector<std::string> words{verb, R"(HKCU\Software\Wine\Drivers)", "/v", "Audio", "/f"};
        words.insert(words.end(), data.begin(), data.end());
        EXPECT_EQ(RunUnderWine({"reg", words}).exitCode, 0);
    }
};

class Winmm : public tests::WithFftTables {
  protected:
    AlsaDriver driver_;
};

TEST_F(Winmm, ADirectPathIsNotFlatThreeTimes) {
    const tests::PulseServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    tests::ServerProcess recorder;
    ASSERT_TRUE(hold(recorder));
    constexpr int mostAttempts = 8;
    int attempts = 0;
    for (int run = 0; run < 3; ++run) {
        const tests::TemporaryFolder folder;
        tests::WineResult result;
        tests::MeasuredFile measured{};
        // A busy machine misses deadlines: the program refuses what it has measured then, but Wine
        // and the server behind it do so as well, and do not tell.
        do {
            ++attempts;
            result = RunUnderWine(measurement(folder));
            if (result.exitCode == 0) {
                measured = tests::JudgeMeasuredFile(folder / "out.qsr");
            }
        } while (attempts < mostAttempts && (result.exitCode != 0 || measured.flatnessDb >= 0.05));
        ASSERT_EQ(result.exitCode, 0) << result.output;
        EXPECT_LT(measured.flatnessDb, 0.05) << server.process.log();
        RecordProperty("microdecibels" + std::to_string(run),
                       static_cast<int>(1e6 * measured.flatnessDb));
        RecordProperty("sample" + std::to_string(run), measured.peak);
    }
    RecordProperty("attempts", attempts);
}

TEST_F(Winmm, ASoundServerThatEndsHoldsTheProgramOrIsNotToldOf) {
    tests::PulseServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    const tests::TemporaryFolder folder;
    tests::Process program(UnderWine(measurement(folder)));
    EXPECT_TRUE(tests::Await([&] {
        return Contents(folder / "printed").find("Measuring: 25 %") != std::string::npos;
    })) << Contents(folder / "printed");
    server.process.End();
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_THAT(Contents(folder / "printed"),
                HasSubstr("tonvane-cli: winmm: the device has stopped delivering"));

    const auto result = RunUnderWine(measurement(folder));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("WinMM has no device to capture from"));
    EXPECT_FALSE(folder.names().contains("out.qsr"));
}

}  // namespace
}  // namespace tonvane

// Measurements by the command line program on real servers, in real time.
#include <gmock/gmock.h>

#include "device/AudioServers.h"
#include "files/TestFiles.h"
#include "support/Signals.h"
#include "system/MeasuredFile.h"
#include "system/Program.h"

namespace tonvane {
namespace {

tests::MeasuredFile measure(const std::string& device) {
    const tests::TemporaryFolder folder;
    const auto run = [&] {
        return tests::RunProgram({"measure", "--device", device, "-o", "out.qsr"}, {folder.path()});
    };
    auto result = run();
    // A busy machine misses deadlines: the program refuses what it has measured then.
    for (int more = 0; more < 8 && result.err.find("(xruns)") != std::string::npos; ++more) {
        EXPECT_EQ(result.exitCode, 1);
        result = run();
    }
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
    return tests::JudgeMeasuredFile(folder / "out.qsr");
}

using MeasureOnServers = tests::WithFftTables;

TEST_F(MeasureOnServers, ThroughJackADirectPathIsFlatAndInPlaceThreeTimes) {
    const tests::JackServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    const tests::JackSpeaker speaker;
    ASSERT_TRUE(speaker.isUp);
    for (int run = 0; run < 3; ++run) {
        const tests::MeasuredFile measured = measure("jack:speaker");
        EXPECT_LT(measured.flatnessDb, 0.01);
        EXPECT_EQ(measured.peak, 32);
        RecordProperty("microdecibels" + std::to_string(run),
                       static_cast<int>(1e6 * measured.flatnessDb));
    }
}

TEST_F(MeasureOnServers, ThroughPulseAudioADirectPathIsFlatThreeTimes) {
    const tests::PulseServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    for (int run = 0; run < 3; ++run) {
        const tests::MeasuredFile measured = measure("alsa");
        EXPECT_LT(measured.flatnessDb, 0.05) << server.process.log();
        RecordProperty("microdecibels" + std::to_string(run),
                       static_cast<int>(1e6 * measured.flatnessDb));
        RecordProperty("sample" + std::to_string(run), measured.peak);
    }
}

}  // namespace
}  // namespace tonvane

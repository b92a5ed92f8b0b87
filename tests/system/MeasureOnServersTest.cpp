// Measurements by the command line program on real servers, in real time.
#include <cmath>

#include <gmock/gmock.h>

#include "device/AudioServers.h"
#include "files/ResponseFile.h"
#include "files/TestFiles.h"
#include "support/Signals.h"
#include "system/Program.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane {
namespace {

struct Measured {
    double flatnessDb;  // the largest distance from the level at 1 kHz, 40 Hz to 20 kHz
    int32_t peak;       // sample
};

Measured measure(const std::string& device) {
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
    const SpeakerResponse response = ReadCheckedResponseFile(folder / "out.qsr");
    SpectrumBuffer spectrum;
    spectrum.resize(32768);
    std::ranges::copy(response.samples, spectrum.time().begin());
    spectrum.forward();
    const auto binAt = [](double hertz) { return std::lround(hertz * 32768 / 48000.0); };
    const double reference = std::abs(spectrum.spectrum[binAt(1000.0)]);
    Measured measured{0.0, 0};
    for (int64_t k = binAt(40.0); k <= binAt(20000.0); ++k) {
        const double level = tests::Decibels(std::abs(spectrum.spectrum[k]) / reference);
        measured.flatnessDb = std::max(measured.flatnessDb, std::fabs(level));
    }
    const auto highest = std::ranges::max_element(response.samples, {},
                                                  [](double sample) { return std::fabs(sample); });
    measured.peak = static_cast<int32_t>(highest - response.samples.begin());
    return measured;
}

using MeasureOnServers = tests::WithFftTables;

TEST_F(MeasureOnServers, ThroughJackADirectPathIsFlatAndInPlaceThreeTimes) {
    const tests::JackServer server;
    ASSERT_TRUE(server.isUp) << server.process.log();
    const tests::JackSpeaker speaker;
    ASSERT_TRUE(speaker.isUp);
    for (int run = 0; run < 3; ++run) {
        const Measured measured = measure("jack:speaker");
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
        const Measured measured = measure("alsa");
        EXPECT_LT(measured.flatnessDb, 0.05) << server.process.log();
        RecordProperty("microdecibels" + std::to_string(run),
                       static_cast<int>(1e6 * measured.flatnessDb));
        RecordProperty("sample" + std::to_string(run), measured.peak);
    }
}

}  // namespace
}  // namespace tonvane

// The example files: what they hold, and that the program still makes those that are kept.
#include <algorithm>
#include <cmath>
#include <filesystem>

#include <gmock/gmock.h>
#include <unistd.h>

#include "example-speaker/ExampleFiles.h"
#include "files/AddressConfig.h"
#include "files/FileAccess.h"
#include "files/LevelTable.h"
#include "files/ResponseFile.h"
#include "files/TargetFile.h"
#include "transform/FftTables.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane::example {
namespace {

const std::string kept = TONVANE_EXAMPLES "/";
constexpr const char* fileNames[] = {"small-speaker.qsr", "small-speaker.csv",
                                     "target-flat.txt",   "target-warm.txt",
                                     "target-saved.txt",  RegisterAddressConfig::fileName};

class ExampleFiles : public testing::Test {
  protected:
    static void SetUpTestSuite() { InitFftTables(responseFileSamples); }
};

TEST_F(ExampleFiles, AreMadeAgainByteForByte) {
    const std::string folder =
        testing::TempDir() + "tonvane-examples-" + std::to_string(getpid()) + "/";
    for (const char* run : {"first run", "second run"}) {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        ASSERT_TRUE(WriteExampleFiles(folder));
        for (const char* name : fileNames) {
            const auto made = ReadBinaryFile(folder + name, longestText);
            ASSERT_TRUE(made) << name;
            EXPECT_TRUE(made == ReadBinaryFile(kept + name, longestText)) << run << ": " << name;
        }
    }
    std::filesystem::remove_all(folder);
    EXPECT_FALSE(WriteExampleFiles(folder));
}

TEST_F(ExampleFiles, ResponseIsSilentThenPeaksAfterTheFlightThenFallsIntoTheNoise) {
    const SpeakerResponse response = ReadCheckedResponseFile(kept + "small-speaker.qsr");
    EXPECT_EQ(response.rate, 48000);
    const auto magnitude = [&](size_t i) { return std::fabs(response.samples[i]); };
    size_t peak = 0;
    for (size_t i = 0; i < response.samples.size(); ++i) {
        peak = magnitude(i) > magnitude(peak) ? i : peak;
    }
    EXPECT_NEAR(static_cast<double>(peak), 48000.0 / 343.0, 4.0);
    EXPECT_NEAR(response.samples[peak], 0.4, 1e-4);

    // Ahead of the onset stand the ripples of the band limit, behind the decay the noise.
    const auto largest = [&](size_t from, size_t to) {
        double result = 0.0;
        for (size_t i = from; i < to; ++i) {
            result = std::max(result, magnitude(i));
        }
        return result;
    };
    EXPECT_LT(largest(0, peak - 8), 0.4 / 50.0);
    EXPECT_LT(largest(0, peak - 60), 0.4e-4 * 1.2);
    EXPECT_LT(largest(16384, 32768), 0.4e-4 * 1.01);
    EXPECT_GT(largest(16384, 32768), 0.4e-4 * 0.95);
}

TEST_F(ExampleFiles, TableIsTheFreeFieldAtTheLevelOfTheResponse) {
    CsvTable table;
    InputNotes notes(true);
    ReadLevelTable(kept + "small-speaker.csv", table, notes);
    EXPECT_THAT(notes.texts(), testing::IsEmpty());
    EXPECT_EQ(table.frequency[0], 20.0);
    EXPECT_EQ(table.frequency[table.count - 1], 24000.0);

    const FreeField freeField(ExampleSpeaker());
    const double scale = Measure(ExampleSpeaker(), ExampleRoom()).scale;
    for (int32_t row = 0; row < table.count; ++row) {
        const double f = table.frequency[row];
        EXPECT_NEAR(table.level[row], 20.0 * std::log10(scale * std::abs(freeField.at(f))), 1e-4);
        if (row > 0) {
            EXPECT_LT(f, table.frequency[row - 1] * std::exp2(1.0 / 24.0));
            EXPECT_GT(f, table.frequency[row - 1]);
        }
    }
}

// Without surfaces a measurement at the reference distance is the free field itself.
TEST_F(ExampleFiles, MeasurementWithoutSurfacesHasTheFreeFieldsSpectrum) {
    const Measurement measurement = Measure(ExampleSpeaker(), {{1.0, 0.0, 0.0}, {}});
    SpectrumBuffer buffer;
    ASSERT_TRUE(buffer.resize(responseFileSamples));
    buffer.setSamplesPadded(measurement.samples);
    buffer.forward();
    const FreeField freeField(ExampleSpeaker());
    for (const int32_t bin : {70, 137, 683, 3000, 9000, 13000}) {
        const double expected = std::abs(freeField.at(bin * 48000.0 / 32768.0));
        const double actual = std::abs(buffer.spectrum[bin]) / measurement.scale;
        EXPECT_NEAR(20.0 * std::log10(actual / expected), 0.0, 0.5) << bin;
    }
}

TEST_F(ExampleFiles, TargetsAndAddressesAreReadable) {
    const TargetSettings flat = ReadCheckedTargetFile(kept + "target-flat.txt");
    EXPECT_EQ(flat.kind, zeroCurve);
    const TargetSettings warm = ReadCheckedTargetFile(kept + "target-warm.txt");
    EXPECT_EQ(warm.kind, userCurve);
    EXPECT_EQ(warm.gainClampDb, -6);
    EXPECT_EQ(warm.curve.points[0], (CurvePoint{80, 3}));
    const TargetSettings saved = ReadCheckedTargetFile(kept + "target-saved.txt");
    EXPECT_EQ(saved.kind, savedCurve);
    EXPECT_EQ(saved.gainClampDb, -3);

    RegisterAddressConfig config;
    EXPECT_EQ(LoadRegisterAddressConfig(kept, config), 2);
    EXPECT_EQ(config.addresses, RegisterAddressConfig().addresses);
    EXPECT_EQ(config.outputFormat, 4);
}

}  // namespace
}  // namespace tonvane::example

// The example files: what they hold, and that the program still makes those that are kept.
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
    EXPECT_EQ(ReadCheckedTargetFile(kept + "target-flat.txt").kind, zeroCurve);
    EXPECT_EQ(ReadCheckedTargetFile(kept + "target-warm.txt").kind, userCurve);
    EXPECT_EQ(ReadCheckedTargetFile(kept + "target-saved.txt").kind, savedCurve);
    RegisterAddressConfig config;
    EXPECT_EQ(LoadRegisterAddressConfig(kept, config), 2);
}

}  // namespace
}  // namespace tonvane::example

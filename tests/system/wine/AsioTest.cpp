// Measurements and faults on an ASIO driver, by the programs for Windows.
#include <array>
#include <cstring>

#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "support/Signals.h"
#include "system/MeasuredFile.h"
#include "system/wine/Wine.h"

namespace tonvane {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using tests::RunUnderWine;
using tests::WineResult;

const std::string loopDriver = "asio:Loop driver";
const std::string brokenDriver = "asio:Broken driver";
const std::string brokenKey = R"(HKLM\Software\asio\Broken driver)";

// Runs one of our programs with the driver set up by some words. A busy machine misses deadlines:
// what the device counts as a gap shows nothing and is made again.
WineResult run(const std::string& program, const std::vector<std::string>& arguments,
               const tests::TemporaryFolder& folder, const std::string& words,
               const std::string& gap) {
    WineResult result;
    for (int attempt = 0; attempt < 8; ++attempt) {
        result = RunUnderWine({program, arguments, folder.path(), {{"TONVANE_LOOP", words}}});
        if (gap.empty() || result.output.find(gap) == std::string::npos) {
            break;
        }
    }
    return result;
}

// With the driver in the registry, and one whose DLL is not there.
class Asio : public tests::WithFftTables {
  protected:
    static void SetUpTestSuite() {
        WithFftTables::SetUpTestSuite();
        EXPECT_EQ(call("regsvr32", {"/s", library()}), 0);
        EXPECT_EQ(call("reg", {"add", brokenKey, "/v", "clsid", "/d",
                               "{00000000-1111-2222-3333-444444444444}", "/f"}),
                  0);
    }

    static void TearDownTestSuite() {
        call("regsvr32", {"/s", "/u", library()});
        call("reg", {"delete", brokenKey, "/f"});
    }

  private:
    static std::string library() {
        std::string path = "Z:" + tests::WindowsProgram("asio-loop-driver.dll");
        std::ranges::replace(path, '/', '\\');
        return path;
    }
    static int call(const std::string& program, const std::vector<std::string>& arguments) {
        return RunUnderWine({program, arguments}).exitCode.value_or(-1);
    }
};

TEST_F(Asio, ADriverIsNotOnTheListOrUnderAnotherNumber) {
    const auto result = RunUnderWine({"tonvane-cli.exe", {"devices"}});
    for (const char* part : {"200  winmm ", "asio:Loop driver ", "asio:Broken driver ",
                             "\n201  asio:", "\n202  asio:", "\n300  simulated "}) {
        EXPECT_THAT(result.output, HasSubstr(part));
    }
}

struct Loop {
    const char* words;
    const char* type;
    int32_t latency;
    const char* calls;  // of the host, up to the start, of which the driver tells
};

constexpr std::array loops{
    Loop{"type=int32 frames=512 input=512 output=512", "int32", 1024,
         "init\nsetSampleRate 48000\ncreateBuffers 512 in0 in1 out0 out1\n"},
    Loop{"type=float32 frames=256 input=300 output=801 ready=1", "float32", 1101,
         "init\nsetSampleRate 48000\ncreateBuffers 256 in0 in1 out0 out1\n"},
    Loop{"type=int32 frames=1024 input=1 output=4999 ready=1", "int32", 5000,
         "init\nsetSampleRate 48000\ncreateBuffers 1024 in0 in1 out0 out1\n"},
    Loop{"type=float32 frames=96 input=96 output=0 rate=192000", "float32", 96,
         "init\nsetSampleRate 44100\nsetSampleRate 48000\ncreateBuffers 96 in0 in1 out0 out1\n"},
    Loop{"type=int32 frames=64 input=64 output=64", "int32", 128,
         "init\nsetSampleRate 48000\ncreateBuffers 64 in0 in1 out0 out1\n"},
    Loop{"type=float32 frames=2048 input=2048 output=2048", "float32", 4096,
         "init\nsetSampleRate 48000\ncreateBuffers 2048 in0 in1 out0 out1\n"},
};

TEST_F(Asio, AMeasuredPathIsNotFlatOrOutOfPlaceThreeTimesWithEitherType) {
    for (const Loop& loop : loops) {
        const tests::TemporaryFolder folder;
        const auto result =
            run("tonvane-cli.exe", {"measure", "--device", loopDriver, "-o", "out.qsr"}, folder,
                std::string("speed=4 ") + loop.words, "(xruns)");
        ASSERT_EQ(result.exitCode, 0) << loop.words << ": " << result.output;
        const tests::MeasuredFile measured = tests::JudgeMeasuredFile(folder / "out.qsr");
        EXPECT_LT(measured.flatnessDb, 0.00001) << loop.words;
        EXPECT_EQ(measured.peak, 32) << loop.words;
        RecordProperty(
            "nanodecibels." + std::string(loop.type) + "." + std::to_string(loop.latency),
            static_cast<int>(1e9 * measured.flatnessDb));
    }
}

// What a driver of floats makes of a word: the nearest float, and back toward zero.
int32_t throughFloat(int32_t word) {
    const float sample = static_cast<float>(word) * 0x1p-31F;
    return sample >= 1.0F ? INT32_MIN : static_cast<int32_t>(static_cast<double>(sample) * 0x1p31);
}

std::string bytesOf(const std::vector<int32_t>& words) {
    return {reinterpret_cast<const char*>(words.data()), words.size() * sizeof(int32_t)};
}

TEST_F(Asio, ASampleChangesMoreThanByItsConversionOrTheDriverIsCalledOutOfOrder) {
    constexpr int32_t frames = 20000;
    std::vector<int32_t> played{INT32_MAX, INT32_MIN, INT32_MIN, INT32_MAX, 1, -1};
    for (const double sample : tests::Noise(2 * frames - 6, 5)) {
        played.push_back(static_cast<int32_t>(sample * 0x1p31));
    }
    for (const Loop& loop : loops) {
        const tests::TemporaryFolder folder;
        folder.write("in", bytesOf(played));
        const auto result =
            run("device-probe.exe", {loopDriver, "48000", "2", "in", "out", "32768"}, folder,
                std::string("speed=2 log=log ") + loop.words, "xruns 1");
        EXPECT_EQ(result.output, "latency " + std::to_string(loop.latency) + "\nxruns 0\nlost 0\n");
        EXPECT_THAT(tests::Contents(folder / "log"),
                    EndsWith(std::string(loop.calls) +
                             "start\nstop\ndisposeBuffers\ndisposeBuffers\ngone\n"));
        std::vector<int32_t> expected(static_cast<size_t>(2 * loop.latency));
        for (const int32_t word : played) {
            expected.push_back(std::strcmp(loop.type, "int32") == 0 ? word : throughFloat(word));
        }
        expected.resize(2 * 32768);
        EXPECT_TRUE(tests::Contents(folder / "out") == bytesOf(expected)) << loop.words;
    }
}

struct Fault {
    const char* words;
    std::string device;
    std::string complaint;  // the end of what the command line prints
    bool isShown;           // in a message box, word for word
};

const std::array faults{
    Fault{"fault=init", loopDriver, "Number of channels (in, out) = (2, 2) is not supported", true},
    Fault{"channels=1", loopDriver, "Number of channels (in, out) = (2, 2) is not supported", true},
    Fault{"fault=rate", loopDriver, "Sample rate 48000 Hz is not supported", true},
    Fault{"", brokenDriver, "Failed to load ASIO driver: Broken driver", true},
    Fault{"fault=buffers", loopDriver, "The ASIO driver cannot be opened (error -994)", false},
    Fault{"fault=start", loopDriver, "the device was lost during the measurement", false},
    Fault{"fault=stall", loopDriver, "the device has stopped delivering", false},
    Fault{"fault=resync", loopDriver, "try again with nothing else running", false},
    Fault{"type=int16", loopDriver, "the device has delivered nothing", false},
};

TEST_F(Asio, AFaultyDriverIsMeasuredWithOrNotToldOfOrNotLetGo) {
    for (const Fault& fault : faults) {
        const tests::TemporaryFolder folder;
        const auto result =
            run("tonvane-cli.exe",
                {"measure", "--device", fault.device, "-o", "out.qsr", "--timeout", "1"}, folder,
                std::string("speed=4 log=log ") + fault.words, "");
        EXPECT_EQ(result.exitCode, 1) << fault.words;
        EXPECT_THAT(result.output, EndsWith(fault.complaint + "\n"));
        EXPECT_FALSE(folder.names().contains("out.qsr"));
        if (fault.device == loopDriver) {
            EXPECT_THAT(tests::Contents(folder / "log"), EndsWith("disposeBuffers\ngone\n"))
                << fault.words;
        }
        if (fault.isShown) {
            const auto probed =
                run("device-probe.exe", {fault.device, "48000", "2", "in", "out", "0"}, folder,
                    fault.words, "");
            EXPECT_EQ(probed.exitCode, 1);
            EXPECT_EQ(probed.output,
                      "shown: " + fault.complaint + "\nrefused: " + fault.complaint + "\n");
        }
    }
}

}  // namespace
}  // namespace tonvane

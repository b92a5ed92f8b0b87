// What a design pass does on the wire, as the virtual amplifier sees it.
#include <memory>

#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "link/DeskAmplifier.h"
#include "link/Recording.h"
#include "transform/FftTables.h"
#include "tuning/RecordingMessages.h"
#include "tuning/TuningRun.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

class DesignPass : public testing::Test {
  protected:
    DesignPass() {
        InitFftTables(responseLength);
        values.InputSampleRate = values.FilterSampleRate = 44100;
        values.ResponseIsCsv = false;
        values.InitialGainClamp = -6;
        run = std::make_unique<TuningRun>(values, messages, nullptr, desk.port(), desk.transport());
        run->InitTuningState();
    }
    void connect() { ASSERT_EQ(run->ampLink.Connect(), CAmpLink::Connection::made); }

    // What has happened since the last call.
    Lines events() {
        const Lines all = desk.events();
        const size_t first = std::exchange(seen, all.size());
        return {all.begin() + static_cast<std::ptrdiff_t>(first), all.end()};
    }

    // The frames that write these words to 0x29 to 0x2F.
    static Lines sectionFrames(std::span<const int32_t> words) {
        Lines frames;
        for (size_t k = 0; k < 7; ++k) {
            std::vector<uint8_t> frame{1, static_cast<uint8_t>(0x29 + k), 20};
            for (const int32_t word : words.subspan(5 * k, 5)) {
                for (const int shift : {24, 16, 8, 0}) {
                    frame.push_back(static_cast<uint8_t>(static_cast<uint32_t>(word) >> shift));
                }
            }
            frames.push_back(tests::Hex(frame));
        }
        return frames;
    }

    tests::DeskAmplifier desk;
    ProgramValues values;
    tests::RecordingMessages messages;
    std::unique_ptr<TuningRun> run;
    size_t seen = 0;
};

TEST_F(DesignPass, LeavesTheDesignedWordsWithBiqAndUnityWithout) {
    connect();
    run->OpenResponseFile(tests::GoldenPath("port44.qsr"));
    EXPECT_THAT(events(), ElementsAreArray(tests::Bracketed(tests::UnityFrames(0x29, 0x2F))));

    run->amplifier.biqEnabled = true;
    run->RunDesign();
    const std::vector<int32_t> words = run->iirFitter.coefficientWords;
    EXPECT_THAT(events(), ElementsAreArray(tests::Bracketed(sectionFrames(words))));
    EXPECT_EQ(run->measurement.socket != -1, true);
    desk.stop();
    for (int32_t k = 0; k < 7; ++k) {
        EXPECT_THAT(desk.amplifier.registers.words(0x29 + k),
                    ElementsAreArray(std::span(words).subspan(5 * k, 5)));
        EXPECT_THAT(desk.amplifier.registers.words(0x30 + k), ElementsAre(0x800000, 0, 0, 0, 0));
    }
    EXPECT_FALSE(desk.amplifier.registers.isShutDown());
    EXPECT_THAT(desk.remarks(), IsEmpty());
}

TEST_F(DesignPass, WithoutAValidResponseLeavesAnEmptyBracket) {
    connect();
    run->gainIndex = 3;
    run->RunDesign();
    EXPECT_THAT(events(), IsEmpty());
    run->amplifier.biqEnabled = true;
    run->OpenCsvFile("no such table");
    EXPECT_THAT(events(), ElementsAreArray(tests::Bracketed({})));
}

TEST_F(DesignPass, GoesThroughWhenTheServerIsGone) {
    connect();
    desk.stop();
    run->OpenResponseFile(tests::GoldenPath("port44.qsr"));
    EXPECT_EQ(run->iirFitter.coefficientWords.size(), 35U);
    EXPECT_THAT(events(), ElementsAre("wait 23", "wait 23"));
}

}  // namespace
}  // namespace tonvane

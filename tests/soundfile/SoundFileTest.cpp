// Wave files through the library, against the layout of the format.
#include <bit>

#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "soundfile/SoundFile.h"
#include "support/WaveBytes.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using tests::Chunk;
using tests::floating;
using tests::LittleEndian;
using tests::pcm;
using tests::WaveBytes;
using tests::WaveFormat;

std::string bytesOf(float sample) {
    return LittleEndian(std::bit_cast<uint32_t>(sample), 4);
}

// 0.5 and -1.
std::string halfAndMinusOne(uint32_t tag, uint32_t bits) {
    if (tag == pcm) {
        const uint64_t one = uint64_t{1} << (bits - 1);
        return LittleEndian(one / 2, bits / 8) + LittleEndian(one, bits / 8);
    }
    return bits == 32 ? bytesOf(0.5F) + bytesOf(-1.0F)
                      : LittleEndian(std::bit_cast<uint64_t>(0.5), 8) +
                            LittleEndian(std::bit_cast<uint64_t>(-1.0), 8);
}

class SoundFile : public testing::Test {
  protected:
    std::vector<double> read(const std::string& bytes, std::optional<int32_t> channel = {}) {
        const SoundChannel sound = ReadSoundChannel("w.wav", bytes, channel, notes);
        EXPECT_EQ(sound.rate, 44100);
        return sound.samples;
    }

    InputNotes notes;
    const std::string data = halfAndMinusOne(pcm, 16);
    const std::string whole = WaveBytes({}, data);
};

TEST_F(SoundFile, IsReadInEverySampleFormat) {
    for (const auto& [tag, bits] :
         {std::pair{pcm, 16U}, {pcm, 24}, {pcm, 32}, {floating, 32}, {floating, 64}}) {
        const std::string frames = halfAndMinusOne(tag, bits);
        EXPECT_THAT(read(WaveBytes({tag, 1, bits}, frames)), ElementsAre(0.5, -1.0)) << bits;
        const std::string stereo = WaveBytes({tag, 2, bits}, frames + frames);
        EXPECT_THAT(read(stereo, 1), ElementsAre(0.5, 0.5)) << bits;
        EXPECT_THAT(read(stereo, 2), ElementsAre(-1.0, -1.0)) << bits;
    }
    EXPECT_THAT(notes.texts(), testing::IsEmpty());
}

TEST_F(SoundFile, IsRefusedWithAReason) {
    const std::string otherSamples = "expected a wave file of 16 to 32 bit";
    const struct {
        std::string bytes;
        std::optional<int32_t> channel;
        std::string complaint;
    } cases[] = {
        {WaveBytes({pcm, 2}, data), {}, "2 channels; choose one with --channel 1 to 2"},
        {WaveBytes({pcm, 2}, data), 3, "2 channels, not a channel 3"},
        {whole, 0, "1 channel, not a channel 0"},
        {WaveBytes({pcm, 1, 8}, data), {}, otherSamples},
        {WaveBytes({7, 1, 8}, data), {}, otherSamples},  // mu-law
        {WaveBytes({}, ""), {}, "no samples"},
        {whole.substr(0, 30), {}, "w.wav: "},
        {"RIFF", {}, "is no wave file"},
    };
    for (const auto& c : cases) {
        EXPECT_THAT(tests::ComplaintOf([&] { read(c.bytes, c.channel); }), HasSubstr(c.complaint));
    }
}

TEST_F(SoundFile, ThatIsCutIsToldOf) {
    EXPECT_THAT(read(whole.substr(0, whole.size() - 2)), ElementsAre(0.5));
    EXPECT_THAT(notes.texts(), ElementsAre(HasSubstr("ends 2 bytes ahead")));
}

TEST(WrittenWaveFile, HoldsFloat32SamplesAtItsRateAndNoTime) {
    const std::string bytes = FormatWaveFile(96000, std::vector{0.5, -1.25, 1.0 / 3.0});
    const std::string head = "RIFF" + LittleEndian(bytes.size() - 8, 4) + "WAVE";
    EXPECT_THAT(bytes, testing::StartsWith(
                           head + Chunk("fmt ", tests::FormatBytes({floating, 1, 32, 96000}))));
    const std::string samples = bytesOf(0.5F) + bytesOf(-1.25F) + bytesOf(1.0F / 3.0F);
    EXPECT_THAT(bytes, testing::EndsWith(Chunk("data", samples)));
    EXPECT_THAT(bytes, testing::Not(HasSubstr("PEAK")));
}

}  // namespace
}  // namespace tonvane

// Wave files put together here byte by byte.
#include <bit>
#include <cmath>

#include <gmock/gmock.h>

#include "files/TestFiles.h"
#include "soundfile/SoundFile.h"

namespace tonvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string little(uint64_t value, size_t bytes) {
    std::string text;
    for (size_t i = 0; i < bytes; ++i) {
        text.push_back(static_cast<char>(value >> 8 * i & 0xFFU));
    }
    return text;
}

constexpr uint16_t pcm = 1;
constexpr uint16_t floating = 3;

std::string waveBytes(uint16_t tag, uint16_t channels, uint16_t bits, const std::string& data) {
    const uint32_t frame = channels * bits / 8U;
    const std::string format = little(tag, 2) + little(channels, 2) + little(44100, 4) +
                               little(uint64_t{44100} * frame, 4) + little(frame, 2) +
                               little(bits, 2);
    const std::string chunks =
        "WAVEfmt " + little(format.size(), 4) + format + "data" + little(data.size(), 4) + data;
    return "RIFF" + little(chunks.size(), 4) + chunks;
}

// 0.5, -1 in one of the formats, two channels apart.
std::string halfAndMinusOne(uint16_t tag, uint16_t bits) {
    if (tag == pcm) {
        const uint64_t one = uint64_t{1} << (bits - 1);
        return little(one / 2, bits / 8U) + little(one, bits / 8U);
    }
    return bits == 32
               ? little(std::bit_cast<uint32_t>(0.5F), 4) +
                     little(std::bit_cast<uint32_t>(-1.0F), 4)
               : little(std::bit_cast<uint64_t>(0.5), 8) + little(std::bit_cast<uint64_t>(-1.0), 8);
}

TEST(SoundFile, IsReadInEverySampleFormat) {
    const tests::TemporaryFolder folder;
    for (const auto& [tag, bits] : {std::pair<uint16_t, uint16_t>{pcm, 16},
                                    {pcm, 24},
                                    {pcm, 32},
                                    {floating, 32},
                                    {floating, 64}}) {
        SCOPED_TRACE(bits);
        const std::string data = halfAndMinusOne(tag, bits);
        const auto mono = folder.write("m.wav", waveBytes(tag, 1, bits, data));
        InputNotes notes;
        const SoundChannel sound = ReadSoundChannel(mono, std::nullopt, notes);
        EXPECT_EQ(sound.rate, 44100);
        EXPECT_THAT(sound.samples, ElementsAre(0.5, -1.0));
        const auto stereo = folder.write("s.wav", waveBytes(tag, 2, bits, data + data));
        EXPECT_THAT(ReadSoundChannel(stereo, 1, notes).samples, ElementsAre(0.5, 0.5));
        EXPECT_THAT(ReadSoundChannel(stereo, 2, notes).samples, ElementsAre(-1.0, -1.0));
        EXPECT_THAT(notes.texts(), testing::IsEmpty());
    }
}

TEST(SoundFile, IsRefusedWithAReason) {
    const tests::TemporaryFolder folder;
    const std::string data = halfAndMinusOne(pcm, 16);
    const std::string whole = waveBytes(pcm, 1, 16, data);
    const struct {
        std::string bytes;
        std::optional<int32_t> channel;
        const char* complaint;
    } cases[] = {
        {waveBytes(pcm, 2, 16, data), {}, "2 channels; choose one with --channel 1 to 2"},
        {waveBytes(pcm, 2, 16, data), 3, "2 channels, not a channel 3"},
        {whole, 0, "1 channel, not a channel 0"},
        {waveBytes(pcm, 1, 8, data), {}, "expected a wave file of 16 to 32 bit"},
        {waveBytes(7, 1, 8, data), {}, "expected a wave file of 16 to 32 bit"},  // mu-law
        {waveBytes(pcm, 1, 16, ""), {}, "no samples"},
        {whole.substr(0, 30), {}, "w.wav: "},
        {"RIFF", {}, "is no wave file"},
        {"", {}, "is no wave file"},
    };
    for (const auto& c : cases) {
        const std::string path = folder.write("w.wav", c.bytes);
        InputNotes notes;
        EXPECT_THAT(tests::ComplaintOf([&] { ReadSoundChannel(path, c.channel, notes); }),
                    HasSubstr(c.complaint));
    }
    InputNotes notes;
    EXPECT_THAT(tests::ComplaintOf([&] { ReadSoundChannel("/none.wav", {}, notes); }),
                testing::StartsWith("/none.wav: "));
}

TEST(SoundFile, ThatIsCutIsToldOf) {
    const tests::TemporaryFolder folder;
    const std::string whole = waveBytes(pcm, 1, 16, halfAndMinusOne(pcm, 16));
    const std::string path = folder.write("w.wav", whole.substr(0, whole.size() - 2));
    InputNotes notes;
    EXPECT_THAT(ReadSoundChannel(path, {}, notes).samples, ElementsAre(0.5));
    EXPECT_THAT(notes.texts(), ElementsAre(HasSubstr("ends 2 bytes ahead")));
    InputNotes strict(true);
    EXPECT_NE(tests::ComplaintOf([&] { ReadSoundChannel(path, {}, strict); }), "");
}

// Read by the layout of the format: the chunks one after the other, without a reader of wave files.
TEST(WrittenWaveFile, HoldsFloat32SamplesAtItsRate) {
    const std::vector<double> samples{0.5, -1.25, 1.0 / 3.0};
    const std::string bytes = FormatWaveFile(96000, samples);
    const auto numberAt = [&](size_t at, size_t count) {
        uint32_t value = 0;
        for (size_t i = count; i-- > 0;) {
            value = value << 8U | static_cast<unsigned char>(bytes.at(at + i));
        }
        return value;
    };
    ASSERT_EQ(bytes.substr(0, 4) + bytes.substr(8, 4), "RIFFWAVE");
    EXPECT_EQ(numberAt(4, 4) + 8, bytes.size());
    std::vector<float> read;
    for (size_t at = 12; at < bytes.size(); at += 8 + numberAt(at + 4, 4)) {
        const std::string chunk = bytes.substr(at, 4);
        if (chunk == "fmt ") {
            EXPECT_EQ(numberAt(at + 8, 2), floating);
            EXPECT_EQ(numberAt(at + 10, 2), 1U);
            EXPECT_EQ(numberAt(at + 12, 4), 96000U);
            EXPECT_EQ(numberAt(at + 22, 2), 32U);
        }
        for (size_t i = 0; chunk == "data" && i < numberAt(at + 4, 4); i += 4) {
            read.push_back(std::bit_cast<float>(numberAt(at + 8 + i, 4)));
        }
        EXPECT_NE(chunk, "PEAK");  // would hold the time
    }
    EXPECT_THAT(read, ElementsAre(0.5F, -1.25F, static_cast<float>(1.0 / 3.0)));
}

}  // namespace
}  // namespace tonvane

#include "wavefile/WaveFile.h"

#include <algorithm>
#include <array>
#include <limits>

#include "text/LittleEndian.h"

namespace tonvane {

namespace {

constexpr RiffTag waveTag = MakeRiffTag("WAVE");
constexpr RiffTag formatTag = MakeRiffTag("fmt ");
constexpr RiffTag dataTag = MakeRiffTag("data");

// A format tag that says that the real one stands in the extension of the format chunk.
constexpr uint32_t extensible = 0xFFFE;

// The record of the format chunk.
constexpr size_t recordBytes = 16;
using Record = std::array<uint8_t, recordBytes>;

uint32_t field(const Record& record, size_t offset, size_t bytes) {
    return LoadLittleEndian<uint32_t>(std::span(record).subspan(offset, bytes));
}

void setField(Record& record, size_t offset, size_t bytes, uint32_t value) {
    StoreLittleEndian(value, std::span(record).subspan(offset, bytes));
}

WAVEFORMATEX formatOf(const Record& record) {
    WAVEFORMATEX format;
    format.formatTag = static_cast<uint16_t>(field(record, 0, 2));
    format.channels = static_cast<int16_t>(field(record, 2, 2));
    format.sampleRate = static_cast<int32_t>(field(record, 4, 4));
    format.bytesPerSecond = static_cast<int32_t>(field(record, 8, 4));
    format.blockAlign = static_cast<int16_t>(field(record, 12, 2));
    format.bitsPerSample = static_cast<int16_t>(field(record, 14, 2));
    return format;
}

Record recordOf(const WAVEFORMATEX& format) {
    Record record{};
    setField(record, 0, 2, format.formatTag);
    setField(record, 2, 2, static_cast<uint32_t>(format.channels));
    setField(record, 4, 4, static_cast<uint32_t>(format.sampleRate));
    setField(record, 8, 4, static_cast<uint32_t>(format.bytesPerSecond));
    setField(record, 12, 2, static_cast<uint32_t>(format.blockAlign));
    setField(record, 14, 2, static_cast<uint32_t>(format.bitsPerSample));
    return record;
}

}  // namespace

bool CWaveFile::Create(const std::string& path, int32_t rate, int32_t bits, int32_t channels) {
    if (!riff.OpenForWriting(path, waveTag)) {
        return false;
    }
    head = MakeWaveFormat(rate, channels, bits);
    coding = SampleBytes::OfBits(bits);
    riff.BeginChunk(formatTag);
    const Record record = recordOf(head);
    riff.Write(record.data(), record.size());
    riff.EndChunk();
    riff.BeginChunk(dataTag);
    return true;
}

bool CWaveFile::Open(const std::string& path, int32_t& rate, int32_t& bits, int32_t& channels) {
    RiffTag form = 0;
    broken = false;
    if (!riff.OpenForReading(path, form)) {
        return false;
    }
    if (form != waveTag || !readHead(rate, bits, channels)) {
        Close();
        return false;
    }
    return true;
}

bool CWaveFile::readHead(int32_t& rate, int32_t& bits, int32_t& channels) {
    Record record{};
    if (!findChunk(formatTag) || riff.Read(record.data(), record.size()) != record.size()) {
        return false;
    }
    head = formatOf(record);
    if (head.channels < 1 || head.bitsPerSample < 1 || head.bitsPerSample > 32) {
        return false;
    }
    coding = SampleBytes::OfBits(head.bitsPerSample);
    sampleTag_ = head.formatTag;
    Record extension{};
    if (sampleTag_ == extensible &&
        riff.Read(extension.data(), extension.size()) == extension.size()) {
        sampleTag_ = field(extension, 8, 2);  // what the long name of the samples begins with
    }
    coding.isFloat = takesFloats && sampleTag_ == floats && head.bitsPerSample == 32;
    riff.EndChunk();
    if (!findChunk(dataTag)) {
        return false;
    }
    rate = head.sampleRate;
    bits = coding.bytesPerSample * 8;
    channels = head.channels;
    return true;
}

bool CWaveFile::findChunk(RiffTag wanted) {
    RiffTag tag = 0;
    while (riff.NextChunk(tag)) {
        if (tag == wanted) {
            return true;
        }
        riff.EndChunk();
    }
    return false;
}

int32_t CWaveFile::FramesLeft() const {
    const int64_t bytesLeft = riff.isOpen() && !broken ? riff.Remaining() : 0;
    const int64_t frames = bytesLeft == 0 ? 0 : bytesLeft / coding.bytesPerSample / head.channels;
    return static_cast<int32_t>(std::min<int64_t>(frames, std::numeric_limits<int32_t>::max()));
}

void CWaveFile::SeekFrame(int64_t frame) {
    // The file's own word for the bytes of a frame, which need not be bytesPerSample * channels.
    riff.SeekInChunk(frame * static_cast<uint16_t>(head.blockAlign));
}

void CWaveFile::Read(double* samples, int32_t frames) {
    const size_t count = static_cast<size_t>(frames) * static_cast<size_t>(head.channels);
    bytes.resize(count * static_cast<size_t>(coding.bytesPerSample));
    const bool promised = frames <= FramesLeft();
    const size_t got = riff.Read(bytes.data(), bytes.size());
    broken = broken || (promised && got < bytes.size());
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(got), bytes.end(), uint8_t{0});
    coding.Decode(bytes, {samples, count});
}

void CWaveFile::Write(std::span<const double> samples) {
    bytes.resize(samples.size() * static_cast<size_t>(coding.bytesPerSample));
    coding.Encode(samples, bytes);
    riff.Write(bytes.data(), bytes.size());
}

}  // namespace tonvane

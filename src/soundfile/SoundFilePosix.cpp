#include "soundfile/SoundFile.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <utility>

#include <sndfile.h>

#include "files/InputError.h"
#include "text/LittleEndian.h"

namespace tonvane {

namespace {

constexpr size_t mostFrames = size_t{16} << 20U;
constexpr sf_count_t blockFrames = 4096;

struct Closer {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using Handle = std::unique_ptr<SNDFILE, Closer>;

bool isWave(int format) {
    const int kind = format & SF_FORMAT_TYPEMASK;
    return kind == SF_FORMAT_WAV || kind == SF_FORMAT_WAVEX || kind == SF_FORMAT_RF64 ||
           kind == SF_FORMAT_W64;
}

bool hasUsableSamples(int format) {
    const int samples = format & SF_FORMAT_SUBMASK;
    return samples == SF_FORMAT_PCM_16 || samples == SF_FORMAT_PCM_24 ||
           samples == SF_FORMAT_PCM_32 || samples == SF_FORMAT_FLOAT || samples == SF_FORMAT_DOUBLE;
}

// The index of the wanted channel.
int32_t chooseChannel(const std::string& path, int32_t channels, std::optional<int32_t> channel) {
    const std::string found =
        "the file has " + std::to_string(channels) + (channels == 1 ? " channel" : " channels");
    if (!channel && channels != 1) {
        throw InputError(path,
                         found + "; choose one with --channel 1 to " + std::to_string(channels));
    }
    if (channel && (*channel < 1 || *channel > channels)) {
        throw InputError(path, found + ", not a channel " + std::to_string(*channel));
    }
    return channel.value_or(1) - 1;
}

// The reader takes a file that was cut for one that ends there.
void noteMissingEnd(const std::string& path, std::string_view bytes, InputNotes& notes) {
    constexpr size_t headBytes = 8;
    if (bytes.size() < headBytes || !bytes.starts_with("RIFF")) {
        return;
    }
    const uint64_t told = headBytes + LoadLittleEndian<uint32_t>(bytes.substr(4, 4));
    // Programs that cannot go back to their header leave a size of 0 or the largest there.
    if (bytes.size() < told && told - headBytes < 0xFFFFFF00U) {
        notes.guessed(path, 0,
                      "the file ends " + std::to_string(told - bytes.size()) +
                          " bytes ahead of what its header says; what is there is taken for all");
    }
}

std::vector<double> readChannel(SNDFILE* file, const SF_INFO& info, int32_t index) {
    std::vector<double> samples;
    std::vector<double> block(static_cast<size_t>(blockFrames * info.channels));
    for (sf_count_t got = blockFrames; got == blockFrames && samples.size() <= mostFrames;) {
        got = sf_readf_double(file, block.data(), blockFrames);
        for (sf_count_t frame = 0; frame < got; ++frame) {
            samples.push_back(block[static_cast<size_t>(frame * info.channels + index)]);
        }
    }
    return samples;
}

// A file in memory.
struct Memory {
    std::string bytes;
    sf_count_t position = 0;
};

Memory& memoryOf(void* user) {
    return *static_cast<Memory*>(user);
}

sf_count_t lengthOf(void* user) {
    return static_cast<sf_count_t>(memoryOf(user).bytes.size());
}

sf_count_t seekTo(sf_count_t offset, int whence, void* user) {
    Memory& memory = memoryOf(user);
    const sf_count_t base = whence == SEEK_SET   ? 0
                            : whence == SEEK_CUR ? memory.position
                                                 : lengthOf(user);
    memory.position = std::clamp<sf_count_t>(base + offset, 0, lengthOf(user));
    return memory.position;
}

sf_count_t readFrom(void* data, sf_count_t count, void* user) {
    Memory& memory = memoryOf(user);
    const sf_count_t there = std::min(count, lengthOf(user) - memory.position);
    std::memcpy(data, memory.bytes.data() + memory.position, static_cast<size_t>(there));
    memory.position += there;
    return there;
}

sf_count_t writeTo(const void* data, sf_count_t count, void* user) {
    Memory& memory = memoryOf(user);
    const auto end = static_cast<size_t>(memory.position + count);
    memory.bytes.resize(std::max(memory.bytes.size(), end));
    std::memcpy(memory.bytes.data() + memory.position, data, static_cast<size_t>(count));
    memory.position += count;
    return count;
}

sf_count_t positionOf(void* user) {
    return memoryOf(user).position;
}

SF_VIRTUAL_IO memoryCalls{lengthOf, seekTo, readFrom, writeTo, positionOf};

}  // namespace

SoundChannel ReadSoundChannel(const std::string& path, std::string bytes,
                              std::optional<int32_t> channel, InputNotes& notes) {
    Memory memory{std::move(bytes)};
    SF_INFO info{};
    const Handle file(sf_open_virtual(&memoryCalls, SFM_READ, &info, &memory));
    if (!file) {
        throw InputError(path,
                         std::string("is no wave file that can be read: ") + sf_strerror(nullptr));
    }
    if (!isWave(info.format) || !hasUsableSamples(info.format)) {
        throw InputError(path,
                         "expected a wave file of 16 to 32 bit integers or floating point numbers");
    }
    const int32_t index = chooseChannel(path, info.channels, channel);
    noteMissingEnd(path, memory.bytes, notes);
    SoundChannel sound{info.samplerate, readChannel(file.get(), info, index)};
    if (sound.samples.empty() || sound.samples.size() > mostFrames) {
        throw InputError(path, sound.samples.empty()
                                   ? std::string("the file has no samples")
                                   : "expected at most " + std::to_string(mostFrames) + " samples");
    }
    return sound;
}

std::string FormatWaveFile(int32_t rate, std::span<const double> samples) {
    Memory memory;
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    Handle file(sf_open_virtual(&memoryCalls, SFM_WRITE, &info, &memory));
    if (!file) {
        throw std::runtime_error("a wave file cannot be made: " +
                                 std::string(sf_strerror(nullptr)));
    }
    // That chunk would hold the time of writing.
    sf_command(file.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
    const auto count = static_cast<sf_count_t>(samples.size());
    if (sf_writef_double(file.get(), samples.data(), count) != count) {
        throw std::runtime_error("a wave file cannot be made: " +
                                 std::string(sf_strerror(file.get())));
    }
    file.reset();
    return memory.bytes;
}

}  // namespace tonvane

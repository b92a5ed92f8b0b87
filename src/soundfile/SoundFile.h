// Wave files through libsndfile: impulse responses in, filters out.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "files/InputNotes.h"

namespace tonvane {

struct SoundChannel {
    int32_t rate;                 // Hz
    std::vector<double> samples;  // full scale is +-1
};

// Whether these first bytes of a file (12 are enough) are those of a sound file: RIFF or one of its
// relatives.
bool BeginsLikeSoundFile(std::string_view start);

// Reads one channel (from 1) of a wave file of 16 to 32 bit integers or of floating point numbers;
// `path` is for the messages. Without a channel the file must be mono. Throws InputError for bytes
// that are no wave file, another sample format, a channel that is not there, a file without samples
// or with more than 16777216 a channel. A file that is shorter than its header says is noted as a
// guess.
SoundChannel ReadSoundChannel(const std::string& path, std::string bytes,
                              std::optional<int32_t> channel, InputNotes& notes);

// The bytes of a mono wave file of float32 samples, the same for the same samples.
std::string FormatWaveFile(int32_t rate, std::span<const double> samples);

}  // namespace tonvane

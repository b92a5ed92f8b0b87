#include "soundfile/SoundFile.h"

#include <stdexcept>

#include "files/InputError.h"

namespace tonvane {

// libsndfile is not there for this platform.
SoundChannel ReadSoundChannel(const std::string& path, std::string /*bytes*/,
                              std::optional<int32_t> /*channel*/, InputNotes& /*notes*/) {
    throw InputError(path, "wave files cannot be read on Windows; convert it to .qsr");
}

std::string FormatWaveFile(int32_t /*rate*/, std::span<const double> /*samples*/) {
    throw std::runtime_error("wave files cannot be made on Windows");
}

}  // namespace tonvane

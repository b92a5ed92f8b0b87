#include "soundfile/SoundFile.h"

#include <algorithm>
#include <array>

namespace tonvane {

bool BeginsLikeSoundFile(std::string_view start) {
    constexpr std::array<std::string_view, 5> marks{"RIFF", "RIFX", "RF64", "riff", "BW64"};
    return std::ranges::any_of(marks, [start](auto mark) { return start.starts_with(mark); });
}

}  // namespace tonvane

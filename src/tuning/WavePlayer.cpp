#include "tuning/WavePlayer.h"

#include <cmath>

#include <fmt/core.h>

namespace tonvane {

namespace {

constexpr double quartersPerSecond = 4.0;

std::string minutesAndSeconds(int32_t seconds) {
    return fmt::format("{:02}:{:02}", seconds / 60, seconds % 60);
}

}  // namespace

bool WavePlayer::OpenWaveFile(const std::string& path) {
    Stop();
    if (!engine.OpenFile(path.c_str())) {
        durationQuarters = 0.0;
        rangeQuarters = 0;
        durationText = noFileText;
        return false;
    }
    durationQuarters = quartersPerSecond * engine.inputFile.DurationSeconds();
    const auto quarters = static_cast<int32_t>(std::ceil(durationQuarters));
    rangeQuarters = static_cast<int16_t>(quarters);
    durationText = " / " + minutesAndSeconds((quarters + 3) / 4);
    return true;
}

bool WavePlayer::Play() {
    if (engine.paused) {
        engine.paused = false;
        return true;
    }
    if (isActive()) {
        engine.paused = true;
        return true;
    }
    return engine.StartPlayback();
}

void WavePlayer::Stop() {
    engine.Stop();
}

void WavePlayer::Seek(double quarters) {
    engine.inputFile.RequestSeek(quarters / quartersPerSecond);
}

int32_t WavePlayer::PositionQuarters() const {
    double position = quartersPerSecond * engine.inputFile.PositionSeconds();
    if (position == durationQuarters) {
        position = quartersPerSecond * std::ceil(position / quartersPerSecond);
    }
    return static_cast<int32_t>(position);
}

std::string WavePlayer::PositionText(int32_t quarters) {
    return quarters < 0 ? "--:--" : minutesAndSeconds(quarters / 4);
}

}  // namespace tonvane

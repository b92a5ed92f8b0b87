// The wave file player, without its controls.
#pragma once

#include <cstdint>
#include <string>

#include "stream/StreamEngine.h"

namespace tonvane {

// Positions are in quarter seconds, the steps of a slider. All on the engine's owning thread.
class WavePlayer {
  public:
    // The engine outlives the player.
    explicit WavePlayer(CStreamEngine& streamEngine) : engine(streamEngine) {}

    // Ends what runs and makes a file the current one. False, with no file and nothing to slide
    // over, if it cannot be used.
    bool OpenWaveFile(const std::string& path);

    // Starts, pauses or resumes. False when a start has failed.
    bool Play();

    void Stop();

    // Playing goes on there, or begins there.
    void Seek(double quarters);

    // Where playing has got to, cut to a whole quarter; the end of the file is the slider's.
    [[nodiscard]] int32_t PositionQuarters() const;

    // Whether the engine plays or measures.
    [[nodiscard]] bool isActive() const { return engine.playing || engine.capturing; }

    // "MM:SS" of a position, "--:--" for a negative one.
    static std::string PositionText(int32_t quarters);

    CStreamEngine& engine;
    double durationQuarters = 0.0;  // of the file, not rounded
    int32_t rangeQuarters = 0;      // of the slider; 0 without a file
    std::string durationText{};     // " / MM:SS"; empty until a file has been opened or refused
    static constexpr const char* noFileText = " / --:--";
};

}  // namespace tonvane

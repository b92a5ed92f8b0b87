// The source that plays a wave file.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "stream/DspStream.h"
#include "stream/StreamNotify.h"
#include "wavefile/WaveFile.h"

namespace tonvane {

// Load, Reopen and RequestSeek run on the owner's thread, ReadBlock on the file worker, the two
// times may be asked for on any.
class CInputWaveFileStream : public CDspStream {
  public:
    // The status outlives the stage; its receiver is told of a file that cannot be opened.
    explicit CInputWaveFileStream(StreamStatus& status) : status_(status) {}

    // Makes a file the current one and reads its format and length; null for none. False, with a
    // rate of 0, if it cannot be used.
    bool Load(const char* newPath);

    // Opens the current file and the chain for a playback.
    bool Reopen();

    [[nodiscard]] double DurationSeconds() const;

    // Of the next frame that is read, or asked for.
    [[nodiscard]] double PositionSeconds() const;

    // Reading goes on there with the next block. Of several requests the newest counts.
    void RequestSeek(double seconds);

    // Reads a block and pumps it; whether there is more data behind it. A block in which the file
    // ends is filled from the file's start, so that only a file of whole blocks comes to an end.
    // With `once` it is filled with silence, and every file does. A file that cannot be read any
    // more ends there.
    bool ReadBlock();

    // Whether the last playback has ended so. To be asked when nothing plays.
    [[nodiscard]] bool isBroken() const { return file_.isBroken(); }

    bool Open() override;
    void Close() override;
    void Process(const double* /*in*/, double* /*out*/) override {}

    int32_t blockFrames = 256;
    bool once = false;         // set while nothing plays
    bool takesFloats = false;  // as in CWaveFile; set ahead of Load
    std::string path;          // empty for none
    WAVEFORMATEX format;
    std::atomic<int32_t> totalFrames{0};
    std::atomic<int32_t> currentFrame{0};
    std::atomic<int32_t> seekTarget{-1};  // frame; written ahead of seekRequested
    std::atomic<int32_t> seekServed{0};
    std::atomic<int32_t> seekRequested{0};

  private:
    void seek(int32_t frame);
    void clearPosition();

    StreamStatus& status_;
    CWaveFile file_;
};

}  // namespace tonvane

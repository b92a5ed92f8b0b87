// One direction of an ALSA device: 16-bit interleaved frames.
//
// Results are those of the library: frames, or a negative error number.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "device/WaveFormat.h"

struct _snd_pcm;  // NOLINT(bugprone-reserved-identifier): the library's own name

namespace tonvane {

class AlsaPcm {
  public:
    enum class Direction { capture, play };

    AlsaPcm();
    ~AlsaPcm();
    AlsaPcm(const AlsaPcm&) = delete;
    AlsaPcm& operator=(const AlsaPcm&) = delete;

    // Opens a PCM of the ALSA configuration, prepared and not running, with periods of about 1024
    // frames and a buffer of about `bufferFrames`. Empty, or a sentence that says why not.
    std::string Open(const std::string& name, Direction direction, const WAVEFORMATEX& format,
                     int32_t bufferFrames);
    void Close();
    [[nodiscard]] bool isOpen() const { return pcm_ != nullptr; }

    int Prepare();
    int Start();
    int Drop();

    // Waits until a period can be moved: above 0 if one can, 0 after the time.
    int Wait(int32_t milliseconds);

    // Frames that can be moved at once.
    int32_t Available();

    // Frames of the buffer that have yet to be heard; 0 if it cannot be told.
    int32_t Delay();

    int32_t Read(void* frames, int32_t count);
    int32_t Write(const void* frames, int32_t count);

    // After an error: 0 if it was a gap in the stream, which is prepared again and not running;
    // negative if the device is lost.
    int Recover(int32_t error);

    [[nodiscard]] int32_t bufferFrames() const { return bufferFrames_; }

  private:
    struct Closer {
        void operator()(_snd_pcm* pcm) const;
    };

    int setParameters(const WAVEFORMATEX& format, int32_t bufferFrames);

    std::unique_ptr<_snd_pcm, Closer> pcm_;
    int32_t bufferFrames_ = 0;
};

}  // namespace tonvane

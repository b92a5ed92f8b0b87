// One block of samples between two stages.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

namespace tonvane {

// Samples are doubles at full scale +-1.0, except in the two places where a device's raw samples
// stand at the front of the storage (CWaveOutStream's deviceBuffer, CWaveInStream while it reads).
// The storage is the buffer's own, or, in an attached buffer, that of another one.
class CStreamBuffer {
  public:
    CStreamBuffer() = default;
    CStreamBuffer(const CStreamBuffer&) = delete;
    CStreamBuffer& operator=(const CStreamBuffer&) = delete;

    // Storage of its own for channels * frames zeros, with position 0. False while attached, with
    // nothing changed, and when memory runs out, which leaves the buffer empty.
    bool Allocate(int32_t newChannels, int32_t newFrames, bool newInterleaved);

    // Lets the buffer stand for memory of another one, which outlives the attachment; position 0.
    // False, with nothing changed, if it is attached or has storage already.
    bool Attach(double* memory, int32_t newChannels, int32_t newFrames, bool newInterleaved);

    // Makes an attached buffer empty; does nothing to another.
    void Detach();

    // Writes zeros from `position` to the end of every channel.
    void ZeroTail();

    [[nodiscard]] std::span<double> samples() const {
        return {data, static_cast<size_t>(channels) * static_cast<size_t>(frames)};
    }

    double* data = nullptr;
    int32_t channels = 0;
    int32_t frames = 0;       // capacity
    int32_t position = 0;     // frames filled or consumed so far
    bool interleaved = true;  // true: frame by frame; false: one run of `frames` per channel
    bool attached = false;    // true: `data` belongs to another buffer

  private:
    void set(double* memory, int32_t newChannels, int32_t newFrames, bool newInterleaved);

    std::unique_ptr<double[]> owned_;
};

// Moves frames from source.position to destination.position, as many as both have left, and
// advances both; their channel counts agree. Returns the frames moved.
int32_t MoveFrames(CStreamBuffer& source, CStreamBuffer& destination);

}  // namespace tonvane

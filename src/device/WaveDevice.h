// The one audio device of the program: a full-duplex pipe of integer samples that blocks its
// caller.
//
// Who calls what: Open, WaitFilled, Start, Stop, Close and refusal on the thread that owns the
// engine; Write, FlushOutput and WaitEmpty on the one output worker (which may also Start and
// Stop); Read on the one capture worker. Read and Write run at the same time. Samples are
// little-endian signed integers of BitsPerSample bits.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "device/WaveFormat.h"

namespace tonvane {

// Shows the person an error in a box with the caption "Error", for the devices that do so by
// themselves. On the thread of whoever opens or chooses the device.
using ShowDeviceError = std::function<void(const std::string& text)>;

class CWaveDevice {
  public:
    CWaveDevice() = default;
    CWaveDevice(const CWaveDevice&) = delete;
    CWaveDevice& operator=(const CWaveDevice&) = delete;

    // Closes and frees all.
    virtual ~CWaveDevice() = default;

    // Opens the directions whose format is given; the device stays stopped. `frames` is the depth
    // of the queue of each direction. `notify` is the receiver of platform messages; a device that
    // has none ignores it. False, with the device closed, when a direction cannot be opened.
    virtual bool Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
                      void* notify) = 0;

    // Stops and releases the platform's side. Wakes a blocked Read or Write.
    virtual void Close() = 0;

    // Starts both directions.
    virtual bool Start() = 0;

    // Stops both directions. The queues stay, and a blocked Read or Write stays blocked.
    virtual void Stop() = 0;

    // Blocks until `frames` frames have been copied out, or queued; returns the frames copied,
    // fewer only when the direction is not open or was closed meanwhile.
    virtual int Read(void* data, int frames) = 0;
    virtual int Write(const void* data, int frames) = 0;

    // Hands over a partly filled unit of the output.
    virtual void FlushOutput() = 0;

    // Blocks until the output queue is full: called between the start of the workers and Start, so
    // that the device never starts on an empty queue.
    virtual void WaitFilled() = 0;

    // Blocks until the output queue has been played.
    virtual void WaitEmpty() = 0;

    // Layout of what Read and Write carry: frames, or all of channel 0 ahead of channel 1.
    virtual bool IsInterleaved() = 0;

    // Bits of the samples that Read and Write carry; a multiple of 8, known before Open.
    virtual int BitsPerSample() = 0;

    // Frames to throw away from the capture so that capture and playback line up.
    virtual int Latency() = 0;

    // What went wrong in a run, for whoever has to decide whether its capture is good.

    // Gaps since Open in what was played or captured: the platform's own, and moments at which a
    // worker was too late with the next samples or with taking them. Any thread.
    [[nodiscard]] virtual int32_t xruns() const = 0;

    // Whether the device has been lost since Open: nothing more will be played or captured, and
    // Read and Write return at once. Any thread.
    [[nodiscard]] virtual bool isLost() const = 0;

    // Why the last Open was refused, as a sentence for the person without its full stop; empty if
    // it was not.
    [[nodiscard]] virtual std::string refusal() const = 0;
};

}  // namespace tonvane

// A stage of a chain through which all audio moves.
//
// A stage is pushed to by its neighbour upstream until its input block is full, transforms that
// block and pushes the result to its neighbour downstream, so that a block of any size feeds a
// stage with blocks of any other size. A chain is touched by one thread at a time.
#pragma once

#include "device/WaveFormat.h"
#include "stream/StreamBuffer.h"

namespace tonvane {

class CDspStream {
  public:
    CDspStream() = default;
    CDspStream(const CDspStream&) = delete;
    CDspStream& operator=(const CDspStream&) = delete;
    virtual ~CDspStream() = default;

    // Runs a partly filled input block, its tail zeroed, and flushes the stages downstream.
    virtual void Flush();

    // Transforms one block.
    virtual void Process(const double* in, double* out) = 0;

    // Called when the formats are set: makes the buffers, and may change outputFormat, which is
    // what the next stage receives.
    virtual bool Open() { return true; }

    virtual void Close() {}

    // Opens the chain from here on, head first. False if a stage does not open; every stage up to
    // that one has then been closed.
    bool Configure(const WAVEFORMATEX& format);

    // Closes the chain from here on, tail first.
    void CloseChain();

    // Runs one full input block through this stage and hands the result on.
    void Pump();

    // Takes what the source holds from its position on, pumping whenever the input block is full. A
    // source with another channel count is left alone.
    void Push(CStreamBuffer& source);

    // For a source: fills `count` frames of the output block with value / 2^(output bits - 1),
    // pumping whenever it is full.
    void PushConstant(int32_t value, int32_t count);

    CDspStream* next = nullptr;  // null at the end of a chain
    WAVEFORMATEX inputFormat;
    WAVEFORMATEX outputFormat;
    CStreamBuffer inputBuffer;
    CStreamBuffer outputBuffer;
    CStreamBuffer deviceBuffer;  // raw device samples, of CWaveOutStream alone
};

}  // namespace tonvane

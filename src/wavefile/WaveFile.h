// A wave file of integer samples, for reading or for writing.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "device/WaveFormat.h"
#include "wavefile/RiffFile.h"
#include "wavefile/SampleBytes.h"

namespace tonvane {

class CWaveFile {
  public:
    // Makes a file and writes its head: Write puts samples behind it, Close fills in the sizes.
    // bits 1 to 32, stored in whole bytes. False, with a line on standard error, when the file
    // cannot be made.
    bool Create(const std::string& path, int32_t rate, int32_t bits, int32_t channels);

    // Reads the head, whatever chunks stand between its parts; the position is then the first
    // sample. `bits` comes out rounded up to whole bytes. The format tag is not looked at unless
    // takesFloats is set: samples that are no integers are read as integers of their size. False,
    // with nothing open, for everything without a usable head: no format or no data chunk, no
    // channel, more than 32 bits or none.
    bool Open(const std::string& path, int32_t& rate, int32_t& bits, int32_t& channels);

    void Close() { riff.Close(); }

    [[nodiscard]] bool isOpen() const { return riff.isOpen(); }

    // Of the file that was opened last: the format tag, that of the extension where there is one.
    [[nodiscard]] uint32_t sampleTag() const { return sampleTag_; }
    static constexpr uint32_t integers = 1;
    static constexpr uint32_t floats = 3;

    // Open takes float32 samples for what they are.
    bool takesFloats = false;

    // Reading: whole frames from the position to the end of the data; 0 without an open file and
    // in a broken one.
    [[nodiscard]] int32_t FramesLeft() const;

    // Whether the file that was opened last could not be read where it should have samples.
    [[nodiscard]] bool isBroken() const { return broken; }

    // Reading: puts the position at a frame, counted from the first. Behind the end no frames are
    // left.
    void SeekFrame(int64_t frame);

    // Reads whole frames, interleaved, at full scale 1.0. Samples that cannot be read come out as
    // if their bytes were 0; if they were promised by FramesLeft, the file is broken.
    void Read(double* samples, int32_t frames);

    // Writes samples at full scale 1.0 as they stand, interleaved by whoever gives them; Encode of
    // SampleBytes tells how. A full disk is not noticed.
    void Write(std::span<const double> samples);

  private:
    bool readHead(int32_t& rate, int32_t& bits, int32_t& channels);
    bool findChunk(RiffTag wanted);

    CRiffFile riff;
    WAVEFORMATEX head;
    SampleBytes coding;
    uint32_t sampleTag_ = 0;
    bool broken = false;
    std::vector<uint8_t> bytes;  // of the block that is moved
};

}  // namespace tonvane

// A RIFF file: nested chunks, each a tag, a size and its content, all little-endian.
//
// The open chunks form a stack, the outermost first. Reports go to standard error, one line each;
// the caller sees only false.
#pragma once

#include <cstdint>
#include <cstdio>
#include <deque>
#include <string>

#include "platform/System.h"

namespace tonvane {

// Four characters as they stand in the file.
using RiffTag = uint32_t;

constexpr RiffTag MakeRiffTag(const char (&text)[5]) {
    RiffTag tag = 0;
    for (int i = 3; i >= 0; --i) {
        tag = tag << 8U | static_cast<unsigned char>(text[i]);
    }
    return tag;
}

class CRiffFile {
  public:
    enum class Mode : int32_t { closed, reading, writing };

    // Positions and sizes in bytes. `size` is 0 on writing, where `end` equals `start`.
    struct Chunk {
        int64_t start = 0;  // right behind the size
        int64_t end = 0;
        int64_t size = 0;
    };

    CRiffFile() = default;
    ~CRiffFile() { Close(); }
    CRiffFile(const CRiffFile&) = delete;
    CRiffFile& operator=(const CRiffFile&) = delete;

    // Makes the file, with its outermost chunk open behind the form tag. A file that is there loses
    // its contents. False when a file is open already or this one cannot be made.
    bool OpenForWriting(const std::string& path, RiffTag formTag);

    // Opens a file that begins with a RIFF chunk, and reads its form tag. False, with nothing open,
    // for any other file; false, with the open file left alone, when one is open already.
    bool OpenForReading(const std::string& path, RiffTag& formTag);

    // Writing: opens a chunk inside the top one.
    void BeginChunk(RiffTag tag);

    // Reading: opens the chunk at the present position. False when there is none, or no open file.
    // A size that leads beyond the end of the file is cut there.
    bool NextChunk(RiffTag& tag);

    // Closes the top chunk: reading, the position goes to its end; writing, its size is filled in.
    void EndChunk();

    // Closes all chunks and the file.
    void Close();

    // Reading: bytes from the position to the end of the top chunk, 0 behind its end. Writing:
    // bytes of it so far. -1 without an open file.
    [[nodiscard]] int64_t Remaining() const;

    // Puts the position so many bytes behind the start of the top chunk.
    void SeekInChunk(int64_t offset);

    // What fread and fwrite say: the number of bytes that were moved.
    size_t Read(void* data, size_t bytes);
    size_t Write(const void* data, size_t bytes);

    [[nodiscard]] bool isOpen() const { return file != nullptr; }

  private:
    bool openFile(const std::string& path, const char* openMode, const char* purpose);

    FilePointer file;
    std::deque<Chunk> chunks;
    Mode mode = Mode::closed;
    int64_t fileEnd = 0;  // reading: the length of the file
};

}  // namespace tonvane

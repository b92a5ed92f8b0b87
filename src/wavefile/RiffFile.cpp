#include "wavefile/RiffFile.h"

#include <algorithm>
#include <array>

#include "text/LittleEndian.h"

namespace tonvane {

namespace {

constexpr RiffTag riffTag = MakeRiffTag("RIFF");

using Word = std::array<uint8_t, 4>;

bool readWord(std::FILE* file, uint32_t& value) {
    Word bytes{};
    if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) {
        return false;
    }
    value = LoadLittleEndian<uint32_t>(bytes);
    return true;
}

void writeWord(std::FILE* file, uint32_t value) {
    Word bytes{};
    StoreLittleEndian(value, bytes);
    std::fwrite(bytes.data(), 1, bytes.size(), file);
}

}  // namespace

bool CRiffFile::openFile(const std::string& path, const char* openMode, const char* purpose) {
    if (file) {
        std::fprintf(stderr, "file already open\n");
        return false;
    }
    file = OpenFile(path, openMode);
    if (!file) {
        std::fprintf(stderr, "can't open file %s for %s\n", path.c_str(), purpose);
        return false;
    }
    return true;
}

bool CRiffFile::OpenForWriting(const std::string& path, RiffTag formTag) {
    if (!openFile(path, "wb", "writing")) {
        return false;
    }
    mode = Mode::writing;
    BeginChunk(riffTag);
    writeWord(file.get(), formTag);
    return true;
}

bool CRiffFile::OpenForReading(const std::string& path, RiffTag& formTag) {
    if (!openFile(path, "rb", "reading")) {
        return false;
    }
    mode = Mode::reading;
    SeekFile(file.get(), 0, SEEK_END);
    fileEnd = TellFile(file.get());
    SeekFile(file.get(), 0);
    RiffTag tag = 0;
    if (!NextChunk(tag) || tag != riffTag || !readWord(file.get(), formTag)) {
        Close();
        return false;
    }
    return true;
}

void CRiffFile::BeginChunk(RiffTag tag) {
    if (!file) {
        return;
    }
    writeWord(file.get(), tag);
    writeWord(file.get(), 0);
    const int64_t start = TellFile(file.get());
    chunks.push_back({start, start, 0});
}

bool CRiffFile::NextChunk(RiffTag& tag) {
    uint32_t size = 0;
    if (!file || !readWord(file.get(), tag) || !readWord(file.get(), size)) {
        return false;
    }
    const int64_t start = TellFile(file.get());
    const int64_t end = std::min(start + int64_t{size}, std::max(start, fileEnd));
    chunks.push_back({start, end, end - start});
    return true;
}

void CRiffFile::EndChunk() {
    if (!file) {
        return;
    }
    if (chunks.empty()) {
        std::fprintf(stderr, "no chunk to close\n");
        return;
    }
    const Chunk chunk = chunks.back();
    chunks.pop_back();
    if (mode == Mode::reading) {
        SeekFile(file.get(), chunk.end);
        return;
    }
    const int64_t position = TellFile(file.get());
    SeekFile(file.get(), chunk.start - 4);
    writeWord(file.get(), static_cast<uint32_t>(position - chunk.start));
    SeekFile(file.get(), position);
}

void CRiffFile::Close() {
    while (file && !chunks.empty()) {
        EndChunk();
    }
    chunks.clear();
    file.reset();
    mode = Mode::closed;
}

int64_t CRiffFile::Remaining() const {
    if (!file) {
        return -1;
    }
    if (chunks.empty()) {
        return 0;
    }
    const int64_t position = TellFile(file.get());
    const Chunk& top = chunks.back();
    const int64_t bytes = mode == Mode::reading ? top.end - position : position - top.start;
    return std::max<int64_t>(bytes, 0);
}

void CRiffFile::SeekInChunk(int64_t offset) {
    if (file && !chunks.empty()) {
        SeekFile(file.get(), chunks.back().start + offset);
    }
}

size_t CRiffFile::Read(void* data, size_t bytes) {
    return file ? std::fread(data, 1, bytes, file.get()) : 0;
}

size_t CRiffFile::Write(const void* data, size_t bytes) {
    return file ? std::fwrite(data, 1, bytes, file.get()) : 0;
}

}  // namespace tonvane

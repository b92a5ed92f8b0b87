// Opening, reading and replacing files. Paths are UTF-8 on every system.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

namespace tonvane {

// A path of the standard library, and back. Its own conversion of texts is another one on Windows.
std::filesystem::path PathOf(const std::string& text);
std::string TextOf(const std::filesystem::path& path);

// Whether a file of this name is the program's standard output. Sending what the program prints to
// standard error from now on leaves standard output to such files.
bool IsStandardOutput(const std::string& path);
void PrintToStandardError();

// Whether two paths lead to one file, under whatever names: by links, by another way to its folder.
// The file need not be there.
bool IsSameFile(const std::string& a, const std::string& b);

// The longest text that is read from a file; longer files are cut there.
constexpr size_t longestText = size_t{16} << 20U;

// Why a file has not been read.
struct ReadFault {
    bool isMissing = false;  // there is no such file
    bool wasOpened = false;  // but could not be read to its end
    std::string reason;      // in the system's words
};

// The contents of a text file with CR LF line ends turned into LF, at most longestText bytes.
// Nothing when the file cannot be opened, is a folder, or cannot be read to its end, as `fault`
// tells if it is given.
std::optional<std::string> ReadTextFile(const std::string& path, ReadFault* fault = nullptr);

// The contents as they are, at most `most` bytes; nothing as above.
std::optional<std::string> ReadBinaryFile(const std::string& path, size_t most,
                                          ReadFault* fault = nullptr);

// What becomes of a file whose folder does not take a new file.
enum class InPlace { never, whenFolderRefuses };

struct NewContents {
    std::string path;
    std::string contents;
};

struct WriteFailure {
    std::string path;
    std::string reason;
};

// Replaces the contents of files, all or none. They are written beside each file under a temporary
// name and brought to the disk, and only when all are there renamed, so that a file is at every
// moment the old or the new one, whole; should a renaming fail, those before it are put back. What
// would end the program from outside waits meanwhile. What is no regular file (a pipe, a terminal)
// is written directly before, and a symbolic link keeps pointing where it did. A file keeps its
// permissions and, where it may, its owner. An existing file that may not be written is left alone.
// On failure the first file that could not be written is returned, and no regular file has changed.
// With whenFolderRefuses an existing file is overwritten in place where the way over a temporary
// name is barred.
std::optional<WriteFailure> ReplaceFiles(std::span<const NewContents> files,
                                         InPlace inPlace = InPlace::never);

// The same for one file; the reason of a failure.
std::optional<std::string> ReplaceFile(const std::string& path, const std::string& contents,
                                       InPlace inPlace = InPlace::never);

}  // namespace tonvane

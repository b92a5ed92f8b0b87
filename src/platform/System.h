// What a program asks of the system that it runs on. Texts and paths are UTF-8 on every system.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tonvane {

// The words that the program was started with, without its own name; what main was given. On
// Windows they are taken from the command line in UTF-16 instead.
std::vector<std::string> ProgramArguments(int argc, const char* const* argv);

// Keeps the numbers of standard input, output and error from the files and sockets that the program
// opens, where it was started without them: a socket would get what is printed. Reading and writing
// fail as they did. At the start of a program.
void KeepStandardStreams();

// The rest of the command line behind the program's name and its blanks, as it was typed; nothing
// where the system does not keep it but hands over words alone (all but Windows).
std::optional<std::string> CommandLineAsTyped();

// Whether standard output goes to a terminal, where a person watches it.
bool IsTerminal();

// The text with LF turned into what ends a line on this system: CR LF on Windows, LF elsewhere. For
// files that other programs of this computer read.
std::string WithSystemLineEnds(std::string text);

struct FileCloser {
    // The unique_ptr below is the owner.
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory)
    void operator()(std::FILE* open) const { std::fclose(open); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

// As fopen; null on failure.
FilePointer OpenFile(const std::string& path, const char* mode);

// Positions in files of any length, where those of the C library may have 32 bits. From the start,
// or with `whence` as in fseek.
void SeekFile(std::FILE* file, int64_t position, int whence = SEEK_SET);
int64_t TellFile(std::FILE* file);

}  // namespace tonvane

#include "platform/FileAccess.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <random>
#include <vector>

namespace tonvane {

namespace fs = std::filesystem;

namespace {

bool isFolder(const fs::path& path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

std::string reasonOf(int error) {
    return error == 0 ? "unknown reason" : std::strerror(error);
}

// Writes and closes; the reason of a failure, such as a full disk.
std::optional<std::string> writeTo(const fs::path& path, const std::string& contents) {
    errno = 0;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    out.close();
    if (out.fail()) {
        return reasonOf(errno);
    }
    return std::nullopt;
}

// Whether an existing file may be written, found without changing it.
std::optional<std::string> refusalToWrite(const fs::path& path) {
    errno = 0;
    if (std::ofstream(path, std::ios::binary | std::ios::app).is_open()) {
        return std::nullopt;
    }
    return reasonOf(errno);
}

// What a path's symbolic links lead to, whether that exists or not.
fs::path followLinks(fs::path path) {
    constexpr int mostLinks = 40;
    std::error_code error;
    for (int i = 0; i < mostLinks && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return path;
}

// Short, so that every name that a file can have is one that can be replaced.
fs::path temporaryBeside(const fs::path& target) {
    std::random_device random;
    return target.parent_path() / (".tonvane-" + std::to_string(random()) + ".tmp");
}

// A file whose new contents are ready.
struct Staged {
    fs::path target;
    fs::path temporary;    // has the contents; empty if the target is to be written directly
    bool mayWriteInPlace;  // if the temporary cannot take the target's place
};

// Brings the contents beside the file without touching it; the reason of a failure.
std::optional<std::string> stage(const NewContents& file, InPlace inPlace, Staged& staged) {
    staged.target = followLinks(PathOf(file.path));
    std::error_code error;
    const fs::file_status status = fs::status(staged.target, error);
    const bool exists = fs::exists(status);
    staged.mayWriteInPlace = exists && inPlace == InPlace::whenFolderRefuses;
    if (status.type() == fs::file_type::none) {
        return error.message();
    }
    if (fs::is_directory(status)) {
        return reasonOf(EISDIR);
    }
    if (exists && !fs::is_regular_file(status)) {
        return std::nullopt;
    }
    if (exists) {
        if (auto refusal = refusalToWrite(staged.target)) {
            return refusal;
        }
    }

    const fs::path temporary = temporaryBeside(staged.target);
    if (auto failure = writeTo(temporary, file.contents)) {
        const bool folderRefuses = !fs::remove(temporary, error);
        return folderRefuses && staged.mayWriteInPlace ? std::nullopt : failure;
    }
    if (exists) {
        fs::permissions(temporary, status.permissions(), error);
    }
    staged.temporary = temporary;
    return std::nullopt;
}

// Puts the staged contents into the file's place.
std::optional<std::string> finish(const Staged& staged, const std::string& contents) {
    if (staged.temporary.empty()) {
        return writeTo(staged.target, contents);
    }
    std::error_code error;
    fs::rename(staged.temporary, staged.target, error);
    if (!error) {
        return std::nullopt;
    }
    const std::string reason = error.message();
    fs::remove(staged.temporary, error);
    return staged.mayWriteInPlace ? writeTo(staged.target, contents) : reason;
}

void discard(const std::vector<Staged>& files) {
    for (const Staged& staged : files) {
        std::error_code ignored;
        if (!staged.temporary.empty()) {
            fs::remove(staged.temporary, ignored);
        }
    }
}

}  // namespace

fs::path PathOf(const std::string& text) {
    return {std::u8string(text.begin(), text.end())};
}

std::string TextOf(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

bool IsSameFile(const std::string& a, const std::string& b) {
    std::error_code ignored;
    const auto place = [&](const std::string& path) {
        return fs::weakly_canonical(followLinks(fs::absolute(PathOf(path), ignored)), ignored);
    };
    return place(a) == place(b) || fs::equivalent(PathOf(a), PathOf(b), ignored);
}

std::optional<std::string> ReadBinaryFile(const std::string& path, size_t most, ReadFault* fault) {
    const fs::path place = PathOf(path);
    errno = 0;
    std::ifstream in(place, std::ios::binary);
    const bool wasOpened = in.is_open() && !isFolder(place);
    std::string contents;
    std::string block(size_t{64} << 10U, '\0');
    while (wasOpened && in && contents.size() < most) {
        const size_t wanted = std::min(block.size(), most - contents.size());
        in.read(block.data(), static_cast<std::streamsize>(wanted));
        contents.append(block, 0, static_cast<size_t>(in.gcount()));
    }
    if (wasOpened && !in.bad()) {
        return contents;
    }
    if (fault != nullptr) {
        const int error = in.is_open() && !wasOpened ? EISDIR : errno;
        *fault = {error == ENOENT || error == ENOTDIR, wasOpened, reasonOf(error)};
    }
    return std::nullopt;
}

std::optional<std::string> ReadTextFile(const std::string& path, ReadFault* fault) {
    std::optional<std::string> text = ReadBinaryFile(path, longestText, fault);
    if (text) {
        size_t kept = 0;
        for (size_t i = 0; i < text->size(); ++i) {
            const bool lineEnd =
                (*text)[i] == '\r' && i + 1 < text->size() && (*text)[i + 1] == '\n';
            if (!lineEnd) {
                (*text)[kept++] = (*text)[i];
            }
        }
        text->resize(kept);
    }
    return text;
}

std::optional<WriteFailure> ReplaceFiles(std::span<const NewContents> files, InPlace inPlace) {
    std::vector<Staged> all(files.size());
    for (size_t i = 0; i < files.size(); ++i) {
        if (const auto reason = stage(files[i], inPlace, all[i])) {
            discard(all);
            return WriteFailure{files[i].path, *reason};
        }
    }
    // What is written directly can still fail for want of room, so it goes first.
    for (const bool direct : {true, false}) {
        for (size_t i = 0; i < files.size(); ++i) {
            if (all[i].temporary.empty() != direct) {
                continue;
            }
            if (const auto reason = finish(all[i], files[i].contents)) {
                discard(all);
                return WriteFailure{files[i].path, *reason};
            }
        }
    }
    return std::nullopt;
}

std::optional<std::string> ReplaceFile(const std::string& path, const std::string& contents,
                                       InPlace inPlace) {
    const NewContents file{path, contents};
    const auto failure = ReplaceFiles(std::span(&file, 1), inPlace);
    return failure ? std::optional(failure->reason) : std::nullopt;
}

}  // namespace tonvane

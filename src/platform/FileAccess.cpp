#include "platform/FileAccess.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <random>
#include <utility>
#include <vector>

#include "platform/FileWriting.h"

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
std::optional<std::string> writeTo(FilePointer file, const std::string& contents, bool toDisk) {
    if (!file) {
        return reasonOf(errno);
    }
    errno = 0;
    const bool written =
        std::fwrite(contents.data(), 1, contents.size(), file.get()) == contents.size() &&
        std::fflush(file.get()) == 0 && (!toDisk || SyncFile(file.get()));
    const int error = errno;
    const bool closed = std::fclose(file.release()) == 0;
    if (written && closed) {
        return std::nullopt;
    }
    return reasonOf(written ? errno : error);
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
    for (int i = 0; i < mostLinks && !IsDescriptorName(path) &&
                    fs::is_symlink(fs::symlink_status(path, error));
         ++i) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return path;
}

// Short, so that every name that a file can have is one that can be replaced.
fs::path temporaryBeside(const fs::path& target) {
    std::random_device random;
    return target.parent_path() / (".tonvane-" + std::to_string(random()) + ".tmp");
}

// A file that is to be replaced.
struct Staged {
    const NewContents* file = nullptr;
    fs::path target{};
    bool existed = false;
    bool isDirect = false;         // no regular file, which is written as it is
    bool mayWriteInPlace = false;  // if no temporary can take the target's place
    fs::path temporary{};          // has the new contents
    fs::path backup{};             // has the old ones, if they may have to be put back
};

using Reason = std::optional<std::string>;

// Finds out whether the file can be replaced without touching it; the reason of a refusal.
Reason inspect(const NewContents& file, InPlace inPlace, Staged& staged) {
    staged.file = &file;
    staged.target = followLinks(PathOf(file.path));
    std::error_code error;
    const fs::file_status status = fs::status(staged.target, error);
    staged.existed = fs::exists(status);
    staged.isDirect = IsDescriptorName(staged.target) ||
                      (staged.existed && !fs::is_regular_file(status) && !fs::is_directory(status));
    staged.mayWriteInPlace = staged.existed && inPlace == InPlace::whenFolderRefuses;
    if (staged.isDirect) {
        return std::nullopt;
    }
    if (status.type() == fs::file_type::none) {
        return error.message();
    }
    if (fs::is_directory(status)) {
        return reasonOf(EISDIR);
    }
    return staged.existed ? refusalToWrite(staged.target) : std::nullopt;
}

// Brings the contents to the disk beside the file without touching it; the reason of a failure.
Reason stage(Staged& staged) {
    const fs::path temporary = temporaryBeside(staged.target);
    FilePointer file = MakeNewFile(temporary, staged.existed ? &staged.target : nullptr);
    if (!file) {
        const int error = errno;
        const bool folderRefuses = error == EACCES || error == EPERM;
        return folderRefuses && staged.mayWriteInPlace ? std::nullopt : Reason(reasonOf(error));
    }
    staged.temporary = temporary;
    return writeTo(std::move(file), staged.file->contents, true);
}

// A second name for the old contents, or a copy where a file has but one name.
Reason backUp(Staged& staged) {
    if (!staged.existed) {
        return std::nullopt;
    }
    staged.backup = temporaryBeside(staged.target);
    std::error_code error;
    fs::create_hard_link(staged.target, staged.backup, error);
    if (error) {
        fs::copy_file(staged.target, staged.backup, error);
    }
    return error ? Reason(error.message()) : std::nullopt;
}

// Puts the staged contents into the file's place.
Reason finish(Staged& staged) {
    std::error_code error;
    if (!staged.temporary.empty()) {
        fs::rename(staged.temporary, staged.target, error);
        if (!error) {
            staged.temporary.clear();
            return std::nullopt;
        }
    }
    return staged.mayWriteInPlace ? writeTo(OpenAsItIs(staged.target), staged.file->contents, true)
                                  : Reason(error.message());
}

// What finish has done is undone.
void putBack(Staged& staged) {
    std::error_code ignored;
    if (!staged.backup.empty()) {
        fs::rename(staged.backup, staged.target, ignored);
        staged.backup.clear();
    } else if (!staged.existed) {
        fs::remove(staged.target, ignored);
    }
}

void removeTemporaries(const std::vector<Staged>& files) {
    for (const Staged& staged : files) {
        for (const fs::path& path : {staged.temporary, staged.backup}) {
            std::error_code ignored;
            if (!path.empty()) {
                fs::remove(path, ignored);
            }
        }
    }
}

// Does a step for each file up to the first that fails; `next` is where it stopped.
template <typename Step>
std::optional<WriteFailure> forEach(std::span<Staged> files, size_t& next, Step step) {
    for (next = 0; next < files.size(); ++next) {
        if (Reason reason = step(files[next])) {
            return WriteFailure{files[next].file->path, *std::move(reason)};
        }
    }
    return std::nullopt;
}

// Replaces regular files, all of them or none.
std::optional<WriteFailure> replaceRegular(std::vector<Staged>& files) {
    const HeldSignals held(HeldSignals::Interrupts::held);
    const std::span all(files);
    size_t next = 0;
    auto failure = forEach(all, next, stage);
    if (!failure && !all.empty()) {
        // The last one is either replaced or what went before is put back.
        failure = forEach(all.first(all.size() - 1), next, backUp);
    }
    if (!failure) {
        failure = forEach(all, next, finish);
        if (failure) {
            std::ranges::for_each(all.first(next), putBack);
        }
    }
    removeTemporaries(files);
    return failure;
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
    std::vector<Staged> direct;
    std::vector<Staged> regular;
    for (const NewContents& file : files) {
        Staged staged;
        if (const auto reason = inspect(file, inPlace, staged)) {
            return WriteFailure{file.path, *reason};
        }
        (staged.isDirect ? direct : regular).push_back(std::move(staged));
    }
    // Ahead of the others, which can still be left as they are: a pipe may have been closed, and
    // may keep its writer waiting until a person ends that.
    for (const Staged& staged : direct) {
        const HeldSignals held(HeldSignals::Interrupts::pass);
        if (const auto reason = writeTo(OpenAsItIs(staged.target), staged.file->contents, false)) {
            return WriteFailure{staged.file->path, *reason};
        }
    }
    return replaceRegular(regular);
}

std::optional<std::string> ReplaceFile(const std::string& path, const std::string& contents,
                                       InPlace inPlace) {
    const NewContents file{path, contents};
    const auto failure = ReplaceFiles(std::span(&file, 1), inPlace);
    return failure ? std::optional(failure->reason) : std::nullopt;
}

}  // namespace tonvane

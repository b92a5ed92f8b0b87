#include "ui/RecentFiles.h"

#include <algorithm>

#include "text/Ascii.h"

namespace tonvane {

namespace {

constexpr uint32_t defaultEntries = 16;  // read from a store that does not say how many there are
constexpr uint32_t maxEntries = 1000;    // looked for, whatever the store says
constexpr size_t maxPathBytes = 260 - 1;

std::string entryName(uint32_t index) {
    return "File" + std::to_string(index);
}

}  // namespace

void CPathComboBox::AddPath(const std::string& path) {
    if (path.empty()) {
        return;
    }
    const auto known = paths();
    const auto equal =
        std::ranges::find_if(known, [&](const std::string& p) { return IsSameWord(p, path); });
    if (equal != known.end()) {
        host_.deleteItem(id_, static_cast<int>(equal - known.begin()));
    } else if (static_cast<int>(known.size()) >= maxRecentFiles) {
        host_.deleteItem(id_, static_cast<int>(known.size()) - 1);
    }
    host_.insertItem(id_, 0, path);
    host_.select(id_, 0);
}

std::string CPathComboBox::selected() const {
    const int index = host_.selection(id_);
    return index < 0 ? std::string() : host_.item(id_, index);
}

std::vector<std::string> CPathComboBox::paths() const {
    std::vector<std::string> all;
    const int count = host_.itemCount(id_);
    all.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        all.push_back(host_.item(id_, i));
    }
    return all;
}

std::vector<std::string> ReadRecentFiles(const UserStore& store) {
    const uint32_t count = std::min(store.number("FileCount").value_or(defaultEntries), maxEntries);
    std::vector<std::string> paths;
    for (uint32_t i = 0; i < count; ++i) {
        const auto path = store.text(entryName(i));
        if (path && !path->empty() && path->size() <= maxPathBytes) {
            paths.push_back(*path);
        }
    }
    if (paths.size() > maxRecentFiles) {
        paths.erase(paths.begin(), paths.end() - maxRecentFiles);
    }
    return paths;
}

void WriteRecentFiles(UserStore& store, const std::vector<std::string>& paths) {
    const auto count = static_cast<uint32_t>(std::min<size_t>(paths.size(), maxRecentFiles));
    store.setNumber("FileCount", count);
    for (uint32_t i = 0; i < count; ++i) {
        store.setText(entryName(i), paths[i]);
    }
    for (uint32_t i = count; i < maxRecentFiles; ++i) {
        store.remove(entryName(i));
    }
    store.commit();
}

}  // namespace tonvane

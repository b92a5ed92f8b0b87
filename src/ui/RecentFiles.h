// The list of recent wave files: in a combo box while the program runs, in the user's store from
// one start to the next.
#pragma once

#include <string>
#include <vector>

#include "ui/DialogHost.h"
#include "ui/UserStore.h"

namespace tonvane {

constexpr int maxRecentFiles = 20;

// The combo box with the list, newest first. Paths are compared without regard to the case of
// letters.
class CPathComboBox {
  public:
    CPathComboBox(DialogHost& host, int id) : host_(host), id_(id) {}

    // Puts a path on top, where it is not empty, and selects it; an equal one goes, or else the
    // last of a full list.
    void AddPath(const std::string& path);

    // The selected path, empty for none.
    [[nodiscard]] std::string selected() const;

    [[nodiscard]] std::vector<std::string> paths() const;
    void enable(bool enabled) { host_.enable(id_, enabled); }

  private:
    DialogHost& host_;
    int id_;
};

// The paths that the store holds, newest first; at most 20, taken from the list's old end.
std::vector<std::string> ReadRecentFiles(const UserStore& store);

// Keeps at most 20 paths and forgets those that stood behind them.
void WriteRecentFiles(UserStore& store, const std::vector<std::string>& paths);

}  // namespace tonvane

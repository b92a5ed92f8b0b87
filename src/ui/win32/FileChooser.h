// The file dialogs of Windows.
#pragma once

#include <optional>
#include <string>

#include "ui/DialogHost.h"

namespace tonvane {

// Asks for a path, over the window that is active. The working directory stays what it is. Nothing
// when it was cancelled, or for a path that is longer than Windows takes here (259 characters).
std::optional<std::string> ChooseFile(const FileDialog& wanted);

}  // namespace tonvane

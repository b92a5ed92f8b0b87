// Window messages as messages of the dialog.
#pragma once

#include <optional>

#include "ui/DialogMessage.h"
#include "ui/win32/WindowsApi.h"

namespace tonvane {

// The dialog's message for a window message; nothing for one that is of no interest to it. The
// files of a drop are given back to Windows.
std::optional<DialogMessage> ToDialogMessage(UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace tonvane

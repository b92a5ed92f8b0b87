// Owners of what Windows gives out, each with the function that gives it back.
#pragma once

#include <memory>
#include <type_traits>

#include "ui/win32/WindowsApi.h"

namespace tonvane {

template <auto release>
struct Release {
    template <typename Handle>
    void operator()(Handle handle) const {
        release(handle);
    }
};

template <typename Handle, auto release>
using Owned = std::unique_ptr<std::remove_pointer_t<Handle>, Release<release>>;

using OwnedDc = Owned<HDC, DeleteDC>;
using OwnedBitmap = Owned<HBITMAP, DeleteObject>;
using OwnedFont = Owned<HFONT, DeleteObject>;
using OwnedPen = Owned<HPEN, DeleteObject>;
using OwnedMenu = Owned<HMENU, DestroyMenu>;
using OwnedKeys = Owned<HACCEL, DestroyAcceleratorTable>;
using OwnedRegistryKey = Owned<HKEY, RegCloseKey>;

}  // namespace tonvane

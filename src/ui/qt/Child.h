// Objects that belong to their Qt parent.
#pragma once

#include <memory>
#include <utility>

namespace tonvane {

// Makes one; a parent among the arguments, or the layout or widget that takes it, frees it.
template <typename Object, typename... Arguments>
Object* MakeChild(Arguments&&... arguments) {
    return std::make_unique<Object>(std::forward<Arguments>(arguments)...).release();
}

}  // namespace tonvane

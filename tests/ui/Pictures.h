// Comparing a picture with a reference.
#pragma once

#include <string>

#include "graph/Canvas.h"

namespace tonvane::tests {

// Expects a PNG file's bytes to look like the reference of this name in tests/data/pictures inside
// an area: the colours of every pixel lie within `tolerance` of those that the other picture has in
// the 3 by 3 pixels around it, with at most `strays` exceptions. The picture stays in the build
// folder as actual-NAME.
void ExpectLikeReference(const std::string& png, const std::string& name, const Rectangle& area,
                         int tolerance, int strays);

}  // namespace tonvane::tests

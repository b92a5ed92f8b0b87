#include "files/LineEnds.h"

namespace tonvane {

std::string WithSystemLineEnds(std::string text) {
    for (size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
        text.insert(at, 1, '\r');
    }
    return text;
}

}  // namespace tonvane

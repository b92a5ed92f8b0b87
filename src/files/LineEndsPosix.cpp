#include "files/LineEnds.h"

namespace tonvane {

std::string WithSystemLineEnds(std::string text) {
    return text;
}

}  // namespace tonvane

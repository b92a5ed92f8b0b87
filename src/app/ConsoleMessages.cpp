#include "app/ConsoleMessages.h"

#include <cstdio>

namespace tonvane {

void ConsoleMessages::error(const std::string& text) {
    std::fprintf(stderr, "Error: %s\n", text.c_str());
}

void ConsoleMessages::warning(const std::string& text) {
    std::fprintf(stderr, "Warning: %s\n", text.c_str());
}

bool ConsoleMessages::confirm(const std::string& /*text*/, const std::string& /*caption*/) {
    return true;
}

void ConsoleMessages::status(int /*line*/, const std::string& /*text*/, StatusNews /*news*/) {}

}  // namespace tonvane

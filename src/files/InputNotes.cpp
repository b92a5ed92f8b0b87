#include "files/InputNotes.h"

#include "files/InputError.h"

namespace tonvane {

void InputNotes::told(const std::string& file, const std::string& text) {
    texts_.push_back(file + ": " + text);
}

void InputNotes::guessed(const std::string& file, int line, const std::string& text) {
    const std::string place = line > 0 ? file + ":" + std::to_string(line) : file;
    if (strict_) {
        throw InputError(place, text + " (a guess, which --strict refuses)");
    }
    texts_.push_back(place + ": " + text);
}

}  // namespace tonvane

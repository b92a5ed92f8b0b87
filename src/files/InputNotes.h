// What a person is told about an input that was read: what was passed over, what was guessed.
#pragma once

#include <string>
#include <vector>

namespace tonvane {

class InputNotes {
  public:
    // With `strict` a guess is a refusal.
    explicit InputNotes(bool strict = false) : strict_(strict) {}

    // Something that needed no guess, such as header lines.
    void told(const std::string& file, const std::string& text);

    // Something that could have been meant otherwise; throws InputError if strict. Line 0: the
    // whole file.
    void guessed(const std::string& file, int line, const std::string& text);

    // One line each: the file, the line where there is one, what was done.
    [[nodiscard]] const std::vector<std::string>& texts() const { return texts_; }

  private:
    bool strict_;
    std::vector<std::string> texts_;
};

}  // namespace tonvane

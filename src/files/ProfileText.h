// Text in the form of the Windows profile functions: sections in brackets, lines of a key, an
// equals sign and a value. Names of sections and keys are compared without regard to case.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tonvane {

class ProfileText {
  public:
    ProfileText() = default;
    explicit ProfileText(std::string_view text);

    // The number in a key's value: a sign and digits, what follows them ignored, 0 without digits.
    // `missing` for a key that is not there or has nothing behind its equals sign.
    [[nodiscard]] int32_t integer(std::string_view section, std::string_view key,
                                  int32_t missing) const;

    // Replaces a key's value or adds the key, and the section where there is none. Everything else
    // stays as it is.
    void setInteger(std::string_view section, std::string_view key, int32_t value);

    [[nodiscard]] std::string text() const;

  private:
    struct Place {
        std::optional<size_t> key;  // the key's line
        size_t sectionEnd;          // behind the section's last line that is not blank
        bool hasSection;
    };

    [[nodiscard]] Place find(std::string_view section, std::string_view key) const;

    std::vector<std::string> lines_;
};

}  // namespace tonvane

// What the fuzz targets share: promises that end the process when they are broken, a folder in
// memory for the files that readers want, messages that nobody sees.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "files/InputError.h"
#include "tuning/Messages.h"

namespace tonvane::fuzz {

// Ends the process as a finding, with the promise on standard error, unless it holds.
void Require(bool holds, const char* promise);

// Whether a checked reader takes its file. A refusal is an InputError that says why; anything else
// that it throws ends the process as a finding.
template <typename Reader>
bool Accepts(Reader read) {
    try {
        read();
        return true;
    } catch (const InputError& refusal) {
        Require(!std::string_view(refusal.what()).empty(), "a refusal says why");
        return false;
    }
}

// A folder of this process, in memory where the system has one there; its text ends with a slash.
// It goes with the process.
const std::string& ScratchFolder();

// Puts the bytes into a file of the scratch folder, in place of what it held; returns its path.
std::string ScratchFile(std::string_view contents, const char* name = "input");

// The input of a run as text.
std::string_view TextOf(const uint8_t* data, size_t size);

// A number that depends on all of the input, for choices that the input's form has no room for.
uint32_t HashOf(std::string_view input);

class SilentMessages : public Messages {
  public:
    void error(const std::string& text) override;
    bool confirm(const std::string& text, const std::string& caption) override;
    void status(int line, const std::string& text, StatusNews news) override;

    int errors = 0;
    int questions = 0;
};

}  // namespace tonvane::fuzz

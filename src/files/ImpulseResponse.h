// Impulse responses from outside, brought to the length and the checks of a speaker response.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "files/InputNotes.h"
#include "files/ResponseFile.h"

namespace tonvane {

// Throws InputError for a rate outside 8000 to 192000 Hz, samples that are no usable numbers, or
// silence: a float32 holds every sample, and the loudest with all of its digits. `path` is for the
// messages.
void CheckSpeakerResponse(const std::string& path, const SpeakerResponse& response);

// Brings samples to responseFileSamples. Shorter ones get zeros at the end, which is noted. Of
// longer ones the first samples are kept, or, where the response starts too late for that, those
// from shortly ahead of its onset on; that is noted as a guess. Throws InputError when what would
// be cut holds more than a ten-thousandth (-40 dB) of the energy.
std::vector<double> FitImpulse(const std::string& path, std::vector<double> samples,
                               InputNotes& notes);

// The samples of a file of little-endian float32 values and nothing else; throws InputError for one
// that is empty, too long or ends inside a value. `path` is for the messages.
std::vector<double> ParseRawSamples(const std::string& path, std::string_view bytes);

// The bytes of such a file.
std::string FormatRawSamples(std::span<const double> samples);

}  // namespace tonvane

// Where the speaker is measured: the way of the sound to the microphone, directly and by way of
// the nearest surfaces.
#pragma once

#include <array>
#include <complex>
#include <cstddef>
#include <vector>

namespace tonvane::example {

// Metres; the speaker stands at the origin and looks along the first axis.
using Point = std::array<double, 3>;

// A plane across one axis. What it sends to the microphone is weaker by `reflection` and loses
// treble above `corner`: the surface absorbs it, and the speaker sends little of it that way.
struct Surface {
    size_t axis;
    double position;    // m
    double reflection;  // amplitude
    double corner;      // Hz
};

struct Room {
    Point microphone;
    std::vector<Surface> surfaces;
};

constexpr double speedOfSound = 343.0;     // m/s
constexpr double referenceDistance = 1.0;  // m, at which the free field has its level

// A microphone at one metre above a desk, with a wall behind the speaker and one beside it.
Room ExampleRoom();

// The share of the free-field pressure that arrives directly, at f in Hz, with its time of flight.
std::complex<double> DirectSound(const Room& room, double f);

// The same for the first-order image sources of all surfaces together.
std::complex<double> Reflections(const Room& room, double f);

}  // namespace tonvane::example

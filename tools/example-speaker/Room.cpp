#include "example-speaker/Room.h"

#include <cmath>
#include <numbers>

#include "elementary/Elementary.h"
#include "example-speaker/AnalogSection.h"

namespace tonvane::example {

namespace {

// Spherical spreading and the time of flight from a source to the microphone.
std::complex<double> path(const Point& source, const Point& microphone, double f) {
    double squares = 0.0;
    for (size_t axis = 0; axis < source.size(); ++axis) {
        const double difference = microphone[axis] - source[axis];
        squares += difference * difference;
    }
    const double distance = std::sqrt(squares);
    const double turns = f * distance / speedOfSound;
    return referenceDistance / distance *
           elementary::UnitPhasor(-2.0 * std::numbers::pi * (turns - std::floor(turns)));
}

}  // namespace

Room ExampleRoom() {
    return {
        .microphone = {1.0, 0.0, 0.05},
        .surfaces = {{.axis = 2, .position = -0.24, .reflection = 0.25, .corner = 5000.0},
                     {.axis = 0, .position = -0.45, .reflection = 0.20, .corner = 500.0},
                     {.axis = 1, .position = 1.30, .reflection = 0.35, .corner = 3000.0}},
    };
}

std::complex<double> DirectSound(const Room& room, double f) {
    return path({}, room.microphone, f);
}

std::complex<double> Reflections(const Room& room, double f) {
    std::complex<double> sum;
    for (const Surface& surface : room.surfaces) {
        Point image{};
        image[surface.axis] = 2.0 * surface.position;
        sum += surface.reflection * elementary::Product(FirstOrderLowPass(surface.corner).at(f),
                                                        path(image, room.microphone, f));
    }
    return sum;
}

}  // namespace tonvane::example

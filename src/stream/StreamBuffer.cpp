#include "stream/StreamBuffer.h"

#include <algorithm>
#include <new>

namespace tonvane {

namespace {

// Where a channel's samples lie in a buffer.
struct ChannelRun {
    ChannelRun(const CStreamBuffer& buffer, int32_t channel)
        : stride(buffer.interleaved ? buffer.channels : 1),
          first(buffer.data + (buffer.interleaved
                                   ? int64_t{buffer.position} * buffer.channels + channel
                                   : int64_t{channel} * buffer.frames + buffer.position)) {}

    int64_t stride;
    double* first;
};

}  // namespace

void CStreamBuffer::set(double* memory, int32_t newChannels, int32_t newFrames,
                        bool newInterleaved) {
    data = memory;
    channels = newChannels;
    frames = newFrames;
    position = 0;
    interleaved = newInterleaved;
}

bool CStreamBuffer::Allocate(int32_t newChannels, int32_t newFrames, bool newInterleaved) {
    if (attached) {
        return false;
    }
    set(nullptr, 0, 0, true);
    owned_.reset();
    try {
        owned_ = std::make_unique<double[]>(static_cast<size_t>(newChannels) *
                                            static_cast<size_t>(newFrames));
    } catch (const std::bad_alloc&) {
        return false;
    }
    set(owned_.get(), newChannels, newFrames, newInterleaved);
    return true;
}

bool CStreamBuffer::Attach(double* memory, int32_t newChannels, int32_t newFrames,
                           bool newInterleaved) {
    if (attached || data != nullptr) {
        return false;
    }
    set(memory, newChannels, newFrames, newInterleaved);
    attached = true;
    return true;
}

void CStreamBuffer::Detach() {
    if (attached) {
        set(nullptr, 0, 0, true);
        attached = false;
    }
}

void CStreamBuffer::ZeroTail() {
    if (interleaved) {
        std::ranges::fill(samples().subspan(static_cast<size_t>(position) * channels), 0.0);
        return;
    }
    for (int32_t channel = 0; channel < channels; ++channel) {
        std::fill_n(ChannelRun(*this, channel).first, frames - position, 0.0);
    }
}

int32_t MoveFrames(CStreamBuffer& source, CStreamBuffer& destination) {
    const int32_t n =
        std::min(destination.frames - destination.position, source.frames - source.position);
    if (source.interleaved && destination.interleaved) {
        std::copy_n(ChannelRun(source, 0).first, int64_t{n} * source.channels,
                    ChannelRun(destination, 0).first);
    } else {
        for (int32_t channel = 0; channel < source.channels; ++channel) {
            const ChannelRun from(source, channel);
            const ChannelRun to(destination, channel);
            for (int64_t i = 0; i < n; ++i) {
                to.first[i * to.stride] = from.first[i * from.stride];
            }
        }
    }
    source.position += n;
    destination.position += n;
    return n;
}

}  // namespace tonvane

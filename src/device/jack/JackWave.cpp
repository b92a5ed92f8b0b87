#include "device/jack/JackWave.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <thread>

#include <jack/jack.h>

namespace tonvane {

namespace {

// For connections to be there.
constexpr std::chrono::seconds longestWait{5};
constexpr std::chrono::milliseconds lookInterval{10};

CJackWave& deviceOf(void* argument) {
    return *static_cast<CJackWave*>(argument);
}

}  // namespace

CJackWave::~CJackWave() {
    CJackWave::Close();
}

bool CJackWave::Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
                     void* /*notify*/) {
    Close();
    faults_.Reset();
    faults_.refusal = open(capture, play, frames);
    if (!faults_.refusal.empty()) {
        Close();
    }
    return faults_.refusal.empty();
}

std::string CJackWave::open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames) {
    client_ = OpenJackClient();
    clock_ = client_.get();
    if (!client_) {
        return "There is no JACK server";
    }
    const int32_t inputs = capture == nullptr ? 0 : capture->channels;
    const int32_t outputs = play == nullptr ? 0 : play->channels;
    const auto rate = static_cast<int32_t>(jack_get_sample_rate(client_.get()));
    for (const WAVEFORMATEX* format : {capture, play}) {
        if (format != nullptr && format->sampleRate != rate) {
            return "Sample rate " + std::to_string(format->sampleRate) +
                   " Hz is not supported: the JACK server runs at " + std::to_string(rate) + " Hz";
        }
    }
    const JackPair pair = FindJackPair(client_.get(), pair_);
    if ((inputs > 0 && pair.capture.empty()) || (outputs > 0 && pair.playback.empty())) {
        return "JACK has no client \"" + pair_ + "\" to play to and capture from";
    }
    if (inputs > mostChannels || outputs > mostChannels) {
        return "Number of channels (in, out) = (" + std::to_string(inputs) + ", " +
               std::to_string(outputs) + ") is not supported";
    }
    const auto period = static_cast<int32_t>(jack_get_buffer_size(client_.get()));
    openRings(inputs, outputs, frames, period, rate);
    if (!registerPorts(inputs_, inputs, "in_", JackPortIsInput) ||
        !registerPorts(outputs_, outputs, "out_", JackPortIsOutput) || !setCallbacks() ||
        jack_activate(client_.get()) != 0) {
        return "The JACK server does not take a new client";
    }
    if (!connect(pair)) {
        return "The JACK server does not make the connections to \"" + pair_ + "\"";
    }
    isOpen_ = true;
    return "";
}

bool CJackWave::setCallbacks() {
    jack_client_t* client = client_.get();
    const auto process = [](jack_nframes_t frames, void* self) {
        deviceOf(self).Process(static_cast<int32_t>(frames));
        return 0;
    };
    const auto xrun = [](void* self) {
        CJackWave& device = deviceOf(self);
        if (device.running_) {
            device.faults_.captureGaps.Add();
        }
        return 0;
    };
    jack_on_shutdown(
        client, [](void* self) { deviceOf(self).markLost(); }, this);
    return jack_set_process_callback(client, process, this) == 0 &&
           jack_set_xrun_callback(client, xrun, this) == 0;
}

bool CJackWave::registerPorts(Ports& ports, int32_t count, const std::string& name,
                              unsigned long kind) {
    ports.reserve(static_cast<size_t>(count));
    for (int32_t i = 1; i <= count; ++i) {
        jack_port_t* port = jack_port_register(client_.get(), (name + std::to_string(i)).c_str(),
                                               JACK_DEFAULT_AUDIO_TYPE, kind, 0);
        if (port == nullptr) {
            return false;
        }
        ports.push_back(port);
    }
    return true;
}

bool CJackWave::connect(const JackPair& pair) {
    for (size_t i = 0; i < std::min(inputs_.size(), pair.capture.size()); ++i) {
        jack_connect(client_.get(), pair.capture[i].c_str(), jack_port_name(inputs_[i]));
    }
    for (size_t i = 0; i < std::min(outputs_.size(), pair.playback.size()); ++i) {
        jack_connect(client_.get(), jack_port_name(outputs_[i]), pair.playback[i].c_str());
    }
    return settle(pair);
}

// The server takes connections over between two of its periods, and tells the latencies that come
// of them later still: a run that begins sooner loses frames and is out of step.
bool CJackWave::settle(const JackPair& pair) {
    const auto areConnected = [](const Ports& ports, const std::vector<std::string>& others) {
        const size_t count = std::min(ports.size(), others.size());
        return std::all_of(ports.begin(), ports.begin() + static_cast<std::ptrdiff_t>(count),
                           [](jack_port_t* port) { return jack_port_connected(port) > 0; });
    };
    const auto end = std::chrono::steady_clock::now() + longestWait;
    while (!(areConnected(inputs_, pair.capture) && areConnected(outputs_, pair.playback))) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(lookInterval);
    }
    return jack_recompute_total_latencies(client_.get()) == 0;
}

void CJackWave::Close() {
    isOpen_ = false;
    running_ = false;
    closeRings();
    const std::lock_guard lock(clientMutex_);
    client_.reset();
    inputs_.clear();
    outputs_.clear();
}

bool CJackWave::Start() {
    lastTime_ = -1;
    running_ = isOpen_ && !isLost();
    return running_;
}

// The server tells of a period that it has passed over later than the run may end, or never.
void CJackWave::noteTime(uint32_t frames) {
    const jack_nframes_t now = jack_last_frame_time(clock_);
    const int64_t before = lastTime_.exchange(now);
    if (before >= 0 && now != static_cast<jack_nframes_t>(before) + frames) {
        faults_.captureGaps.Add();
    }
}

void CJackWave::Process(int32_t frames) {
    const auto count = static_cast<jack_nframes_t>(frames);
    std::array<void*, mostChannels> memory{};
    const auto buffersOf = [&](const Ports& ports) {
        std::ranges::transform(ports, memory.begin(), [count](jack_port_t* port) {
            return jack_port_get_buffer(port, count);
        });
        return std::span<void* const>(memory).first(ports.size());
    };
    if (running_) {
        noteTime(count);
        captureSamples(buffersOf(inputs_), SampleType::floats, frames);
        playSamples(buffersOf(outputs_), SampleType::floats, frames);
        return;
    }
    for (void* buffer : buffersOf(outputs_)) {
        std::fill_n(static_cast<float*>(buffer), frames, 0.0F);
    }
}

int32_t CJackWave::latencyOf(const Ports& ports, int mode) {
    int32_t longest = 0;
    for (jack_port_t* port : ports) {
        jack_latency_range_t range{};
        jack_port_get_latency_range(port, static_cast<jack_latency_callback_mode_t>(mode), &range);
        longest = std::max(longest, static_cast<int32_t>(range.max));
    }
    return longest;
}

int CJackWave::Latency() {
    const std::lock_guard lock(clientMutex_);
    if (!client_) {
        return 0;
    }
    return latencyOf(inputs_, JackCaptureLatency) + latencyOf(outputs_, JackPlaybackLatency);
}

}  // namespace tonvane

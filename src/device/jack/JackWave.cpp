#include "device/jack/JackWave.h"

#include <algorithm>

#include <jack/jack.h>

namespace tonvane {

namespace {

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
    lost_ = false;
    switch_.captureGaps.Reset();
    switch_.playGaps.Reset();
    refusal_ = open(capture, play, frames);
    if (!refusal_.empty()) {
        Close();
    }
    return refusal_.empty();
}

std::string CJackWave::open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames) {
    client_ = OpenJackClient();
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
    const int32_t sleepMs = 1000 * period / rate / 4;
    switch_.capture.Open(inputs, frames, sleepMs);
    switch_.play.Open(outputs, frames, sleepMs);
    if (!registerPorts(inputs_, inputs, "in_", JackPortIsInput) ||
        !registerPorts(outputs_, outputs, "out_", JackPortIsOutput) || !setCallbacks() ||
        jack_activate(client_.get()) != 0) {
        return "The JACK server does not take a new client";
    }
    connect(pair);
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
            device.switch_.captureGaps.Add();
        }
        return 0;
    };
    jack_on_shutdown(
        client, [](void* self) { deviceOf(self).lose(); }, this);
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

void CJackWave::connect(const JackPair& pair) {
    for (size_t i = 0; i < std::min(inputs_.size(), pair.capture.size()); ++i) {
        jack_connect(client_.get(), pair.capture[i].c_str(), jack_port_name(inputs_[i]));
    }
    for (size_t i = 0; i < std::min(outputs_.size(), pair.playback.size()); ++i) {
        jack_connect(client_.get(), jack_port_name(outputs_[i]), pair.playback[i].c_str());
    }
}

void CJackWave::Close() {
    isOpen_ = false;
    running_ = false;
    switch_.capture.Close();
    switch_.play.Close();
    const std::lock_guard lock(clientMutex_);
    client_.reset();
    inputs_.clear();
    outputs_.clear();
}

bool CJackWave::Start() {
    running_ = isOpen_ && !lost_;
    return running_;
}

void CJackWave::lose() {
    lost_ = true;
    switch_.capture.Close();
    switch_.play.Close();
}

void CJackWave::Process(int32_t frames) {
    const auto count = static_cast<jack_nframes_t>(frames);
    std::array<const float*, mostChannels> captured{};
    std::array<float*, mostChannels> played{};
    for (size_t i = 0; i < inputs_.size(); ++i) {
        captured[i] = static_cast<const float*>(jack_port_get_buffer(inputs_[i], count));
    }
    for (size_t i = 0; i < outputs_.size(); ++i) {
        played[i] = static_cast<float*>(jack_port_get_buffer(outputs_[i], count));
    }
    if (running_) {
        switch_.Exchange(std::span(captured).first(inputs_.size()),
                         std::span(played).first(outputs_.size()), frames);
        return;
    }
    for (size_t i = 0; i < outputs_.size(); ++i) {
        std::fill_n(played[i], frames, 0.0F);
    }
}

int CJackWave::Read(void* data, int frames) {
    switch_.captureGaps.Settle();
    return switch_.capture.Read(static_cast<int32_t*>(data), frames);
}

int CJackWave::Write(const void* data, int frames) {
    switch_.playGaps.Settle();
    return switch_.play.Write(static_cast<const int32_t*>(data), frames);
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

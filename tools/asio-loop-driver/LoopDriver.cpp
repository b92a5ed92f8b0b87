#include "LoopDriver.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>

namespace tonvane::loop {

namespace {

constexpr int32_t faultySwitch = 100;  // at which a run goes wrong, if it is to
constexpr auto mostLate = std::chrono::milliseconds(50);

int32_t typeNumber(const std::string& type) {
    return type == "int32" ? 0x12 : type == "float32" ? 0x13 : 0x10;
}

}  // namespace

const GUID driverClass{
    0x5b0f6a52, 0x3c1e, 0x4d7b, {0x9e, 0x21, 0x70, 0x4a, 0xc8, 0x16, 0xd3, 0x5f}};

std::atomic<int32_t> LoopDriver::alive{0};

LoopDriver::LoopDriver() : settings_(ReadSettings()), rate_(settings_.rate) {
    ++alive;
}

LoopDriver::~LoopDriver() {
    LoopDriver::stop();
    --alive;
    note("gone");
}

void LoopDriver::note(const std::string& event) const {
    if (settings_.log.empty()) {
        return;
    }
    if (std::FILE* file = std::fopen(settings_.log.c_str(), "ab")) {
        std::fprintf(file, "%s\n", event.c_str());
        std::fclose(file);
    }
}

STDMETHODIMP LoopDriver::QueryInterface(REFIID id, void** object) {
    if (IsEqualGUID(id, IID_IUnknown) || IsEqualGUID(id, driverClass)) {
        AddRef();
        *object = static_cast<IASIO*>(this);
        return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) LoopDriver::AddRef() {
    return ++references_;
}

STDMETHODIMP_(ULONG) LoopDriver::Release() {
    const ULONG left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}

int32_t LoopDriver::init(void* /*system*/) {
    note("init");
    return settings_.fault == "init" ? 0 : 1;
}

void LoopDriver::getDriverName(char* name) {
    std::snprintf(name, 32, "%s", driverName);
}

void LoopDriver::getErrorMessage(char* text) {
    std::snprintf(text, 124, "%s", settings_.fault == "init" ? "It was told to refuse" : "");
}

AsioError LoopDriver::getChannels(int32_t* inputs, int32_t* outputs) {
    *inputs = settings_.channels;
    *outputs = settings_.channels;
    return ASE_OK;
}

AsioError LoopDriver::getLatencies(int32_t* input, int32_t* output) {
    *input = settings_.input;
    *output = settings_.output;
    return ASE_OK;
}

AsioError LoopDriver::getBufferSize(int32_t* least, int32_t* most, int32_t* preferred,
                                    int32_t* granularity) {
    *least = settings_.frames;
    *most = settings_.frames;
    *preferred = settings_.frames;
    *granularity = 0;
    return ASE_OK;
}

AsioError LoopDriver::canSampleRate(double /*rate*/) {
    return settings_.fault == "rate" ? ASE_NoClock : ASE_OK;
}

AsioError LoopDriver::getSampleRate(double* rate) {
    *rate = rate_;
    return ASE_OK;
}

AsioError LoopDriver::setSampleRate(double rate) {
    note("setSampleRate " + std::to_string(static_cast<int32_t>(rate)));
    rate_ = rate;
    return ASE_OK;
}

AsioError LoopDriver::getClockSources(ASIOClockSource* /*clocks*/, int32_t* count) {
    *count = 0;
    return ASE_OK;
}

AsioError LoopDriver::setClockSource(int32_t /*reference*/) {
    return ASE_NotPresent;
}

AsioError LoopDriver::getSamplePosition(void* /*position*/, void* /*timeStamp*/) {
    return ASE_SPNotAdvancing;
}

AsioError LoopDriver::getChannelInfo(ASIOChannelInfo* info) {
    if (info->channel < 0 || info->channel >= settings_.channels) {
        return ASE_InvalidParameter;
    }
    info->isActive = callbacks_ == nullptr ? 0 : 1;
    info->channelGroup = 0;
    info->type = static_cast<AsioSampleType>(typeNumber(settings_.type));
    std::snprintf(info->name, sizeof info->name, "Loop %d", static_cast<int>(info->channel + 1));
    return ASE_OK;
}

AsioError LoopDriver::createBuffers(ASIOBufferInfo* infos, int32_t channels, int32_t frames,
                                    ASIOCallbacks* callbacks) {
    std::string text = "createBuffers " + std::to_string(frames);
    for (int32_t i = 0; i < channels; ++i) {
        text += (infos[i].isInput != 0 ? " in" : " out") + std::to_string(infos[i].channelNum);
    }
    note(text);
    const int32_t path = settings_.input + settings_.output;
    if (settings_.fault == "buffers" || frames != settings_.frames || path < frames) {
        return settings_.fault == "buffers" ? ASE_NoMemory : ASE_InvalidMode;
    }
    channels_.assign(static_cast<size_t>(settings_.channels), {});
    for (int32_t i = 0; i < channels; ++i) {
        if (infos[i].channelNum < 0 || infos[i].channelNum >= settings_.channels) {
            return ASE_InvalidParameter;
        }
        Channel& channel = channels_[static_cast<size_t>(infos[i].channelNum)];
        const bool isInput = infos[i].isInput != 0;
        (isInput ? channel.hasInput : channel.hasOutput) = true;
        Buffers& buffers = isInput ? channel.in : channel.out;
        for (size_t half = 0; half < 2; ++half) {
            buffers[half].assign(static_cast<size_t>(frames), 0);
            infos[i].buffers[half] = buffers[half].data();
        }
        channel.onTheWay.assign(static_cast<size_t>(path), 0);
    }
    position_ = 0;
    callbacks_ = callbacks;
    withTimeInfo_ = callbacks->asioMessage(kAsioSelectorSupported, kAsioSupportsTimeInfo, nullptr,
                                           nullptr) == 1 &&
                    callbacks->asioMessage(kAsioSupportsTimeInfo, 0, nullptr, nullptr) == 1;
    return ASE_OK;
}

AsioError LoopDriver::disposeBuffers() {
    note("disposeBuffers");
    stop();
    if (callbacks_ == nullptr) {
        return ASE_InvalidMode;
    }
    callbacks_ = nullptr;
    channels_.clear();
    return ASE_OK;
}

AsioError LoopDriver::start() {
    note("start");
    if (callbacks_ == nullptr || settings_.fault == "start" || running_) {
        return ASE_HWMalfunction;
    }
    running_ = true;
    thread_ = std::thread([this] { run(); });
    return ASE_OK;
}

AsioError LoopDriver::stop() {
    if (!thread_.joinable()) {
        return ASE_OK;
    }
    note("stop");
    running_ = false;
    thread_.join();
    return ASE_OK;
}

AsioError LoopDriver::future(int32_t /*selector*/, void* /*option*/) {
    return ASE_InvalidParameter;
}

AsioError LoopDriver::outputReady() {
    isReady_ = true;
    return settings_.ready != 0 ? ASE_OK : ASE_NotPresent;
}

void LoopDriver::run() {
    using Clock = std::chrono::steady_clock;
    const auto period = std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double>(settings_.frames / rate_ / settings_.speed));
    auto due = Clock::now();
    for (int32_t count = 0; running_; ++count) {
        if (count == faultySwitch && settings_.fault == "stall") {
            note("stall");
            return;
        }
        if (count == faultySwitch && settings_.fault == "resync") {
            callbacks_->asioMessage(kAsioResyncRequest, 0, nullptr, nullptr);
        }
        callHost(count % 2);
        due = std::max(due + period, Clock::now() - mostLate);
        std::this_thread::sleep_until(due);
    }
}

void LoopDriver::callHost(int32_t index) {
    const auto half = static_cast<size_t>(index);
    for (Channel& channel : channels_) {
        deliver(channel, half);
    }
    isReady_ = false;
    if (withTimeInfo_) {
        callbacks_->bufferSwitchTimeInfo(nullptr, index, 0);
    } else {
        callbacks_->bufferSwitch(index, 0);
    }
    for (Channel& channel : channels_) {
        take(channel, half);
    }
    position_ += static_cast<size_t>(settings_.frames);
}

// The next frames that come out of the path into the host's input.
void LoopDriver::deliver(Channel& channel, size_t index) const {
    if (!channel.hasInput) {
        return;
    }
    for (size_t i = 0; i < channel.in[index].size(); ++i) {
        channel.in[index][i] = channel.onTheWay[(position_ + i) % channel.onTheWay.size()];
    }
}

// The host's output, into the places that have just been delivered.
void LoopDriver::take(Channel& channel, size_t index) const {
    if (!channel.hasOutput) {
        return;
    }
    const bool counts = settings_.ready == 0 || isReady_;
    for (size_t i = 0; i < channel.out[index].size(); ++i) {
        channel.onTheWay[(position_ + i) % channel.onTheWay.size()] =
            counts ? channel.out[index][i] : 0;
    }
}

}  // namespace tonvane::loop

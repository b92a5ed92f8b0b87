#include "device/asio/AsioWave.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tonvane {

namespace {

constexpr int32_t engineVersion = 2;
constexpr double highestRate = 96000.0;  // Hz; a driver that stands above is brought down
constexpr double usualRate = 44100.0;

bool isSelectorKnown(int32_t selector) {
    switch (selector) {
        case kAsioEngineVersion:
        case kAsioResetRequest:
        case kAsioResyncRequest:
        case kAsioLatenciesChanged:
        case kAsioSupportsTimeInfo:
        case kAsioSupportsTimeCode:
            return true;
        default:
            return false;
    }
}

// Nothing for a type of which no samples are moved.
std::optional<SampleType> sampleTypeOf(const ASIOChannelInfo& channel) {
    switch (channel.type) {
        case AsioSampleType::int32:
            return SampleType::integers;
        case AsioSampleType::float32:
            return SampleType::wrappingFloats;
        default:
            return std::nullopt;
    }
}

}  // namespace

std::atomic<CAsioWave*> CAsioWave::current{nullptr};

CAsioWave::CAsioWave(AsioDriver driver, ShowDeviceError showError, std::string refusal)
    : driver_(std::move(driver)),
      showError_(std::move(showError)),
      loadRefusal_(std::move(refusal)) {
    current = this;
    if (driver_) {
        readDriver();
    }
}

CAsioWave::~CAsioWave() {
    CAsioWave::Close();
    CAsioWave* self = this;
    current.compare_exchange_strong(self, nullptr);
}

void CAsioWave::readDriver() {
    if (driver_->init(nullptr) == 0) {
        driver_->getErrorMessage(info_.errorMessage);
        return;
    }
    info_.asioVersion = engineVersion;
    info_.driverVersion = driver_->getDriverVersion();
    driver_->getDriverName(info_.name);
    driver_->getErrorMessage(info_.errorMessage);
    driver_->getChannels(&info_.inputChannels, &info_.outputChannels);
    driver_->getBufferSize(&info_.leastSize, &info_.mostSize, &info_.preferredSize,
                           &info_.granularity);
    driver_->getSampleRate(&info_.sampleRate);
    const bool isUsual = info_.sampleRate > 0.0 && info_.sampleRate <= highestRate;
    if (!isUsual && driver_->setSampleRate(usualRate) == ASE_OK) {
        driver_->getSampleRate(&info_.sampleRate);
    }
    info_.postOutput = driver_->outputReady() == ASE_OK;
}

bool CAsioWave::Open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int frames,
                     void* /*notify*/) {
    faults_.Reset();
    faults_.refusal = open(capture, play, frames);
    return faults_.refusal.empty();
}

// With the device closed ahead of the text, which the person may leave standing for long.
std::string CAsioWave::refuseLoudly(const std::string& text) {
    Close();
    if (showError_) {
        showError_(text);
    }
    return text;
}

std::string CAsioWave::open(const WAVEFORMATEX* capture, const WAVEFORMATEX* play, int32_t frames) {
    if (!driver_) {
        return loadRefusal_.empty() ? "There is no ASIO driver" : loadRefusal_;
    }
    const int32_t inputs = capture == nullptr ? 0 : capture->channels;
    const int32_t outputs = play == nullptr ? 0 : play->channels;
    if (capture != nullptr && play != nullptr && capture->sampleRate != play->sampleRate) {
        return "Capture and playback have different sample rates";
    }
    const WAVEFORMATEX* either = capture != nullptr ? capture : play;
    const int32_t rate = either == nullptr ? 0 : either->sampleRate;
    if (rate < 1 || driver_->canSampleRate(rate) != ASE_OK) {
        return refuseLoudly("Sample rate " + std::to_string(rate) + " Hz is not supported");
    }
    if (inputs > info_.inputChannels || outputs > info_.outputChannels) {
        return refuseLoudly("Number of channels (in, out) = (" + std::to_string(inputs) + ", " +
                            std::to_string(outputs) + ") is not supported");
    }
    driver_->setSampleRate(rate);
    const AsioError error = createBuffers(inputs, outputs);
    if (error != ASE_OK) {
        Close();
        return "The ASIO driver cannot be opened (error " + std::to_string(error) + ")";
    }
    openRings(inputs, outputs, frames, info_.preferredSize, rate);
    return "";
}

void CAsioWave::listBuffers(int32_t inputs, int32_t outputs) {
    info_.inputBuffers = inputs;
    info_.outputBuffers = outputs;
    for (int32_t i = 0; i < inputs + outputs; ++i) {
        const bool isInput = i < inputs;
        ASIOBufferInfo& buffer = info_.buffers[static_cast<size_t>(i)];
        buffer = {isInput ? 1 : 0, isInput ? i : i - inputs, {nullptr, nullptr}};
        info_.channels[static_cast<size_t>(i)] = {};
        info_.channels[static_cast<size_t>(i)].channel = buffer.channelNum;
        info_.channels[static_cast<size_t>(i)].isInput = buffer.isInput;
    }
}

AsioError CAsioWave::createBuffers(int32_t inputs, int32_t outputs) {
    if (inputs > std::min(info_.inputChannels, mostChannels) ||
        outputs > std::min(info_.outputChannels, mostChannels)) {
        return ASE_InvalidParameter;
    }
    listBuffers(inputs, outputs);
    AsioError error = driver_->createBuffers(info_.buffers.data(), inputs + outputs,
                                             info_.preferredSize, &callbacks_);
    for (int32_t i = 0; i < inputs + outputs && error == ASE_OK; ++i) {
        error = driver_->getChannelInfo(&info_.channels[static_cast<size_t>(i)]);
    }
    if (error == ASE_OK) {
        error = driver_->getLatencies(&info_.inputLatency, &info_.outputLatency);
    }
    return error;
}

void CAsioWave::Close() {
    running_ = false;
    closeRings();
    if (driver_) {
        driver_->stop();
        driver_->disposeBuffers();
    }
    info_.inputBuffers = 0;
    info_.outputBuffers = 0;
}

bool CAsioWave::Start() {
    running_ = true;
    const bool started = driver_ && driver_->start() == ASE_OK;
    if (!started) {
        running_ = false;
        markLost();
    }
    return started;
}

void CAsioWave::Stop() {
    running_ = false;
    if (driver_) {
        driver_->stop();
    }
}

// All channels of a direction are taken to have the type of its first.
void CAsioWave::exchange(int32_t index) {
    std::array<void*, mostChannels> pointers{};
    const auto half = [&](int32_t first, int32_t count) {
        for (int32_t i = 0; i < count; ++i) {
            pointers[static_cast<size_t>(i)] =
                info_.buffers[static_cast<size_t>(first + i)].buffers[index];
        }
        return std::span<void* const>(pointers).first(static_cast<size_t>(count));
    };
    const int32_t inputs = info_.inputBuffers;
    if (const auto type = sampleTypeOf(info_.channels[0])) {
        captureSamples(half(0, inputs), *type, info_.preferredSize);
    }
    if (const auto type = sampleTypeOf(info_.channels[static_cast<size_t>(inputs)])) {
        playSamples(half(inputs, info_.outputBuffers), *type, info_.preferredSize);
    }
    if (info_.postOutput) {
        driver_->outputReady();
    }
}

ASIOTime* CAsioWave::onBufferSwitchTimeInfo(ASIOTime* /*info*/, int32_t index, int32_t /*direct*/) {
    if (CAsioWave* device = current) {
        device->exchange(index);
    }
    return nullptr;
}

void CAsioWave::onBufferSwitch(int32_t index, int32_t direct) {
    onBufferSwitchTimeInfo(nullptr, index, direct);
}

void CAsioWave::onSampleRateChange(double /*rate*/) {}

int32_t CAsioWave::onMessage(int32_t selector, int32_t value, void* /*message*/,
                             double* /*option*/) {
    switch (selector) {
        case kAsioSelectorSupported:
            return isSelectorKnown(value) ? 1 : 0;
        case kAsioEngineVersion:
            return engineVersion;
        case kAsioResyncRequest:
            if (CAsioWave* device = current; device != nullptr && device->running_) {
                device->faults_.captureGaps.Add();
            }
            return 1;
        case kAsioResetRequest:
        case kAsioLatenciesChanged:
        case kAsioSupportsTimeInfo:
            return 1;
        default:
            return 0;
    }
}

}  // namespace tonvane

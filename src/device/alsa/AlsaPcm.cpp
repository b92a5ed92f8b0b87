#include "device/alsa/AlsaPcm.h"

#include <algorithm>
#include <cerrno>

#include <alsa/asoundlib.h>

#include "device/UnitRing.h"

namespace tonvane {

namespace {

// The library writes to standard error what its results say as well.
void beQuiet(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
             const char* /*format*/, ...) {}

int32_t narrow(snd_pcm_sframes_t frames) {
    return static_cast<int32_t>(frames);
}

}  // namespace

AlsaPcm::AlsaPcm() = default;
AlsaPcm::~AlsaPcm() = default;

void AlsaPcm::Closer::operator()(_snd_pcm* pcm) const {
    snd_pcm_close(pcm);
}

void AlsaPcm::Close() {
    pcm_.reset();
}

std::string AlsaPcm::Open(const std::string& name, Direction direction, const WAVEFORMATEX& format,
                          int32_t bufferFrames) {
    snd_lib_error_set_handler(&beQuiet);
    const bool captures = direction == Direction::capture;
    const std::string what =
        "ALSA device \"" + name + "\" for " + (captures ? "capture" : "playback");
    snd_pcm_t* opened = nullptr;
    const int refusal = snd_pcm_open(
        &opened, name.c_str(), captures ? SND_PCM_STREAM_CAPTURE : SND_PCM_STREAM_PLAYBACK, 0);
    if (refusal < 0) {
        return "Cannot open the " + what + ": " + snd_strerror(refusal);
    }
    pcm_.reset(opened);
    const int error = setParameters(format, bufferFrames);
    if (error < 0) {
        Close();
        return "The " + what + " does not take " + std::to_string(format.sampleRate) + " Hz, " +
               std::to_string(format.channels) + " channels, 16 bits: " + snd_strerror(error);
    }
    // Calls move what they can at once; Wait does the waiting.
    snd_pcm_nonblock(opened, 1);
    return "";
}

int AlsaPcm::setParameters(const WAVEFORMATEX& format, int32_t bufferFrames) {
    snd_pcm_t* pcm = pcm_.get();
    snd_pcm_hw_params_t* hardware = nullptr;
    snd_pcm_hw_params_alloca(&hardware);
    snd_pcm_uframes_t period = UnitRing::unitFrames;
    snd_pcm_uframes_t buffer = static_cast<snd_pcm_uframes_t>(bufferFrames);
    int error = snd_pcm_hw_params_any(pcm, hardware);
    const auto then = [&](int result) { error = error < 0 ? error : result; };
    then(snd_pcm_hw_params_set_access(pcm, hardware, SND_PCM_ACCESS_RW_INTERLEAVED));
    then(snd_pcm_hw_params_set_format(pcm, hardware, SND_PCM_FORMAT_S16_LE));
    then(snd_pcm_hw_params_set_channels(pcm, hardware, static_cast<unsigned>(format.channels)));
    then(snd_pcm_hw_params_set_rate(pcm, hardware, static_cast<unsigned>(format.sampleRate), 0));
    then(snd_pcm_hw_params_set_period_size_near(pcm, hardware, &period, nullptr));
    then(snd_pcm_hw_params_set_buffer_size_near(pcm, hardware, &buffer));
    if (error >= 0) {
        error = snd_pcm_hw_params(pcm, hardware);
    }
    if (error < 0) {
        return error;
    }
    bufferFrames_ = narrow(static_cast<snd_pcm_sframes_t>(buffer));

    snd_pcm_sw_params_t* software = nullptr;
    snd_pcm_sw_params_alloca(&software);
    snd_pcm_uframes_t boundary = 0;
    error = snd_pcm_sw_params_current(pcm, software);
    then(snd_pcm_sw_params_get_boundary(software, &boundary));
    then(snd_pcm_sw_params_set_start_threshold(pcm, software, boundary));  // only by Start
    then(snd_pcm_sw_params_set_avail_min(pcm, software, UnitRing::unitFrames));
    then(snd_pcm_sw_params(pcm, software));
    return error;
}

int AlsaPcm::Prepare() {
    return snd_pcm_prepare(pcm_.get());
}

int AlsaPcm::Start() {
    return snd_pcm_start(pcm_.get());
}

int AlsaPcm::Drop() {
    return snd_pcm_drop(pcm_.get());
}

int AlsaPcm::Wait(int32_t milliseconds) {
    return snd_pcm_wait(pcm_.get(), milliseconds);
}

int32_t AlsaPcm::Available() {
    return narrow(snd_pcm_avail(pcm_.get()));
}

int32_t AlsaPcm::Delay() {
    snd_pcm_sframes_t delay = 0;
    return snd_pcm_delay(pcm_.get(), &delay) < 0 ? 0 : std::max(narrow(delay), 0);
}

int32_t AlsaPcm::Read(void* frames, int32_t count) {
    return narrow(snd_pcm_readi(pcm_.get(), frames, static_cast<snd_pcm_uframes_t>(count)));
}

int32_t AlsaPcm::Write(const void* frames, int32_t count) {
    return narrow(snd_pcm_writei(pcm_.get(), frames, static_cast<snd_pcm_uframes_t>(count)));
}

int AlsaPcm::Recover(int32_t error) {
    if (error == -EPIPE || error == -ESTRPIPE) {
        return snd_pcm_recover(pcm_.get(), error, 1);
    }
    return error;
}

}  // namespace tonvane

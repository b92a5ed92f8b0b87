// A client "speaker" of the JACK server: a stereo device whose capture is what was played, a period
// ago. The latencies of its ports say so, in unequal parts for the two directions.
#include <array>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

#include <jack/jack.h>

namespace {

std::array<jack_port_t*, 2> in;
std::array<jack_port_t*, 2> out;

int passOn(jack_nframes_t frames, void* /*argument*/) {
    for (size_t i = 0; i < in.size(); ++i) {
        std::memcpy(jack_port_get_buffer(out[i], frames), jack_port_get_buffer(in[i], frames),
                    frames * sizeof(float));
    }
    return 0;
}

void tellLatency(jack_latency_callback_mode_t mode, void* client) {
    const jack_nframes_t period = jack_get_buffer_size(static_cast<jack_client_t*>(client));
    const bool isPlayed = mode == JackPlaybackLatency;
    const jack_nframes_t latency = isPlayed ? period / 4 : period - period / 4;
    jack_latency_range_t range{latency, latency};
    for (jack_port_t* port : isPlayed ? in : out) {
        jack_port_set_latency_range(port, mode, &range);
    }
}

}  // namespace

int main() {
    jack_client_t* client = jack_client_open("speaker", JackNoStartServer, nullptr);
    if (client == nullptr) {
        return 1;
    }
    for (size_t i = 0; i < in.size(); ++i) {
        const auto make = [&](const std::string& name, unsigned long kind) {
            return jack_port_register(client, (name + std::to_string(i + 1)).c_str(),
                                      JACK_DEFAULT_AUDIO_TYPE, kind, 0);
        };
        in[i] = make("play_", JackPortIsInput);
        out[i] = make("capture_", JackPortIsOutput);
    }
    jack_set_process_callback(client, passOn, nullptr);
    jack_set_latency_callback(client, tellLatency, client);
    sigset_t end;
    sigemptyset(&end);
    sigaddset(&end, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &end, nullptr);
    jack_activate(client);
    std::puts("ready");
    std::fflush(stdout);
    int number = 0;
    sigwait(&end, &number);
    jack_client_close(client);
}

#include "device/AudioServers.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <jack/jack.h>
#include <sys/wait.h>
#include <unistd.h>

#include "device/jack/JackClient.h"

namespace tonvane::tests {

ServerProcess::ServerProcess() {
    std::string name = "/tmp/tonvane-server-XXXXXX";
    if (mkdtemp(name.data()) != nullptr) {
        folder_ = name;
    }
}

ServerProcess::~ServerProcess() {
    End();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void ServerProcess::Run(const std::vector<std::string>& arguments) {
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    const std::string log = folder_ + "/log";
    process_ = fork();
    if (process_ == 0) {
        const int output = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        dup2(output, 1);
        dup2(output, 2);
        execvp(argv[0], argv.data());
        _exit(126);
    }
}

bool ServerProcess::pause() {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    if (process_ > 0 && waitpid(process_, nullptr, WNOHANG) == process_) {
        process_ = -1;
    }
    return process_ > 0;
}

void ServerProcess::End() {
    if (process_ > 0) {
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
        process_ = -1;
    }
}

void ServerProcess::Freeze(bool frozen) {
    kill(process_, frozen ? SIGSTOP : SIGCONT);
}

std::string ServerProcess::log() const {
    std::ostringstream text;
    text << std::ifstream(folder_ + "/log").rdbuf();
    return text.str();
}

PulseServer::PulseServer(int32_t rate) {
    const std::string& folder = process.folder();
    const std::string socket = folder + "/native";
    for (const char* name : {"XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH",
                             "PULSE_CONFIG_PATH", "HOME"}) {
        setenv(name, folder.c_str(), 1);
    }
    setenv("PULSE_COOKIE", (folder + "/cookie").c_str(), 1);
    unsetenv("PULSE_SERVER");
    process.Run(
        {"pulseaudio", "-n", "--system=false", "--daemonize=no", "--use-pid-file=no",
         "--exit-idle-time=-1", "--disallow-exit", "--realtime=no", "--high-priority=no", "-L",
         "module-null-sink sink_name=loop format=s16le channels=2 rate=" + std::to_string(rate),
         "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + socket});
    setenv("PULSE_SERVER", ("unix:" + socket).c_str(), 1);
    setenv("PULSE_SINK", "loop", 1);
    setenv("PULSE_SOURCE", "loop.monitor", 1);

    const std::string configuration = folder + "/asound.conf";
    std::ofstream(configuration) << "</usr/share/alsa/alsa.conf>\n"
                                    "pcm.!default { type pulse }\n"
                                    "ctl.!default { type pulse }\n";
    setenv("ALSA_CONFIG_PATH", configuration.c_str(), 1);
    isUp = process.Await([&] { return std::filesystem::exists(socket); });
}

JackServer::JackServer(int32_t period, int32_t rate) {
    const std::string name = "tonvane-test-" + std::to_string(getpid());
    setenv("JACK_DEFAULT_SERVER", name.c_str(), 1);
    setenv("JACK_NO_START_SERVER", "1", 1);
    setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    process.Run({"jackd", "-r", "-n", name, "-d", "dummy", "-r", std::to_string(rate), "-p",
                 std::to_string(period), "-C", "2", "-P", "2"});
    isUp = process.Await([] { return !ListJackPairs().empty(); });
}

struct JackSpeaker::State {
    static constexpr size_t channels = 2;

    ~State() {
        if (client != nullptr) {
            jack_client_close(client);
        }
    }

    void setUp(int32_t delayFrames);
    int process(jack_nframes_t frames);
    void tellLatency(jack_latency_callback_mode_t mode);

    jack_client_t* client = nullptr;
    std::array<jack_port_t*, channels> in{};
    std::array<jack_port_t*, channels> out{};
    std::array<std::vector<float>, channels> onTheWay;
    size_t position = 0;
    bool isUp = false;
};

void JackSpeaker::State::setUp(int32_t delayFrames) {
    client = jack_client_open("speaker", JackNoStartServer, nullptr);
    if (client == nullptr) {
        return;
    }
    for (size_t i = 0; i < channels; ++i) {
        const std::string number = std::to_string(i + 1);
        in[i] = jack_port_register(client, ("play_" + number).c_str(), JACK_DEFAULT_AUDIO_TYPE,
                                   JackPortIsInput, 0);
        out[i] = jack_port_register(client, ("capture_" + number).c_str(), JACK_DEFAULT_AUDIO_TYPE,
                                    JackPortIsOutput, 0);
        onTheWay[i].resize(static_cast<size_t>(delayFrames));
    }
    jack_set_process_callback(
        client,
        [](jack_nframes_t frames, void* self) {
            return static_cast<State*>(self)->process(frames);
        },
        this);
    jack_set_latency_callback(
        client,
        [](jack_latency_callback_mode_t mode, void* self) {
            static_cast<State*>(self)->tellLatency(mode);
        },
        this);
    isUp = jack_activate(client) == 0;
}

int JackSpeaker::State::process(jack_nframes_t frames) {
    const size_t delay = onTheWay[0].size();
    for (size_t i = 0; i < channels; ++i) {
        const auto* from = static_cast<const float*>(jack_port_get_buffer(in[i], frames));
        auto* to = static_cast<float*>(jack_port_get_buffer(out[i], frames));
        for (size_t t = 0; t < frames; ++t) {
            to[t] = from[t];
            if (delay > 0) {
                std::swap(to[t], onTheWay[i][(position + t) % delay]);
            }
        }
    }
    position += frames;
    return 0;
}

void JackSpeaker::State::tellLatency(jack_latency_callback_mode_t mode) {
    const auto delay = static_cast<jack_nframes_t>(onTheWay[0].size());
    // A client that hears itself through another hears what it played a period ago.
    const jack_nframes_t captured = jack_get_buffer_size(client) + delay;
    jack_latency_range_t range{captured, captured};
    if (mode == JackPlaybackLatency) {
        range = {0, 0};
    }
    for (jack_port_t* port : mode == JackPlaybackLatency ? in : out) {
        jack_port_set_latency_range(port, mode, &range);
    }
}

JackSpeaker::JackSpeaker(int32_t delay) : state_(std::make_unique<State>()) {
    state_->setUp(delay);
    isUp = state_->isUp;
}

JackSpeaker::~JackSpeaker() = default;

bool ConnectJackPorts(const std::string& from, const std::string& to) {
    const JackClient client = OpenJackClient();
    return client && jack_connect(client.get(), from.c_str(), to.c_str()) == 0;
}

}  // namespace tonvane::tests

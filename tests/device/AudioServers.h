// Audio servers without hardware, private to the test: processes that end with the object, in a
// folder that goes with it, and the environment that leads this process and its children to them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tonvane::tests {

// A temporary folder and a process that keeps its files there.
class ServerProcess {
  public:
    ServerProcess();
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    // Its output goes to the file "log" of the folder.
    void Run(const std::vector<std::string>& arguments);

    // Whether the condition comes true within 20 seconds while the process runs.
    template <typename Condition>
    bool Await(Condition condition) {
        for (int looks = 0; looks < 1000; ++looks) {
            if (condition()) {
                return true;
            }
            if (!pause()) {
                return false;
            }
        }
        return false;
    }

    void End();

    // Halts the process where it is, or lets it go on.
    void Freeze(bool frozen);

    [[nodiscard]] const std::string& folder() const { return folder_; }
    [[nodiscard]] std::string log() const;

  private:
    bool pause();

    std::string folder_;
    pid_t process_ = -1;
};

// A PulseAudio daemon with a null sink, whose monitor is the capture source, at 16 bits, stereo.
// ALSA's default device is its plugin.
class PulseServer {
  public:
    explicit PulseServer(int32_t rate = 48000);

    bool isUp = false;
    ServerProcess process;
};

// A JACK server on its dummy backend, two channels each way, 48000 Hz unless told otherwise.
class JackServer {
  public:
    explicit JackServer(int32_t period = 1024, int32_t rate = 48000);

    bool isUp = false;
    ServerProcess process;
};

// A client "speaker" of the JACK server: a stereo device whose capture is what was played, so many
// frames and one period of the server later, and which says so in the latency of its ports. The
// server must be up.
class JackSpeaker {
  public:
    explicit JackSpeaker(int32_t delay = 0);
    ~JackSpeaker();

    struct State;

    bool isUp = false;

  private:
    std::unique_ptr<State> state_;
};

// Connects two ports of the JACK server by their full names.
bool ConnectJackPorts(const std::string& from, const std::string& to);

}  // namespace tonvane::tests

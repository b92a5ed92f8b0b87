#include "device/jack/JackClient.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string_view>
#include <thread>

#include <jack/jack.h>

namespace tonvane {

namespace {

constexpr const char* ownName = "tonvane";

// A frozen server takes a new client neither in nor away: it is waited for by a thread that may
// stay.
constexpr std::chrono::seconds longestOpening{10};

struct Opening {
    std::mutex mutex;
    std::condition_variable changed;
    JackClient client;
    bool isOver = false;
    bool isAbandoned = false;
};

void beQuiet(const char* /*text*/) {}

struct PortsCloser {
    void operator()(const char** names) const { jack_free(static_cast<void*>(names)); }
};

bool isOwn(std::string_view client) {
    return client.substr(0, std::string_view(ownName).size()) == ownName;
}

JackPair& pairOf(std::vector<JackPair>& pairs, const std::string& name) {
    const auto found = std::find_if(pairs.begin(), pairs.end(),
                                    [&](const JackPair& pair) { return pair.name == name; });
    if (found != pairs.end()) {
        return *found;
    }
    pairs.push_back({name, {}, {}});
    return pairs.back();
}

// Adds the audio ports of one kind to the pairs of their clients.
void addPorts(jack_client_t* client, unsigned long kind, std::vector<std::string> JackPair::*list,
              std::vector<JackPair>& pairs) {
    const std::unique_ptr<const char*[], PortsCloser> names(
        jack_get_ports(client, nullptr, JACK_DEFAULT_AUDIO_TYPE, kind));
    for (size_t i = 0; names && names[i] != nullptr; ++i) {
        const std::string full = names[i];
        const std::string owner = full.substr(0, full.find(':'));
        if (!isOwn(owner)) {
            (pairOf(pairs, owner).*list).push_back(full);
        }
    }
}

}  // namespace

void JackCloser::operator()(_jack_client* client) const {
    jack_client_close(client);
}

JackClient OpenJackClient() {
    jack_set_error_function(&beQuiet);
    jack_set_info_function(&beQuiet);
    const auto opening = std::make_shared<Opening>();
    std::thread([opening] {
        jack_status_t status{};
        JackClient client(jack_client_open(ownName, JackNoStartServer, &status));
        const std::lock_guard lock(opening->mutex);
        if (!opening->isAbandoned) {
            opening->client = std::move(client);
        }
        opening->isOver = true;
        opening->changed.notify_all();
    }).detach();
    std::unique_lock lock(opening->mutex);
    opening->isAbandoned =
        !opening->changed.wait_for(lock, longestOpening, [&] { return opening->isOver; });
    return std::move(opening->client);
}

std::vector<JackPair> ListJackPairs(_jack_client* client) {
    std::vector<JackPair> pairs;
    addPorts(client, JackPortIsOutput, &JackPair::capture, pairs);
    addPorts(client, JackPortIsInput, &JackPair::playback, pairs);
    std::erase_if(
        pairs, [](const JackPair& pair) { return pair.capture.empty() || pair.playback.empty(); });
    return pairs;
}

std::vector<JackPair> ListJackPairs() {
    const JackClient client = OpenJackClient();
    return client ? ListJackPairs(client.get()) : std::vector<JackPair>();
}

JackPair FindJackPair(_jack_client* client, const std::string& name) {
    for (JackPair& pair : ListJackPairs(client)) {
        if (pair.name == name) {
            return pair;
        }
    }
    return {name, {}, {}};
}

}  // namespace tonvane

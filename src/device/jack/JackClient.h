// A client of a running JACK server. No server is ever started, and the library is kept from
// writing to standard error.
#pragma once

#include <memory>
#include <string>
#include <vector>

struct _jack_client;  // NOLINT(bugprone-reserved-identifier): the library's own name

namespace tonvane {

struct JackCloser {
    void operator()(_jack_client* client) const;
};
using JackClient = std::unique_ptr<_jack_client, JackCloser>;

// A new client of the server that JACK_DEFAULT_SERVER names, or of the default one; null without a
// server, and when it has not answered within ten seconds.
JackClient OpenJackClient();

// The full names of the audio ports of a client of the server, in their order.
struct JackPair {
    std::string name;                   // of the client
    std::vector<std::string> capture;   // ports that deliver what is captured
    std::vector<std::string> playback;  // ports that take what is to be played
};

// All clients of the server that have ports of both kinds, but for this program's own: the
// hardware's under "system", and programs that stand for a device. None without a server.
std::vector<JackPair> ListJackPairs();

// The same, seen by a client. The pair of a name has no ports if there is none.
std::vector<JackPair> ListJackPairs(_jack_client* client);
JackPair FindJackPair(_jack_client* client, const std::string& name);

}  // namespace tonvane

// The link's server: carries frames between TCP clients and whatever answers them.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "virtual-amplifier/FrameParser.h"

namespace tonvane::virtualamp {

// How a server can go wrong on purpose.
enum class Fault {
    none,
    silent,   // does not answer
    half,     // answers half of the bytes
    closing,  // closes the connection instead of answering
    garbage,  // answers as many bytes as asked for, all wrong
    surplus,  // answers more than asked for
    pieces,   // answers in single bytes with pauses between
    pausing,  // stops its process ahead of an answer, once: SIGCONT makes it go on
};

// The fault of a name as above; none for another name.
Fault FaultNamed(std::string_view name);

// A file descriptor that is closed with its owner.
class Descriptor {
  public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept : number_(other.number_) { other.number_ = -1; }
    Descriptor& operator=(Descriptor&& other) noexcept;

    [[nodiscard]] int number() const { return number_; }

  private:
    int number_;
};

class LinkServer {
  public:
    using Answer = std::function<std::vector<uint8_t>(std::span<const uint8_t> frame)>;

    // Listens on a port of 127.0.0.1, 0 for a free one. Throws std::system_error if it cannot.
    LinkServer(uint16_t port, Answer answer);

    [[nodiscard]] uint16_t port() const { return port_; }

    // From the frame of this number on, counted from 0 over all clients, the server goes wrong.
    void goWrong(Fault fault, int64_t firstFrame);

    // Serves any number of clients until stop, on the calling thread. A client that sends what is
    // no frame, or does not take its replies, is disconnected. Afterwards nothing listens.
    void run();

    // From any thread or from a signal handler.
    void stop() noexcept;

  private:
    struct Client {
        Descriptor socket;
        FrameParser parser;
    };

    void acceptClient();
    bool serve(Client& client);
    bool reply(const Client& client, std::vector<uint8_t> bytes);

    Answer answer_;
    Descriptor listener_;
    Descriptor stopReader_;
    Descriptor stopWriter_;
    std::vector<Client> clients_;
    bool rests_ = false;  // takes no new client for a while
    uint16_t port_ = 0;
    Fault fault_ = Fault::none;
    int64_t firstWrongFrame_ = 0;
    int64_t frames_ = 0;
};

}  // namespace tonvane::virtualamp

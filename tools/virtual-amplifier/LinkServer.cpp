#include "virtual-amplifier/LinkServer.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tonvane::virtualamp {

namespace {

int checked(int result, const std::string& call) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), call);
    }
    return result;
}

bool sendAll(int socket, std::span<const uint8_t> bytes) {
    const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    return sent == static_cast<ssize_t>(bytes.size());
}

bool sendInPieces(int socket, std::span<const uint8_t> bytes) {
    constexpr std::chrono::milliseconds pause(2);
    return std::ranges::all_of(bytes, [&](const uint8_t& byte) {
        std::this_thread::sleep_for(pause);
        return sendAll(socket, {&byte, 1});
    });
}

}  // namespace

Fault FaultNamed(std::string_view name) {
    constexpr std::array<std::pair<std::string_view, Fault>, 7> names{{
        {"silent", Fault::silent},
        {"half", Fault::half},
        {"closing", Fault::closing},
        {"garbage", Fault::garbage},
        {"surplus", Fault::surplus},
        {"pieces", Fault::pieces},
        {"pausing", Fault::pausing},
    }};
    const auto found = std::ranges::find(names, name, [](const auto& row) { return row.first; });
    return found == names.end() ? Fault::none : found->second;
}

Descriptor::~Descriptor() {
    if (number_ >= 0) {
        ::close(number_);
    }
}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
}

LinkServer::LinkServer(uint16_t port, Answer answer) : answer_(std::move(answer)) {
    listener_ = Descriptor(checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"));
    const int socket = listener_.number();
    const int on = 1;
    checked(::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on), "setsockopt");
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    socklen_t size = sizeof address;
    checked(::bind(socket, generic, size), "port " + std::to_string(port));
    checked(::listen(socket, SOMAXCONN), "listen");
    checked(::getsockname(socket, generic, &size), "getsockname");
    port_ = ntohs(address.sin_port);

    std::array<int, 2> ends{};
    checked(::pipe2(ends.data(), O_CLOEXEC), "pipe");
    stopReader_ = Descriptor(ends[0]);
    stopWriter_ = Descriptor(ends[1]);
}

void LinkServer::goWrong(Fault fault, int64_t firstFrame) {
    fault_ = fault;
    firstWrongFrame_ = firstFrame;
}

void LinkServer::stop() noexcept {
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(stopWriter_.number(), &byte, 1);
}

void LinkServer::run() {
    for (;;) {
        std::vector<pollfd> waiting{{stopReader_.number(), POLLIN, 0},
                                    {rests_ ? -1 : listener_.number(), POLLIN, 0}};
        for (const Client& client : clients_) {
            waiting.push_back({client.socket.number(), POLLIN, 0});
        }
        constexpr int restMs = 100;
        if (::poll(waiting.data(), waiting.size(), rests_ ? restMs : -1) < 0) {
            continue;  // a signal
        }
        rests_ = false;
        if (waiting[0].revents != 0) {
            clients_.clear();
            listener_ = Descriptor();
            return;
        }
        const auto isReady = [&](const Client& client) {
            return waiting[2 + static_cast<size_t>(&client - clients_.data())].revents != 0;
        };
        std::vector<Client> kept;
        for (Client& client : clients_) {
            if (!isReady(client) || serve(client)) {
                kept.push_back(std::move(client));
            }
        }
        clients_ = std::move(kept);
        if (waiting[1].revents != 0) {
            acceptClient();
        }
    }
}

void LinkServer::acceptClient() {
    Descriptor socket(::accept4(listener_.number(), nullptr, nullptr, SOCK_CLOEXEC));
    if (socket.number() >= 0) {
        clients_.push_back({std::move(socket), {}});
    } else {
        rests_ = true;  // no descriptor is left; the client still waits
    }
}

// Whether the client stays.
bool LinkServer::serve(Client& client) {
    std::array<uint8_t, 4096> bytes{};
    const ssize_t count = ::recv(client.socket.number(), bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (count <= 0) {
        return count < 0 && (errno == EAGAIN || errno == EINTR);
    }
    client.parser.take(std::span(bytes).first(static_cast<size_t>(count)));
    while (const auto frame = client.parser.next()) {
        if (!reply(client, answer_(*frame))) {
            return false;
        }
    }
    return !client.parser.isLost();
}

bool LinkServer::reply(const Client& client, std::vector<uint8_t> bytes) {
    const int socket = client.socket.number();
    switch (frames_++ < firstWrongFrame_ ? Fault::none : fault_) {
        case Fault::none:
            break;
        case Fault::silent:
            return true;
        case Fault::half:
            bytes.resize(bytes.size() / 2);
            break;
        case Fault::closing:
            return false;
        case Fault::garbage:
            std::ranges::transform(bytes, bytes.begin(),
                                   [](uint8_t byte) { return static_cast<uint8_t>(~byte); });
            break;
        case Fault::surplus:
            bytes.resize(bytes.size() + 4, 0xA5);
            break;
        case Fault::pieces:
            return sendInPieces(socket, bytes);
        case Fault::pausing:
            fault_ = Fault::none;
            std::raise(SIGSTOP);
            break;
    }
    return bytes.empty() || sendAll(socket, bytes);
}

}  // namespace tonvane::virtualamp

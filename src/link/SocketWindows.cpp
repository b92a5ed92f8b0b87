#include "link/Socket.h"

#include <algorithm>
#include <limits>

#include <winsock2.h>

namespace tonvane::tcp {

namespace {

// The library of sockets, from the first one that is opened to the end of the program.
struct Library {
    Library() {
        WSADATA unused;
        WSAStartup(MAKEWORD(2, 2), &unused);
    }
    ~Library() { WSACleanup(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
};

SOCKET handle(std::intptr_t socket) {
    return static_cast<SOCKET>(socket);
}

int lengthOf(size_t bytes) {
    return static_cast<int>(std::min<size_t>(bytes, std::numeric_limits<int>::max()));
}

}  // namespace

// INVALID_SOCKET is -1 as a signed number. No program that is started from here inherits the
// socket.
std::intptr_t Open() {
    static const Library library;
    const SOCKET opened = ::WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0,
                                       WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
    return static_cast<std::intptr_t>(opened);
}

bool ConnectToLocalPort(std::intptr_t socket, uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    return ::connect(handle(socket), generic, sizeof address) == 0;
}

void LimitReceive(std::intptr_t socket, int32_t milliseconds) {
    const auto limit = static_cast<DWORD>(milliseconds);
    ::setsockopt(handle(socket), SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&limit),
                 sizeof limit);
}

bool Send(std::intptr_t socket, std::span<const uint8_t> bytes) {
    while (!bytes.empty()) {
        const int sent = ::send(handle(socket), reinterpret_cast<const char*>(bytes.data()),
                                lengthOf(bytes.size()), 0);
        if (sent <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<size_t>(sent));
    }
    return true;
}

int32_t Receive(std::intptr_t socket, std::span<uint8_t> bytes) {
    const int count =
        ::recv(handle(socket), reinterpret_cast<char*>(bytes.data()), lengthOf(bytes.size()), 0);
    if (count >= 0) {
        return count;
    }
    return ::WSAGetLastError() == WSAETIMEDOUT ? outOfTime : failed;
}

void Close(std::intptr_t socket) {
    ::closesocket(handle(socket));
}

}  // namespace tonvane::tcp

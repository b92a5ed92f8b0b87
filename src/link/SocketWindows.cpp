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

// A set of this one socket, for a wait.
struct SocketSet {
    explicit SocketSet(std::intptr_t socket) {
        FD_ZERO(&set);
        FD_SET(handle(socket), &set);
    }
    fd_set set;
};

timeval timeOf(int32_t milliseconds) {
    timeval time{};
    time.tv_sec = milliseconds / 1000;
    time.tv_usec = milliseconds % 1000 * 1000;
    return time;
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

// Without a limit the system's own connect waits. With one the connection comes about beside the
// program, and a refusal shows among the exceptions.
Connection ConnectToLocalPort(std::intptr_t socket, uint16_t port, int32_t limit) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    u_long isNonblocking = limit == noLimit ? 0 : 1;
    ::ioctlsocket(handle(socket), FIONBIO, &isNonblocking);
    int error = ::connect(handle(socket), generic, sizeof address) == 0 ? 0 : ::WSAGetLastError();
    if (error == WSAEWOULDBLOCK) {
        SocketSet writable(socket);
        SocketSet refused(socket);
        timeval time = timeOf(limit);
        if (::select(0, nullptr, &writable.set, &refused.set, &time) <= 0) {
            return Connection::outOfTime;
        }
        error = FD_ISSET(handle(socket), &refused.set) ? WSAECONNREFUSED : 0;
    }
    isNonblocking = 0;
    ::ioctlsocket(handle(socket), FIONBIO, &isNonblocking);
    return error == 0 ? Connection::made : Connection::refused;
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

// A socket that is not connected never becomes readable: without a limit the call itself waits.
int32_t Receive(std::intptr_t socket, std::span<uint8_t> bytes, int32_t limit) {
    if (limit != noLimit) {
        SocketSet readable(socket);
        timeval time = timeOf(limit);
        if (::select(0, &readable.set, nullptr, nullptr, &time) <= 0) {
            return outOfTime;
        }
    }
    const int count =
        ::recv(handle(socket), reinterpret_cast<char*>(bytes.data()), lengthOf(bytes.size()), 0);
    return count >= 0 ? count : failed;
}

void Close(std::intptr_t socket) {
    ::closesocket(handle(socket));
}

}  // namespace tonvane::tcp

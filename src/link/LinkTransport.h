// What a link does to the world outside.
//
// A program talks to a server through one of the two here; tests and dry runs bring their own.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>

namespace tonvane {

class LinkTransport {
  public:
    virtual ~LinkTransport() = default;

    // A new socket; -1 on failure.
    virtual std::intptr_t open() = 0;

    // Whether the socket came to be connected to the port of this computer.
    virtual bool connect(std::intptr_t socket, uint16_t port) = 0;

    // Sends a frame and fills `reply` with what the server answers.
    virtual void exchange(std::intptr_t socket, std::span<const uint8_t> frame,
                          std::span<uint8_t> reply) = 0;

    virtual void close(std::intptr_t socket) = 0;

    // Lets so much time go by.
    virtual void wait(int32_t milliseconds) = 0;
};

// For a window: waits for the first byte of a reply until it comes or the connection ends, puts
// together what comes in pieces, and takes a reply for ended when its next piece is late. Nothing
// is reported; what is missing of a reply stays as it was. Bytes that a server has sent unasked
// belong to no reply.
class TcpTransport : public LinkTransport {
  public:
    // Milliseconds until the next piece of a reply.
    static constexpr int32_t usualPieceLimit = 250;

    explicit TcpTransport(int32_t pieceLimit = usualPieceLimit) : pieceLimit_(pieceLimit) {}

    std::intptr_t open() override;
    bool connect(std::intptr_t socket, uint16_t port) override;
    void exchange(std::intptr_t socket, std::span<const uint8_t> frame,
                  std::span<uint8_t> reply) override;
    void close(std::intptr_t socket) override;
    void wait(int32_t milliseconds) override;

  private:
    int32_t pieceLimit_;
};

// what() is one line for the person: what went wrong with which frame.
class LinkError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// For a command: a server that is absent, that has not taken the connection or not answered a frame
// in full after a time limit, that closes the connection or that sends more than it was asked for
// is a LinkError.
class CheckedTcpTransport : public TcpTransport {
  public:
    // Milliseconds, above 0.
    explicit CheckedTcpTransport(int32_t timeLimit) : timeLimit_(timeLimit) {}

    bool connect(std::intptr_t socket, uint16_t port) override;
    void exchange(std::intptr_t socket, std::span<const uint8_t> frame,
                  std::span<uint8_t> reply) override;

  private:
    int32_t timeLimit_;
};

}  // namespace tonvane

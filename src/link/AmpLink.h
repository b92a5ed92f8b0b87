// The client of the link server, through which the amplifier's registers are read and written.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "link/LinkTransport.h"

namespace tonvane {

// While there is no socket every operation but Connect does nothing, not even wait. A loss of the
// server is not noticed, and nothing is reported beyond what the transport throws. Not for several
// threads.
class CAmpLink {
  public:
    static constexpr uint16_t defaultPort = 20000;

    // `socket` is where the handle of the link's socket is kept, -1 while there is none; it is
    // set to -1 here and outlives the link.
    explicit CAmpLink(std::intptr_t& socket, uint16_t port = defaultPort,
                      std::unique_ptr<LinkTransport> transport = std::make_unique<TcpTransport>());
    ~CAmpLink() { Term(); }
    CAmpLink(const CAmpLink&) = delete;
    CAmpLink& operator=(const CAmpLink&) = delete;

    enum class Connection { noSocket, refused, made };

    // Makes a new socket in the place of the old one and connects it. A socket that could not be
    // connected stays, and what is sent on it is lost.
    Connection Connect();

    // What follows a connection: writes the oscillator trim and waits for it to settle.
    void TrimOscillator();

    // Closes the socket.
    void Term();

    // byteCount bytes, 1 to 20, from the low bytes of the words; other counts do nothing. Returns
    // when the server has answered.
    void WriteRegister(int32_t reg, std::span<const int32_t> words, int32_t byteCount);

    // byteCount bytes, 1 to 20, into the buffer, which is at least as long; other counts do
    // nothing. What does not come is 0.
    void ReadRegister(int32_t reg, int32_t byteCount, std::span<uint8_t> buffer);

    // The bracket around a change of filters or dynamics: the audio stops, and goes on.
    void EnterShutdown();
    void ExitShutdown();

  private:
    void setShutdown(int32_t systemControl);

    std::intptr_t& socket_;
    uint16_t port_;
    std::unique_ptr<LinkTransport> transport_;
};

}  // namespace tonvane

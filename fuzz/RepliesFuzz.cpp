// What a server sends: the client's handling of replies, with and without its checks.
//
// The input is a list of packets, each a byte of its length (0 to 31) and its bytes. They arrive
// one by one, as many as a reply takes, and then the connection ends; a packet of no bytes ends a
// single receive.
#include <atomic>
#include <deque>
#include <thread>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>

#include "FuzzSupport.h"
#include "amplifier/RegisterTable.h"
#include "files/RegisterDump.h"
#include "link/AmpLink.h"
#include "link/RegisterWrites.h"

namespace tonvane::fuzz {

namespace {

using Bytes = std::vector<uint8_t>;
using Packets = std::deque<Bytes>;

Packets packetsOf(std::span<const uint8_t> input) {
    Packets packets;
    while (!input.empty()) {
        const size_t length = std::min<size_t>(input[0] % 32U, input.size() - 1);
        packets.emplace_back(input.begin() + 1, input.begin() + 1 + static_cast<int>(length));
        input = input.subspan(1 + length);
    }
    return packets;
}

// A transport whose server answers from the list of packets: as many as a frame wants bytes, and
// with the end of the connection when there are no more.
template <typename Transport>
class Fed : public Transport {
  public:
    template <typename... Arguments>
    explicit Fed(Packets packets, Arguments... arguments)
        : Transport(arguments...), packets_(std::move(packets)) {
        Require(::socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends_) == 0, "there are sockets");
        server_ = std::thread([this] { serve(); });
    }
    ~Fed() override {
        ::shutdown(ends_[1], SHUT_RDWR);
        server_.join();
        ::close(ends_[1]);
    }
    Fed(const Fed&) = delete;
    Fed& operator=(const Fed&) = delete;

    std::intptr_t open() override { return ends_[0]; }
    bool connect(std::intptr_t /*socket*/, uint16_t /*port*/) override { return true; }
    void exchange(std::intptr_t socket, std::span<const uint8_t> frame,
                  std::span<uint8_t> reply) override {
        wanted_ = reply.size();
        Transport::exchange(socket, frame, reply);
    }
    void wait(int32_t /*milliseconds*/) override {}

  private:
    void serve() {
        Bytes frame(64);
        while (::recv(ends_[1], frame.data(), frame.size(), 0) > 0) {
            const size_t wanted = wanted_;  // the next one may be on its way after the last packet
            for (size_t sent = 0; sent < wanted;) {
                if (packets_.empty()) {
                    ::shutdown(ends_[1], SHUT_WR);
                    break;
                }
                const Bytes packet = packets_.front();
                packets_.pop_front();
                ::send(ends_[1], packet.data(), packet.size(), MSG_NOSIGNAL);
                if (packet.empty()) {
                    break;
                }
                sent += packet.size();
            }
        }
    }

    Packets packets_;
    std::atomic<size_t> wanted_ = 0;
    int ends_[2] = {-1, -1};
    std::thread server_;
};

// The next reply by the packets themselves, a packet's surplus cut off.
Bytes expectedReply(Packets& packets, size_t wanted) {
    Bytes reply;
    while (reply.size() < wanted && !packets.empty()) {
        const Bytes packet = packets.front();
        packets.pop_front();
        if (packet.empty()) {
            break;
        }
        const size_t taken = std::min(packet.size(), wanted - reply.size());
        reply.insert(reply.end(), packet.begin(), packet.begin() + static_cast<int>(taken));
    }
    reply.resize(wanted);
    return reply;
}

Bytes readWhole(CAmpLink& link, int32_t reg) {
    const int32_t length = LookUpRegister(reg).length;
    Bytes bytes(static_cast<size_t>(length), 0xEE);
    link.ReadRegister(reg, length, bytes);
    return bytes;
}

void checkWindow(const Packets& packets) {
    std::intptr_t socket = -1;
    CAmpLink link(socket, 1, std::make_unique<Fed<TcpTransport>>(packets));
    link.Connect();
    Packets left = packets;
    for (const int32_t reg : {0x29, 0x07, 0x3B, 0x53}) {
        Require(readWhole(link, reg) ==
                    expectedReply(left, static_cast<size_t>(LookUpRegister(reg).length)),
                "a window takes what comes");
    }
    const RegisterWrite write{0x29};
    WriteInShutdown(link, {&write, 1});
    const std::string dump = FormatRegisterDump([&](int32_t reg, std::span<uint8_t> contents) {
        link.ReadRegister(reg, static_cast<int32_t>(contents.size()), contents);
    });
    Require(dump.size() > 1000, "a dump has all its lines");
}

void checkCommand(const Packets& packets) {
    std::intptr_t socket = -1;
    CAmpLink link(socket, 1, std::make_unique<Fed<CheckedTcpTransport>>(packets, 60000));
    link.Connect();
    Packets left = packets;
    try {
        for (const int32_t reg : {0x29, 0x07, 0x3B, 0x53}) {
            const auto length = static_cast<size_t>(LookUpRegister(reg).length);
            const Bytes reply = readWhole(link, reg);
            size_t arrived = 0;
            Bytes together;
            while (arrived < length) {
                Require(!left.empty() && !left.front().empty(), "an end is complained of");
                together.insert(together.end(), left.front().begin(), left.front().end());
                arrived += left.front().size();
                left.pop_front();
            }
            Require(together == reply, "a reply is whole and has nothing behind it");
        }
        const RegisterWrite write{0x29};
        WriteInShutdown(link, {&write, 1});
    } catch (const LinkError& error) {
        const std::string_view text = error.what();
        Require(text.find(" at the ") != text.npos, "an error names its frame");
    }
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane::fuzz;
    const Packets packets = packetsOf({data, size});
    if (packets.size() > 200) {  // more than are asked for
        return 0;
    }
    checkWindow(packets);
    checkCommand(packets);
    return 0;
}

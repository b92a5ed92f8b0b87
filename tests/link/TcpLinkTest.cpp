// The client and the virtual amplifier over a real socket.
#include <atomic>
#include <csignal>
#include <mutex>
#include <thread>

#include <gmock/gmock.h>
#include <netinet/in.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>

#include "amplifier/RegisterTable.h"
#include "link/AmpLink.h"
#include "link/RegisterWrites.h"
#include "virtual-amplifier/LinkServer.h"
#include "virtual-amplifier/VirtualAmplifier.h"

namespace tonvane {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using virtualamp::Fault;

constexpr int32_t longTime = 3600000;
constexpr std::array<int32_t, 5> fiveWords{0x01020304, 0x05060708, 0x090A0B0C, -1, 0x11121314};

// A virtual amplifier on a free port, served by a thread of its own.
class DeskAmplifier {
  public:
    // From the frame `after` on it goes wrong.
    explicit DeskAmplifier(Fault fault = Fault::none, int64_t after = 0) {
        server_.goWrong(fault, after);
        thread_ = std::thread([this] { server_.run(); });
    }
    ~DeskAmplifier() { stop(); }

    [[nodiscard]] uint16_t port() const { return server_.port(); }
    void stop() {
        if (thread_.joinable()) {
            server_.stop();
            thread_.join();
        }
    }
    // Returns when so many frames have arrived.
    void await(int32_t count) {
        for (int32_t arrived = frames_; arrived < count; arrived = frames_) {
            frames_.wait(arrived);
        }
    }

    std::mutex answering;  // no frame is answered while it is locked

  private:
    std::atomic<int32_t> frames_{0};
    virtualamp::VirtualAmplifier amplifier_{[this](auto /*frame*/, auto /*remarks*/) {
        ++frames_;
        frames_.notify_all();
        const std::lock_guard wait(answering);
    }};
    virtualamp::LinkServer server_{0, [this](auto frame) { return amplifier_.answer(frame); }};
    std::thread thread_;
};

// Has room for one client and does nothing by itself.
struct IdleServer {
    IdleServer() {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(bind(listener.number(), generic, size) + listen(listener.number(), 0), 0);
        getsockname(listener.number(), generic, &size);
        port = ntohs(address.sin_port);
    }
    static void awaitInput(std::intptr_t socket) {
        pollfd waiting{static_cast<int>(socket), POLLIN, 0};
        poll(&waiting, 1, -1);
    }

    virtualamp::Descriptor listener{::socket(AF_INET, SOCK_STREAM, 0)};
    uint16_t port = 0;
};

// A link as the commands have it, or as a window has it, with a limit of either.
template <typename Transport>
struct Client {
    Client(uint16_t port, int32_t limit) : link(socket, port, std::make_unique<Transport>(limit)) {
        link.Connect();
    }

    std::vector<uint8_t> read(int32_t reg) {
        std::vector<uint8_t> bytes(static_cast<size_t>(LookUpRegister(reg).length), 9);
        link.ReadRegister(reg, LookUpRegister(reg).length, bytes);
        return bytes;
    }
    std::array<int32_t, mostRegisterWords> readWords(int32_t reg) {
        return BytesToWords(read(reg));
    }
    void write(int32_t reg, std::span<const int32_t> words) {
        link.WriteRegister(reg, words, LookUpRegister(reg).length);
    }

    std::intptr_t socket = -1;
    CAmpLink link;
};
using Command = Client<CheckedTcpTransport>;
using Window = Client<TcpTransport>;

// What a command would say of an operation; empty if nothing is wrong.
template <typename Operation>
std::string complaint(Operation operate) {
    try {
        operate();
        return "";
    } catch (const LinkError& error) {
        return error.what();
    }
}

TEST(TcpLink, AReplyInPiecesIsPutTogether) {
    DeskAmplifier desk(Fault::pieces);
    Command command(desk.port(), longTime);
    Window window(desk.port(), longTime);
    command.write(0x29, fiveWords);
    EXPECT_EQ(command.readWords(0x29), fiveWords);
    EXPECT_EQ(window.readWords(0x29), fiveWords);
}

TEST(TcpLink, AReadOutlivesSignals) {
    static std::atomic<int32_t> caught;
    struct sigaction counting {};
    counting.sa_handler = [](int) { ++caught; };  // without SA_RESTART
    sigaction(SIGUSR1, &counting, nullptr);
    DeskAmplifier desk;
    Command command(desk.port(), longTime);
    command.write(0x29, fiveWords);
    std::unique_lock silence(desk.answering);
    std::atomic<bool> isRead = false;
    std::thread reader([&] {
        EXPECT_EQ(complaint([&] { EXPECT_EQ(command.readWords(0x29), fiveWords); }), "");
        isRead = true;
    });
    desk.await(2);
    // The first may come before the read waits; each later one finds it waiting again.
    for (int32_t sent = 1; sent <= 50 && !isRead; ++sent) {
        pthread_kill(reader.native_handle(), SIGUSR1);
        while (caught < sent && !isRead) {
            std::this_thread::yield();
        }
    }
    silence.unlock();
    reader.join();
    EXPECT_EQ(caught, 50);
}

TEST(TcpLink, ACommandIsToldWhatAServerDidWrong) {
    const struct {
        Fault fault;
        int32_t timeLimit;
        const char* read;
        const char* write;
    } cases[] = {
        {Fault::silent, 20, "answered 0 of 20 bytes within 20 ms", "answered 0 of 1 bytes within"},
        {Fault::half, 20, "answered 10 of 20 bytes within 20 ms", "answered 0 of 1 bytes within"},
        {Fault::pieces, 10, "20 bytes within 10 ms", ""},
        {Fault::closing, longTime, "closed the connection after 0 of 20 bytes", "closed the"},
        {Fault::surplus, longTime, "sent more than the 20 bytes", "sent more than the 1 bytes"},
    };
    for (const auto& c : cases) {
        DeskAmplifier desk(c.fault);
        Command reader(desk.port(), c.timeLimit);
        Command writer(desk.port(), c.timeLimit);
        EXPECT_THAT(complaint([&] { reader.read(0x29); }),
                    AllOf(HasSubstr(c.read), HasSubstr(*c.read ? "read of 29 PEQ Coef L0" : "")));
        EXPECT_THAT(complaint([&] { writer.write(0x07, fiveWords); }),
                    AllOf(HasSubstr(c.write), HasSubstr(*c.write ? "write of 07 Master Vol" : "")));
    }
}

TEST(TcpLink, ACommandDoesNotWaitToBeTakenNorTakesBytesThatItHasNotAskedFor) {
    IdleServer server;
    Command first(server.port, longTime);
    IdleServer::awaitInput(server.listener.number());  // there is no room any more
    EXPECT_THAT(complaint([&] { Command(server.port, 20); }),
                HasSubstr(std::to_string(server.port) + " within 20 ms"));
    const virtualamp::Descriptor taken(accept(server.listener.number(), nullptr, nullptr));
    send(taken.number(), "?", 1, 0);
    IdleServer::awaitInput(first.socket);
    EXPECT_THAT(complaint([&] { first.read(0x29); }),
                HasSubstr("had sent more than it was asked for at the read of 29 PEQ Coef L0"));
}

TEST(TcpLink, ACommandIsToldHowMuchOfAListIsWritten) {
    const RegisterWrite writes[] = {{0x70, {1}}, {0x71, {2}}, {0x74, {3}}};
    DeskAmplifier desk(Fault::closing, 6);
    Command command(desk.port(), longTime);
    EXPECT_THAT(complaint([&] { WriteInShutdown(command.link, writes); }),
                EndsWith("; 3 of 3 registers are written, and the amplifier may be left stopped"));
    EXPECT_THAT(complaint([&] { WriteRegisters(command.link, writes); }),
                EndsWith("; 0 of 3 registers are written"));
}

TEST(TcpLink, AWindowGoesOnWithAShortReplyAndDropsWhatIsLeftOfALongOne) {
    DeskAmplifier shortDesk(Fault::half, 1);
    Window window(shortDesk.port(), 1);
    window.write(0x3B, fiveWords);
    EXPECT_THAT(window.read(0x3B), ElementsAre(1, 2, 3, 4, 0, 0, 0, 0));
    DeskAmplifier longDesk(Fault::surplus);
    Window other(longDesk.port(), longTime);
    other.write(0x29, fiveWords);
    EXPECT_EQ(other.readWords(0x29), fiveWords);
}

TEST(TcpLink, ALostServerIsToldToACommandAndNeverToAWindow) {
    DeskAmplifier desk;
    Window window(desk.port(), longTime);
    desk.stop();
    EXPECT_THAT(window.read(0x3B), Each(0));
    EXPECT_EQ(window.link.Connect(), CAmpLink::Connection::refused);
    EXPECT_THAT(window.read(0x3B), Each(0));  // on a socket that is not connected
    EXPECT_THAT(
        complaint([&] { Command(desk.port(), longTime); }),
        EndsWith("no link server answers at 127.0.0.1, port " + std::to_string(desk.port())));
}

}  // namespace
}  // namespace tonvane

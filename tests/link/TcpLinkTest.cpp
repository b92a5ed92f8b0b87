// The client and the virtual amplifier over a real socket.
#include <random>

#include <gmock/gmock.h>

#include "amplifier/RegisterTable.h"
#include "amplifier/WordBytes.h"
#include "link/AmpLink.h"
#include "link/DeskAmplifier.h"
#include "link/RegisterWrites.h"
#include "link/Socket.h"

namespace tonvane {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using tests::DeskAmplifier;
using virtualamp::Fault;

constexpr int32_t longTime = 60000;

std::vector<uint8_t> readRegister(CAmpLink& link, int32_t reg) {
    const int32_t length = LookUpRegister(reg).length;
    std::vector<uint8_t> bytes(static_cast<size_t>(length));
    link.ReadRegister(reg, length, bytes);
    return bytes;
}

// A link as the commands have it.
struct Command {
    explicit Command(const DeskAmplifier& desk, int32_t timeLimit = longTime)
        : link(socket, desk.port(), std::make_unique<CheckedTcpTransport>(timeLimit)) {
        connection = link.Connect();
    }
    std::intptr_t socket = -1;
    CAmpLink link;
    CAmpLink::Connection connection;
};

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

TEST(TcpLink, A100000FramesComeBackAsTheyWereSent) {
    DeskAmplifier desk;
    Command command(desk);
    CAmpLink& link = command.link;
    ASSERT_EQ(command.connection, CAmpLink::Connection::made);
    const std::vector<int32_t> registersOfAllLengths{0x07, 0x20, 0x3B, 0x53, 0x29, 0x77};
    std::mt19937 random(1);
    for (int32_t frame = 0; frame < 100000; frame += 2) {
        const int32_t reg = registersOfAllLengths[random() % registersOfAllLengths.size()];
        const int32_t length = LookUpRegister(reg).length;
        std::vector<uint8_t> bytes(static_cast<size_t>(length));
        for (uint8_t& byte : bytes) {
            byte = static_cast<uint8_t>(random());
        }
        link.WriteRegister(reg, BytesToWords(bytes), length);
        ASSERT_EQ(readRegister(link, reg), bytes) << frame;
    }
    desk.stop();
    EXPECT_EQ(desk.events().size(), 100000U);
}

TEST(TcpLink, AReplyInPiecesIsPutTogether) {
    for (const bool checked : {false, true}) {
        DeskAmplifier desk(Fault::pieces);
        std::intptr_t socket = -1;
        CAmpLink link(socket, desk.port(),
                      checked ? std::make_unique<CheckedTcpTransport>(longTime)
                              : std::make_unique<TcpTransport>());
        link.Connect();
        const int32_t words[] = {0x01020304, 0x05060708, 0x090A0B0C, 0x0D0E0F10, 0x11121314};
        link.WriteRegister(0x29, words, 20);
        EXPECT_THAT(BytesToWords(readRegister(link, 0x29)), testing::ElementsAreArray(words));
    }
}

TEST(TcpLink, ACommandIsToldWhatAServerDidWrong) {
    const struct {
        Fault fault;
        int32_t timeLimit;
        const char* read;
        const char* write;
    } cases[] = {
        {Fault::silent, 20, "answered 0 of 20 bytes within 20 ms", "answered 0 of 1 bytes within"},
        {Fault::half, 500, "answered 10 of 20 bytes within 500 ms", "answered 0 of 1 bytes within"},
        {Fault::pieces, 10, "20 bytes within 10 ms", ""},
        {Fault::closing, longTime, "closed the connection after 0 of 20 bytes", "closed the"},
        {Fault::surplus, longTime, "sent more than the 20 bytes", "sent more than the 1 bytes"},
        {Fault::garbage, longTime, "", ""},
    };
    for (const auto& c : cases) {
        DeskAmplifier desk(c.fault);
        const auto attempt = [&](auto operate) {
            Command command(desk, c.timeLimit);
            return complaint([&] { operate(command.link); });
        };
        EXPECT_THAT(attempt([](CAmpLink& link) { readRegister(link, 0x29); }),
                    AllOf(HasSubstr(c.read), HasSubstr(*c.read ? "read of 29 PEQ Coef L0" : "")));
        const int32_t word = 0x30;
        EXPECT_THAT(attempt([&](CAmpLink& link) {
                        link.WriteRegister(0x07, {&word, 1}, 1);
                    }),
                    AllOf(HasSubstr(c.write), HasSubstr(*c.write ? "write of 07 Master Vol" : "")));
    }
}

TEST(TcpLink, ACommandIsToldHowMuchOfAListIsWritten) {
    const RegisterWrite writes[] = {{0x70, {1}}, {0x71, {2}}, {0x74, {3}}};
    const std::pair<int64_t, const char*> cases[] = {
        {1, "; 0 of 3 registers are written, and the amplifier may be left stopped"},
        {2, "; 0 of 3 registers are written, and the"},
        {4, "; 2 of 3 registers are written, and the"},
        {6, "; 3 of 3 registers are written, and the"},
        {99, ""},
    };
    for (const auto& [after, text] : cases) {
        DeskAmplifier desk(Fault::closing, after);
        Command command(desk);
        EXPECT_THAT(complaint([&] { WriteInShutdown(command.link, writes); }), HasSubstr(text));
    }
    DeskAmplifier desk(Fault::closing, 1);
    Command command(desk);
    EXPECT_THAT(complaint([&] { WriteRegisters(command.link, writes); }),
                testing::EndsWith("; 1 of 3 registers are written"));
}

TEST(TcpLink, AWindowNeverHearsOfALostServer) {
    DeskAmplifier desk(Fault::half, 1);
    std::intptr_t socket = -1;
    CAmpLink link(socket, desk.port(), desk.transport());
    EXPECT_EQ(link.Connect(), CAmpLink::Connection::made);
    const int32_t words[] = {0x01020304, 0x05060708};
    link.WriteRegister(0x3B, words, 8);
    std::array<uint8_t, 8> reply{9, 9, 9, 9, 9, 9, 9, 9};
    std::thread reader([&] { link.ReadRegister(0x3B, 8, reply); });
    while (desk.events().size() < 2) {
        std::this_thread::yield();
    }
    desk.stop();
    reader.join();
    EXPECT_THAT(reply, testing::ElementsAre(1, 2, 3, 4, 0, 0, 0, 0));
    EXPECT_NE(socket, -1);
    link.WriteRegister(0x3B, words, 8);
    link.EnterShutdown();
    EXPECT_EQ(desk.events().back(), "wait 23");
    link.Term();

    EXPECT_EQ(link.Connect(), CAmpLink::Connection::refused);
    EXPECT_NE(socket, -1);
    link.ReadRegister(0x3B, 8, reply);  // on a socket that is not connected
    EXPECT_THAT(reply, testing::Each(0));
    CheckedTcpTransport checked(longTime);
    const std::intptr_t unconnected = checked.open();
    EXPECT_THAT(
        complaint([&] { checked.connect(unconnected, desk.port()); }),
        HasSubstr("no link server answers at 127.0.0.1, port " + std::to_string(desk.port())));
    checked.close(unconnected);
}

TEST(TcpLink, TheServerKeepsItsClientsApart) {
    DeskAmplifier desk;
    std::intptr_t sockets[2] = {-1, -1};
    CAmpLink first(sockets[0], desk.port());
    CAmpLink second(sockets[1], desk.port());
    first.Connect();
    second.Connect();
    const uint8_t halfFrame[] = {1, 0x07, 1};
    tcp::Send(sockets[0], halfFrame);
    EXPECT_EQ(readRegister(second, 0x07), std::vector<uint8_t>{0xFF});
    const uint8_t rest[] = {0x30, 0x00, 0x07, 1};  // and a read behind it in one piece
    tcp::Send(sockets[0], rest);
    std::array<uint8_t, 2> replies{};
    ASSERT_EQ(tcp::Receive(sockets[0], std::span(replies).first(1)), 1);
    ASSERT_EQ(tcp::Receive(sockets[0], std::span(replies).last(1)), 1);
    EXPECT_EQ(replies[1], 0x30);
    const uint8_t noFrame[] = {0x02, 0, 0};
    tcp::Send(sockets[0], noFrame);
    EXPECT_EQ(tcp::Receive(sockets[0], replies), tcp::closedByPeer);
    EXPECT_EQ(readRegister(second, 0x07), std::vector<uint8_t>{0x30});
}

}  // namespace
}  // namespace tonvane

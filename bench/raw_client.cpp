#include "bench/raw_client.h"

#ifdef _WIN32
#include <winsock2.h>
// winsock2.h comes first.
#include <ws2tcpip.h>
#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "bench/connection_texts.h"

namespace Morquil::Bench {

namespace {

constexpr std::size_t bufferSize = 16 * 1024;

#ifdef _WIN32
using Socket = SOCKET;
using Size = int;

void StartSockets() {
    static const int started = [] {
        WSADATA data;
        return WSAStartup(MAKEWORD(2, 2), &data);
    }();
    static_cast<void>(started);
}
void CloseSocket(Socket socket) {
    closesocket(socket);
}
#else
using Socket = int;
using Size = std::size_t;

void StartSockets() {}
void CloseSocket(Socket socket) {
    close(socket);
}
#endif

[[noreturn]] void Fail(const char* what) {
    std::cerr << what << ": is morquil-bench-device running?" << std::endl;
    std::exit(1);
}

/// Returns `invalidSocket` when there is no connection.
SocketHandle Connect(const std::string& address) {
    StartSockets();
    const Socket created = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    constexpr int on = 1;
    setsockopt(created, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof(on));
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_addr.s_addr = inet_addr(address.c_str());
    target.sin_port = htons(devicePort);
    if (connect(created, reinterpret_cast<const sockaddr*>(&target), sizeof(target)) != 0) {
        CloseSocket(created);
        return invalidSocket;
    }
    return static_cast<SocketHandle>(created);
}

}  // namespace

RawClient::RawClient(const std::string& address) : socket_(Connect(address)), buffer_(bufferSize) {
    if (socket_ == invalidSocket) {
        Fail("The raw client cannot connect");
    }
}

RawClient::~RawClient() {
    CloseSocket(static_cast<Socket>(socket_));
}

void RawClient::Send(std::string_view bytes) {
    const auto sent = send(static_cast<Socket>(socket_), bytes.data(), static_cast<Size>(bytes.size()), 0);
    if (static_cast<std::size_t>(sent) != bytes.size()) {
        Fail("The raw client cannot send");
    }
}

void RawClient::Receive(std::size_t count) {
    while (count > 0) {
        const auto room = static_cast<Size>(std::min(count, bufferSize));
        const auto received = recv(static_cast<Socket>(socket_), buffer_.data(), room, 0);
        if (received <= 0) {
            Fail("The raw client cannot receive");
        }
        count -= static_cast<std::size_t>(received);
    }
}

void ConnectRaw(RawClient& client) {
    const Conversation& conversation = ConnectConversation();
    client.Receive(conversation.greeting.size());
    for (const Exchange& exchange : conversation.requests) {
        client.Send(exchange.question);
        client.Receive(exchange.answer.size());
    }
}

void AwaitDevice() {
    for (int attempts = 0; attempts < 500; ++attempts) {
        const SocketHandle connected = Connect(DeviceAddress(0));
        if (connected != invalidSocket) {
            CloseSocket(static_cast<Socket>(connected));
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    Fail("No device");
}

}  // namespace Morquil::Bench

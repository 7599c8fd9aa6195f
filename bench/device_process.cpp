// A device that answers any number of hosts as fast as possible: one thread, one search for the answer, one send. It
// sends what the simulated device would send, but has prepared all of it at the start. Runs until it is terminated.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <string_view>

#include "bench/connection_texts.h"

namespace Morquil::Bench {

namespace {

/// The hosts by socket, each with the part of an incomplete block that it has sent.
using Hosts = std::map<int, std::string>;

class Device {
public:
    Device() {
        for (const Exchange& exchange : ConnectConversation().requests) {
            answers_[exchange.question] = exchange.answer;
        }
        Flood();
    }

    void Listen(const std::string& address) {
        const int listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
        constexpr int on = 1;
        setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_addr.s_addr = inet_addr(address.c_str());
        place.sin_port = htons(devicePort);
        if (bind(listener, reinterpret_cast<const sockaddr*>(&place), sizeof(place)) != 0 ||
            listen(listener, SOMAXCONN) != 0) {
            std::cerr << "The device cannot listen at " << address << std::endl;
            std::exit(1);
        }
        listeners_[listener] = true;
        Watch(listener);
    }

    void Run() {
        std::array<epoll_event, 64> events;
        for (;;) {
            const int count = epoll_wait(watch_, events.data(), events.size(), -1);
            for (int at = 0; at < count; ++at) {
                const int socket = events[static_cast<std::size_t>(at)].data.fd;
                if (listeners_.contains(socket)) {
                    Accept(socket);
                } else {
                    Receive(socket);
                }
            }
        }
    }

private:
    void Watch(int socket) {
        epoll_event event{.events = EPOLLIN, .data = {.fd = socket}};
        epoll_ctl(watch_, EPOLL_CTL_ADD, socket, &event);
    }

    void Accept(int listener) {
        const int host = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (host < 0) {
            return;
        }
        constexpr int on = 1;
        setsockopt(host, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
        hosts_[host].clear();
        Watch(host);
        Send(host, ConnectConversation().greeting);
    }

    void Receive(int host) {
        std::array<char, 4096> buffer;
        const ssize_t received = recv(host, buffer.data(), buffer.size(), 0);
        if (received <= 0) {
            close(host);
            hosts_.erase(host);
            return;
        }
        std::string& pending = hosts_[host];
        pending.append(buffer.data(), static_cast<std::size_t>(received));
        for (std::size_t end = pending.find("\n\n"); end != std::string::npos; end = pending.find("\n\n")) {
            Answer(host, pending.substr(0, end + 2));
            pending.erase(0, end + 2);
        }
    }

    void Answer(int host, const std::string& block) {
        const auto answer = answers_.find(block);
        if (answer != answers_.end()) {
            Send(host, answer->second);
        } else if (block.starts_with(floodHeader)) {
            Send(host, Flood() + EchoOf(block));
        } else {
            Send(host, EchoOf(block));
        }
    }

    // A host that has disconnected is noticed at its next event.
    static void Send(int host, std::string_view text) {
        while (!text.empty()) {
            const ssize_t sent = send(host, text.data(), text.size(), MSG_NOSIGNAL);
            if (sent <= 0) {
                return;
            }
            text.remove_prefix(static_cast<std::size_t>(sent));
        }
    }

    const int watch_ = epoll_create1(EPOLL_CLOEXEC);
    std::map<int, bool> listeners_;
    Hosts hosts_;
    std::map<std::string, std::string, std::less<>> answers_;
};

}  // namespace

}  // namespace Morquil::Bench

int main() {
    using namespace Morquil::Bench;
    Device device;
    for (int number = 0; number < deviceAddressCount; ++number) {
        device.Listen(DeviceAddress(number));
    }
    device.Run();
}

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <iostream>
#include <utility>

#include "bench/connection_texts.h"
#include "bench/devices_raw.h"

namespace Morquil::Bench {

namespace {

/// One conversation of many.
class RawConversation {
public:
    RawConversation(int watch, const std::string& address, std::size_t number)
        : socket_(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, IPPROTO_TCP)) {
        constexpr int on = 1;
        setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on));
        sockaddr_in target{};
        target.sin_family = AF_INET;
        target.sin_addr.s_addr = inet_addr(address.c_str());
        target.sin_port = htons(devicePort);
        connect(socket_, reinterpret_cast<const sockaddr*>(&target), sizeof(target));
        epoll_event event{.events = EPOLLIN, .data = {.u64 = number}};
        epoll_ctl(watch, EPOLL_CTL_ADD, socket_, &event);
    }
    RawConversation(RawConversation&& other) noexcept : socket_(std::exchange(other.socket_, -1)) {}
    ~RawConversation() {
        if (socket_ >= 0) {
            close(socket_);
        }
    }

    /// Call when data has arrived. Returns: whether the conversation is complete.
    bool Continue() {
        std::array<char, 16 * 1024> buffer;
        const ssize_t received = recv(socket_, buffer.data(), buffer.size(), 0);
        if (received <= 0) {
            std::cerr << "A raw client has lost its connection" << std::endl;
            std::exit(1);
        }
        awaited_ -= static_cast<std::size_t>(received);
        const std::vector<Exchange>& requests = ConnectConversation().requests;
        if (awaited_ > 0 || next_ == requests.size()) {
            return awaited_ == 0;
        }
        const Exchange& exchange = requests[next_++];
        send(socket_, exchange.question.data(), exchange.question.size(), MSG_NOSIGNAL);
        awaited_ = exchange.answer.size();
        return false;
    }

private:
    int socket_;
    std::size_t awaited_ = ConnectConversation().greeting.size();
    std::size_t next_ = 0;
};

}  // namespace

void ConnectAllRaw(const std::vector<std::string>& addresses) {
    const int watch = epoll_create1(0);
    std::vector<RawConversation> conversations;
    conversations.reserve(addresses.size());
    for (const std::string& address : addresses) {
        conversations.emplace_back(watch, address, conversations.size());
    }
    std::array<epoll_event, 64> events;
    for (std::size_t complete = 0; complete < addresses.size();) {
        const int count = epoll_wait(watch, events.data(), events.size(), -1);
        for (int at = 0; at < count; ++at) {
            if (conversations[events[static_cast<std::size_t>(at)].data.u64].Continue()) {
                ++complete;
            }
        }
    }
    close(watch);
}

void AllowManyDescriptors() {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace Morquil::Bench

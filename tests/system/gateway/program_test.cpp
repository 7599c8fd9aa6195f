// The program as a process: its command line, signals, and the service manager.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

#include "tests/kit/temporary_folder.h"
#include "tests/system/gateway/distorted_device.h"
#include "tests/system/gateway/http_client.h"

namespace Morquil::Testing {
namespace {

/// Where the program sends what it has to tell the service manager.
class Manager {
public:
    Manager() : path_(folder_.PathOf("notify")), socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un name = {};
        name.sun_family = AF_UNIX;
        path_.copy(name.sun_path, sizeof name.sun_path - 1);
        EXPECT_EQ(::bind(socket_, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
        const timeval limit = {20, 0};
        ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    }
    ~Manager() { ::close(socket_); }
    Manager(const Manager&) = delete;
    Manager& operator=(const Manager&) = delete;

    const std::string& Path() const { return path_; }
    /// Waits for a message that begins so. Returns: it, or an empty text.
    std::string Await(std::string_view beginning) {
        char bytes[1'000];
        for (ssize_t size = 0; (size = ::recv(socket_, bytes, sizeof bytes, 0)) >= 0;) {
            const std::string message(bytes, static_cast<std::size_t>(size));
            if (message.starts_with(beginning)) {
                return message;
            }
        }
        return {};
    }

private:
    TemporaryFolder folder_;
    std::string path_;
    int socket_;
};

/// The program, with its output in a pipe.
class Process {
public:
    explicit Process(const std::vector<std::string>& arguments,
                     const std::vector<std::pair<std::string, std::string>>& variables = {},
                     const std::string& input = {}) {
        int ends[2];
        int inputEnds[2];
        EXPECT_EQ(::pipe(ends), 0);
        EXPECT_EQ(::pipe(inputEnds), 0);
        id_ = ::fork();
        if (id_ == 0) {
            for (const auto& [name, value] : variables) {
                ::setenv(name.c_str(), value.c_str(), 1);
            }
            ::dup2(inputEnds[0], STDIN_FILENO);
            ::close(inputEnds[1]);
            ::dup2(ends[1], STDOUT_FILENO);
            ::dup2(ends[1], STDERR_FILENO);
            ::close(ends[0]);
            ::close(ends[1]);
            std::vector<char*> words{const_cast<char*>(MORQUIL_GATEWAY_PATH)};
            for (const std::string& argument : arguments) {
                words.push_back(const_cast<char*>(argument.c_str()));
            }
            words.push_back(nullptr);
            ::execv(words.front(), words.data());
            ::_exit(126);
        }
        ::close(ends[1]);
        ::close(inputEnds[0]);
        EXPECT_EQ(::write(inputEnds[1], input.data(), input.size()), static_cast<ssize_t>(input.size()));
        ::close(inputEnds[1]);
        output_ = ::fdopen(ends[0], "r");
    }
    ~Process() {
        if (id_ > 0) {
            ::kill(id_, SIGKILL);
            ::waitpid(id_, nullptr, 0);
        }
        std::fclose(output_);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void Signal(int signal) const { ::kill(id_, signal); }
    /// The next line of the output that contains `text`; empty at its end.
    std::string AwaitLine(const std::string& text) {
        char line[4'000];
        while (std::fgets(line, sizeof line, output_) != nullptr) {
            if (std::string(line).find(text) != std::string::npos) {
                return line;
            }
        }
        return {};
    }
    int Wait() {
        int status = -1;
        ::waitpid(std::exchange(id_, -1), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t id_ = -1;
    std::FILE* output_ = nullptr;
};

std::uint16_t PortIn(const std::string& url) {
    const std::size_t colon = url.rfind(':');
    return colon == std::string::npos ? std::uint16_t{0}
                                      : static_cast<std::uint16_t>(std::atoi(url.c_str() + colon + 1));
}

TEST(GatewayProgram, ChecksAConfigurationWithoutStarting) {
    const TemporaryFolder folder;
    Process well({"--check", folder.Make("well.toml", "[[device]]\nname = \"a\"\naddress = \"10.0.0.1\"\n")});
    EXPECT_EQ(well.Wait(), 0);
    const std::string path = folder.Make("wrong.toml", "[server]\nport = 99999\n");
    Process wrong({"--check", path});
    EXPECT_EQ(wrong.AwaitLine("port"), path + ":2:8: port: 99999 is outside 0 to 65535\n");
    EXPECT_EQ(wrong.Wait(), 2);
    Process missing({"--check", folder.PathOf("none")});
    EXPECT_EQ(missing.AwaitLine("none"), folder.PathOf("none") + ": cannot be read: No such file or directory\n");
    EXPECT_EQ(missing.Wait(), 2);
}

TEST(GatewayProgram, RefusesToBeReachableByEverybody) {
    const TemporaryFolder folder;
    Process process({"--config", folder.Make("g.toml", "[server]\naddress = \"0.0.0.0\"\nport = 0\n")});
    EXPECT_NE(process.AwaitLine("other machines can reach 0.0.0.0"), "");
    EXPECT_EQ(process.Wait(), 1);
}

TEST(GatewayProgram, TellsTheServiceManagerHowItIs) {
    const TemporaryFolder folder;
    Manager manager;
    Process process({"--config", folder.Make("g.toml", "[server]\nport = 0\n")},
                    {{"NOTIFY_SOCKET", manager.Path()}, {"WATCHDOG_USEC", "300000"}});
    EXPECT_NE(manager.Await("READY=1"), "");
    EXPECT_EQ(manager.Await("WATCHDOG=1"), "WATCHDOG=1");
    EXPECT_EQ(manager.Await("WATCHDOG=1"), "WATCHDOG=1");
    process.Signal(SIGHUP);
    EXPECT_NE(manager.Await("RELOADING=1"), "");
    EXPECT_NE(manager.Await("READY=1"), "");
    process.Signal(SIGTERM);
    EXPECT_NE(manager.Await("STOPPING=1"), "");
    EXPECT_EQ(process.Wait(), 0);
}

TEST(GatewayProgram, AReloadKeepsUnchangedDevicesConnected) {
    DistortedDevice device;
    const TemporaryFolder folder;
    const std::string entry = "[[device]]\nname = \"a\"\naddress = \"" + device.Address() + "\"\n";
    const std::string config = folder.Make("g.toml", "[server]\nport = 0\n" + entry);
    Process process({"--config", config});
    const std::uint16_t port = PortIn(process.AwaitLine("http://"));
    EventClient events(port);
    const auto connected = events.AwaitLink("connected");
    ASSERT_TRUE(connected);
    std::ofstream(config) << "[server]\nport = 0\n" + entry + "[[device]]\nname = \"b\"\naddress = \"127.250.250.9\"\n";
    process.Signal(SIGHUP);
    EXPECT_NE(process.AwaitLine("configuration reloaded"), "");
    const Json devices = HttpClient(port).Ask("GET", "/api/v1/devices").AsJson()["devices"];
    ASSERT_EQ(devices.size(), 2U);
    EXPECT_EQ(devices[0]["link"]["since"], connected->data["link"]["since"]);
    std::ofstream(config) << "nonsense";
    process.Signal(SIGHUP);
    EXPECT_NE(process.AwaitLine("configuration not reloaded"), "");
    EXPECT_EQ(HttpClient(port).Ask("GET", "/api/v1/devices").AsJson()["devices"].size(), 2U);
}

TEST(GatewayProgram, OpensToOtherMachinesOnceThereIsAUser) {
    const TemporaryFolder folder;
    const std::string config = folder.Make("g.toml", "[server]\naddress = \"0.0.0.0\"\nport = 0\ninsecure = true\n");
    Process adding({"--config", config, "user", "add", "anna", "--role", "admin"}, {}, "correct horse battery\n");
    EXPECT_EQ(adding.Wait(), 0);
    Process token({"--config", config, "token", "add", "monitor", "--role", "viewer"});
    const std::string line = token.AwaitLine("mqt_");
    EXPECT_EQ(token.Wait(), 0);
    Process process({"--config", config});
    const std::uint16_t port = PortIn(process.AwaitLine("http://"));
    EXPECT_EQ(HttpClient(port).Ask("GET", "/api/v1/devices").status, 401);
    const std::string bearer = "Authorization: Bearer " + line.substr(0, line.find('\n')) + "\r\n";
    EXPECT_EQ(HttpClient(port).Ask("GET", "/api/v1/devices", {}, bearer).status, 200);
    EXPECT_EQ(HttpClient(port).Ask("POST", "/api/v1/devices", "{}", bearer).status, 403);
}

TEST(GatewayProgram, RefusesUsersThatMakeNoSense) {
    const TemporaryFolder folder;
    const std::string database = folder.PathOf("gateway.db");
    Process weak({"user", "add", "anna", "--role", "admin", "--database", database}, {}, "short\n");
    EXPECT_EQ(weak.Wait(), 1);
    Process role({"user", "add", "anna", "--role", "king", "--database", database}, {}, "long enough\n");
    EXPECT_EQ(role.Wait(), 2);
}

TEST(GatewayProgram, VerifiesAndCopiesItsDatabase) {
    const TemporaryFolder folder;
    const std::string database = folder.PathOf("gateway.db");
    const std::string copy = folder.PathOf("copy.db");
    Process adding({"user", "add", "anna", "--role", "admin", "--database", database}, {}, "correct horse battery\n");
    ASSERT_EQ(adding.Wait(), 0);
    Process verify({"verify", "--database", database});
    EXPECT_NE(verify.AwaitLine("rows of the audit are intact"), "");
    EXPECT_EQ(verify.Wait(), 0);
    Process backup({"backup", copy, "--database", database});
    EXPECT_EQ(backup.Wait(), 0);
    Process again({"backup", copy, "--database", database});
    EXPECT_EQ(again.Wait(), 1);
    Process second({"user", "add", "anna", "--role", "admin", "--database", copy}, {}, "correct horse battery\n");
    EXPECT_NE(second.AwaitLine("anna"), "");
    EXPECT_EQ(second.Wait(), 1);
}

TEST(GatewayProgram, TheDemoServesASimulatedFleetAndEndsWithIt) {
    Process process({"--demo", "--devices", "3", "--port", "0"});
    const std::uint16_t port = PortIn(process.AwaitLine("http://127.0.0.1:"));
    EventClient events(port, "?devices=converter-3");
    const auto connected = events.AwaitLink("connected");
    ASSERT_TRUE(connected);
    EXPECT_EQ(
        HttpClient(port).Ask("PUT", "/api/v1/devices/converter-3/properties/proc-amp.gain", R"({"value": 12})").status,
        200);
    process.Signal(SIGTERM);
    EXPECT_EQ(process.Wait(), 0);
}

}  // namespace
}  // namespace Morquil::Testing

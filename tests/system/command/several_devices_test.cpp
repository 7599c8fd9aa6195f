// One command line for several devices.
#include <gtest/gtest.h>

#include "command/devices/named_devices.h"
#include "command/properties/value.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/command/invocation.h"
#include "tests/system/command/simulated_device.h"

namespace Morquil::Testing {
namespace {

using Command::ExitCode;
using Command::Json;
using Words = std::vector<std::string>;

constexpr const char* silentAddress = "127.255.255.1";

TEST(Groups, AreLinesOfNamesAndAddresses) {
    const Command::Groups groups =
        Command::ParseGroups("# racks\nrack-1: 192.168.1.10  192.168.1.11 # two\n\nrack-2:studio\nrack-1: van\n");
    EXPECT_EQ(groups, (Command::Groups{{"rack-1", {"192.168.1.10", "192.168.1.11", "van"}}, {"rack-2", {"studio"}}}));
    EXPECT_THROW(Command::ParseGroups("rack-1 192.168.1.10\n"), Command::UsageFailure);
    EXPECT_THROW(Command::ParseGroups("two words: 192.168.1.10\n"), Command::UsageFailure);
}

TEST(Groups, StandForTheirDevicesEachOnce) {
    const TemporaryFolder folder;
    const std::string file = folder.Make("groups", "rack: a b\n");
    EXPECT_EQ(Command::ExpandDevices({"b", "@rack", "c"}, file), (Words{"b", "a", "c"}));
    EXPECT_THROW(Command::ExpandDevices({"@stage"}, file), Command::UsageFailure);
    EXPECT_EQ(Command::ExpandDevices({"b"}, "there is no such file"), Words{"b"});
}

TEST(SeveralDevices, MakeOneTable) {
    const SimulatedOnNetwork one;
    const SimulatedOnNetwork other;
    const Outcome outcome =
        RunCommand("", {"-d", one.Address(), "-d", other.Address(), "get", "proc-amp.gain", "proc-amp.hue"});
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    const std::size_t width = std::max(one.Address().size(), other.Address().size());
    const auto row = [width](const std::string& address, const std::string& rest) {
        return address + std::string(width - address.size() + 2, ' ') + rest + "\n";
    };
    EXPECT_EQ(outcome.out, row(one.Address(), "proc-amp.gain  0") + row(one.Address(), "proc-amp.hue   0") +
                               row(other.Address(), "proc-amp.gain  0") + row(other.Address(), "proc-amp.hue   0"));
}

TEST(SeveralDevices, HaveTheExitCodeOfTheWorst) {
    const SimulatedOnNetwork device;
    const Outcome outcome =
        RunCommand("", {"--json", "-d", device.Address(), "-d", silentAddress, "set", "proc-amp.gain", "5"});
    EXPECT_EQ(outcome.code, ExitCode::Unreachable);
    const Json all = Json::parse(outcome.out);
    EXPECT_EQ(all.at(device.Address()).at("changes").at(0).at("result"), "applied");
    EXPECT_EQ(all.at(silentAddress).at("exitCode"), 2);
    EXPECT_EQ(outcome.err.find("morquilctl: " + std::string(silentAddress) + ": "), 0u) << outcome.err;
    EXPECT_NE(outcome.err.find("morquilctl: 1 of 2 devices failed\n"), std::string::npos) << outcome.err;
}

TEST(SeveralDevices, ComeFromAFile) {
    const SimulatedOnNetwork one;
    const SimulatedOnNetwork other;
    const TemporaryFolder folder;
    const std::string file = folder.Make("devices", one.Address() + " # one\n" + other.Address() + "\n");
    const Outcome outcome = RunCommand("", {"--devices", file, "set", "proc-amp.gain", "5"});
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    for (const SimulatedOnNetwork* const device : {&one, &other}) {
        EXPECT_EQ(RunCommand(device->Address(), {"get", "--value", "proc-amp.gain"}).out, "5\n");
    }
}

TEST(SeveralDevices, AreNotSavedInOneFile) {
    const SimulatedOnNetwork one;
    const SimulatedOnNetwork other;
    const TemporaryFolder folder;
    const Words devices = {"-d", one.Address(), "-d", other.Address()};
    const auto save = [&devices](const std::string& file) {
        Words words = devices;
        words.insert(words.end(), {"save", file});
        return RunCommand("", words).code;
    };
    EXPECT_EQ(save(folder.PathOf("all.settings")), ExitCode::Usage);
    EXPECT_TRUE(folder.Names().empty());
    EXPECT_EQ(save(folder.PathOf("{}.settings")), ExitCode::Done);
    EXPECT_EQ(folder.Names(), (std::set<std::string>{one.Address() + ".settings", other.Address() + ".settings"}));
}

}  // namespace
}  // namespace Morquil::Testing

// Why a device cannot be reached, in words.
#include "diagnosis/diagnosis.h"

#include <gtest/gtest.h>

#include "diagnosis/address.h"

namespace Morquil::Testing {
namespace {

using Diagnosis::Explain;
using Diagnosis::Fault;
using Diagnosis::FaultOfAddress;
using Diagnosis::Visit;
using End = Diagnosis::Visit::End;

Fault FaultOf(End end, const std::string& received = {}) {
    return Explain(Visit{.end = end, .received = received}).fault;
}

TEST(Addresses, MayBeNamesAndIpv4Addresses) {
    for (const char* const address : {"10.0.0.1", "studio-1", "studio-1.example.com", "a"}) {
        EXPECT_EQ(FaultOfAddress(address), std::nullopt) << address;
    }
}

TEST(Addresses, HaveNoPort) {
    EXPECT_EQ(FaultOfAddress("10.0.0.1:9800"), "has a port: write 10.0.0.1, the port is always 9800");
    EXPECT_EQ(FaultOfAddress("studio-1:80"), "has a port: write studio-1, the port is always 9800");
}

TEST(Addresses, AreNotOfVersion6) {
    for (const char* const address : {"::1", "fe80::1%eth0", "[2001:db8::1]", "[2001:db8::1]:9800"}) {
        EXPECT_EQ(FaultOfAddress(address), "is an IPv6 address: name the device by its IPv4 address or a host name")
            << address;
    }
}

TEST(Addresses, AreNotOtherTexts) {
    for (const char* const address : {"http://10.0.0.1", "10.0.0.1/24", "studio:one", "10.0.0.1 "}) {
        EXPECT_NE(FaultOfAddress(address), std::nullopt) << address;
    }
}

TEST(Diagnosis, TellsFailuresOfTheNetworkApart) {
    EXPECT_EQ(FaultOf(End::NotResolved), Fault::NotResolved);
    EXPECT_EQ(FaultOf(End::LookupFailed), Fault::LookupFailed);
    EXPECT_EQ(FaultOf(End::Refused), Fault::Refused);
    EXPECT_EQ(FaultOf(End::NoRoute), Fault::NoRoute);
    EXPECT_EQ(FaultOf(End::NoAnswer), Fault::NoAnswer);
    EXPECT_EQ(Explain(Visit{.end = End::Failed, .reason = "Permission denied"}).sentence,
              "cannot be reached: Permission denied");
}

TEST(Diagnosis, KnowsADeviceByItsFirstWords) {
    for (const char* const said : {"PROTOCOL PREAMBLE:\nVersion: 2.22\n\n", "\r\nprotocol preamble:\r\n"}) {
        EXPECT_EQ(FaultOf(End::StillOpen, said), Fault::None) << said;
        EXPECT_EQ(FaultOf(End::HungUp, said), Fault::BrokenOff) << said;
    }
}

TEST(Diagnosis, QuotesAnotherProgram) {
    const Diagnosis::Finding finding = Explain(Visit{.end = End::StillOpen, .received = "SSH-2.0-OpenSSH_9.2\r\nx"});
    EXPECT_EQ(finding.fault, Fault::NotADevice);
    EXPECT_EQ(finding.sentence,
              "is not a Morquil device: another program answers on port 9800, which says 'SSH-2.0-OpenSSH_9.2'");
    EXPECT_EQ(FaultOf(End::HungUp, "HTTP/1.1 400 Bad Request\r\n"), Fault::NotADevice);
}

TEST(Diagnosis, DoesNotJudgeWhatHasBarelyBegun) {
    for (const char* const said : {"", "\n", "PROTOCOL PR"}) {
        EXPECT_EQ(FaultOf(End::StillOpen, said), Fault::Silent) << said;
        EXPECT_EQ(FaultOf(End::HungUp, said), Fault::BrokenOff) << said;
    }
}

TEST(Diagnosis, TakesTheLibrarysReasonIfThatSaysItAll) {
    using morquil::ConnectFailure;
    EXPECT_FALSE(Explain(ConnectFailure::NoResponse).has_value());
    EXPECT_EQ(Explain(ConnectFailure::RemoteLock)->fault, Fault::RemoteLocked);
    for (const ConnectFailure reason :
         {ConnectFailure::IncompatibleFirmware, ConnectFailure::IncompatibleUpdateSupported}) {
        EXPECT_EQ(Explain(reason)->fault, Fault::WrongProtocol);
        EXPECT_NE(Explain(reason)->sentence.find("another version of the protocol"), std::string::npos);
    }
}

}  // namespace
}  // namespace Morquil::Testing

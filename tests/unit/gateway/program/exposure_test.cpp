#include "gateway/program/exposure.h"

#include <gtest/gtest.h>

namespace Morquil::Gateway {
namespace {

std::string FaultOf(const std::string& address, bool isOpen, bool isSecure, bool isInsecure) {
    ServerConfig server;
    server.address = address;
    server.insecure = isInsecure;
    server.certificate = isSecure ? "c.pem" : "";
    server.key = server.certificate;
    return ExposureFault(server, isOpen);
}

TEST(Exposure, OnThisMachineNothingIsAskedFor) {
    EXPECT_EQ(FaultOf("127.0.0.1", true, false, false), "");
    EXPECT_EQ(FaultOf("127.1.2.3", true, false, false), "");
    EXPECT_EQ(FaultOf("::1", true, false, false), "");
}

TEST(Exposure, BeyondItThereHaveToBeUsersWhateverElseIsChosen) {
    for (const char* const address : {"0.0.0.0", "::", "10.0.0.1"}) {
        EXPECT_NE(FaultOf(address, true, true, false).find("user add"), std::string::npos) << address;
        EXPECT_NE(FaultOf(address, true, false, true).find("user add"), std::string::npos) << address;
    }
}

TEST(Exposure, BeyondItConnectionsAreEncryptedUnlessTheOperatorHasChosenOtherwise) {
    EXPECT_NE(FaultOf("0.0.0.0", false, false, false).find("certificate"), std::string::npos);
    EXPECT_EQ(FaultOf("0.0.0.0", false, true, false), "");
    EXPECT_EQ(FaultOf("0.0.0.0", false, false, true), "");
}

}  // namespace
}  // namespace Morquil::Gateway

// A device's whole state as it may come over a network: in two pieces that meet anywhere, or only up to anywhere.
//   MORQUIL_SPLITS=N  every Nth place only (1)
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "device/device.h"
#include "tests/platform/owned_bstr.h"
#include "tests/simulation/counted_observer.h"
#include "tests/simulation/environment.h"
#include "tests/simulation/quiet_console.h"
#include "tests/simulation/scheduler.h"
#include "tests/simulation/simulated_comms.h"
#include "tests/support/temporary_folder.h"

namespace Morquil::Simulation {
namespace {

using Test::OwnedBstr;
using Test::Utf16;

constexpr std::array propertySets{morquilInputConfigurationPropertySetId, morquilOutputConfigurationPropertySetId,
                                  morquilVideoProcAmpPropertySetId,       morquilTestPatternPropertySetId,
                                  morquilVideoAdvancedPropertySetId,      morquilNoiseReductionPropertySetId,
                                  morquilColorCorrectionPropertySetId,    morquilVideoClipPropertySetId,
                                  morquilAspectFillPropertySetId,         morquilTimecodePropertySetId,
                                  morquilClosedCaptionPropertySetId,      morquilVideoIndexPropertySetId,
                                  morquilReferencePropertySetId,          morquilVariableAspectRatioPropertySetId,
                                  morquilAudioMappingPropertySetId,       morquil3dModePropertySetId,
                                  morquilNetworkConfigPropertySetId,      morquilDeviceFilenamesPropertySetId,
                                  morquilDeviceControlPropertySetId,      morquilPresetPropertySetId};

/// Everything that a host can be told, in one list.
class Listener {
public:
    explicit Listener(CMorquilDevice& device) {
        connection_.told = properties_.told = &told_;
        device.AddConnectionObserver(&connection_);
        for (const _MorquilPropertySetId set : propertySets) {
            device.AddPropertyObserver(&properties_, set);
        }
    }

    const std::vector<std::uint32_t>& Told() const { return told_; }

    static constexpr std::uint32_t connected = 1;
    static constexpr std::uint32_t disconnected = 2;

private:
    struct Connection final : CountedObserver<IMorquilConnectionObserver> {
        STDMETHODIMP Connected() override { return told->push_back(connected), S_OK; }
        STDMETHODIMP Disconnected(_MorquilConnectToFailure) override { return told->push_back(disconnected), S_OK; }
        std::vector<std::uint32_t>* told = nullptr;
    };
    struct Properties final : CountedObserver<IMorquilPropertyObserver> {
        STDMETHODIMP PropertyChanged(_MorquilPropertySetId set) override {
            return told->push_back(static_cast<std::uint32_t>(set)), S_OK;
        }
        std::vector<std::uint32_t>* told = nullptr;
    };

    std::vector<std::uint32_t> told_;
    Connection connection_;
    Properties properties_;
};

/// The state of every split would take minutes.
constexpr std::size_t stateStride = 101;

/// A host's visit to a device that says what it is made to, and nothing else.
class Visit {
public:
    explicit Visit(Wire wire) : wire_(std::move(wire)) {
        Scheduler::Instance().Begin(dice_, [] { std::abort(); });
        _MorquilConnectToFailure reason{};
        device_->Connect(OwnedBstr(Utf16{OLESTR("device.test")}).Get(), nullptr, &reason);
        Scheduler::Instance().LetOthersRun(Scheduler::Instance().Now() + 10);
    }
    ~Visit() {
        device_->Release();
        Scheduler::Instance().End();
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    const std::vector<std::uint32_t>& Told() const { return listener_.Told(); }

    /// What the getters answer: all settings, what identifies the device, and all conversions.
    std::string State() const {
        static const Test::TemporaryFolder folder;
        static const std::string path = folder.PathOf("state");
        device_->SaveSettingsFile(OwnedBstr(Utf16(path.begin(), path.end())).Get());
        std::string state = Test::ContentOf(path);
        UINT version = 0;
        state += std::to_string(device_->GetSoftwareVersion(&version)) + ' ' + std::to_string(version) + '\n';
        for (int mode = 0; mode < 34 * 34; ++mode) {
            for (int ratio = 0; ratio < 5; ++ratio) {
                LONG isSupported = 0;
                device_->IsConversionSupported(static_cast<_MorquilAPIVideoMode>(mode / 34),
                                               static_cast<_MorquilAPIVideoMode>(mode % 34),
                                               static_cast<_MorquilAPIAspectRatio>(ratio), &isSupported);
                state += isSupported != 0 ? '1' : '0';
            }
        }
        return state;
    }

private:
    SeededDice dice_{1};
    Wire wire_;
    NetworkManners manners_;
    WireListener nobody_;
    CMorquilDevice* device_ = new CMorquilDevice(std::make_unique<SimulatedComms>(wire_, manners_, nobody_));
    Listener listener_{*device_};
};

const std::string& Dump() {
    static const std::string dump = Test::ContentOf(std::string(MORQUIL_TEST_DATA) + "/full_dump.txt");
    return dump;
}

std::size_t Stride() {
    return static_cast<std::size_t>(FromEnvironment("MORQUIL_SPLITS", 1));
}

Wire TwoPieces(std::size_t split) {
    Wire wire;
    for (const std::string& piece : {Dump().substr(0, split), Dump().substr(split)}) {
        if (!piece.empty()) {
            wire.Say(piece);
        }
    }
    return wire;
}

Wire BrokenAfter(std::size_t count) {
    Wire wire;
    if (count > 0) {
        wire.Say(Dump().substr(0, count));
    }
    // Later: what is reported together with its end is lost.
    wire.Break(1);
    return wire;
}

std::vector<std::uint32_t> Told(const Wire& wire) {
    const QuietConsole quiet;
    return Visit(wire).Told();
}

std::string State(const Wire& wire) {
    const QuietConsole quiet;
    return Visit(wire).State();
}

/// Without `Connected`, which another thread tells than all changes.
std::vector<std::uint32_t> Changes(const std::vector<std::uint32_t>& told) {
    std::vector<std::uint32_t> changes;
    std::copy_if(told.begin(), told.end(), std::back_inserter(changes),
                 [](std::uint32_t what) { return what != Listener::connected; });
    return changes;
}

TEST(Splits, AllTellTheSame) {
    const std::vector<std::uint32_t> whole = Told(TwoPieces(0));
    ASSERT_EQ(std::count(whole.begin(), whole.end(), Listener::connected), 1);
    ASSERT_EQ(std::set<std::uint32_t>(whole.begin(), whole.end()).size(), propertySets.size() + 1);
    for (std::size_t split = 1; split < Dump().size(); split += Stride()) {
        ASSERT_EQ(Told(TwoPieces(split)), whole) << "split before byte " << split;
    }
}

TEST(Splits, GiveTheSameState) {
    const std::string whole = State(TwoPieces(0));
    ASSERT_NE(whole.find("Gain: "), std::string::npos);
    for (std::size_t split = 1; split < Dump().size(); split += stateStride) {
        ASSERT_EQ(State(TwoPieces(split)), whole) << "split before byte " << split;
    }
}

TEST(Splits, AtTheEndsOfBlocksGiveTheSameState) {
    const std::string whole = State(TwoPieces(0));
    for (std::size_t end = Dump().find("\n\n"); end != std::string::npos; end = Dump().find("\n\n", end + 1)) {
        for (std::size_t split = end; split <= std::min(end + 3, Dump().size()); ++split) {
            ASSERT_EQ(State(TwoPieces(split)), whole) << "split before byte " << split;
        }
    }
}

TEST(Splits, BeforeALossTellAPrefixAndOneEnd) {
    const std::vector<std::uint32_t> whole = Changes(Told(TwoPieces(0)));
    for (std::size_t count = 0; count <= Dump().size(); count += Stride()) {
        std::vector<std::uint32_t> told = Changes(Told(BrokenAfter(count)));
        ASSERT_FALSE(told.empty()) << "lost after byte " << count;
        ASSERT_EQ(told.back(), Listener::disconnected) << "lost after byte " << count;
        told.pop_back();
        ASSERT_LE(told.size(), whole.size()) << "lost after byte " << count;
        ASSERT_TRUE(std::equal(told.begin(), told.end(), whole.begin())) << "lost after byte " << count;
    }
}

}  // namespace
}  // namespace Morquil::Simulation

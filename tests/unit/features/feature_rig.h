// A feature object between a host and a device; the test plays both.
#pragma once

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "MorquilAPI.h"
#include "tests/unit/features/feature_cases.h"
#include "transport/abstract_comms.h"
#include "transport/morquil_text_protocol_client.h"

namespace Morquil::Testing {

/// A connection that is never established: what is queued for it stays queued.
class UnconnectedComms final : public AbstractComms {
public:
    explicit UnconnectedComms(const bool& canWake) : canWake_(canWake) {}

    bool Initialise() override { return true; }
    bool Open(const std::string&, std::uint32_t, bool) override { return false; }
    bool WaitForConnect(std::int32_t) override { return false; }
    bool Attach(SocketHandle, bool) override { return false; }
    void Close() override {}
    std::uint32_t SetWaitMode(bool, std::uint32_t timeoutMs) override { return timeoutMs; }
    CommsEvent WaitForEvent() override { return CommsEvent::WaitFailed; }
    int Receive(char*, int, int) override { return commsFailed; }
    int Send(const char*, int, int) override { return commsFailed; }
    bool Signal(int) override { return canWake_; }

private:
    const bool& canWake_;
};

/// The object that counts references for a feature.
class FeatureOwner final : public IUnknown {
public:
    STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
        askedFor = iid;
        *out = this;
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override { return --references; }

    ULONG references = 1;
    GUID askedFor{};
};

/// Records its notifications.
class FeatureObserver final : public IMorquilPropertyObserver {
public:
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP PropertyChanged(_MorquilPropertySetId id) override {
        notifications_.push_back(id);
        return S_OK;
    }

    /// The notifications since the last call.
    std::vector<_MorquilPropertySetId> TakeNotifications() { return std::exchange(notifications_, {}); }

private:
    std::vector<_MorquilPropertySetId> notifications_;
};

/// Collects the feature's messages and passes it the blocks that the parser reads.
template <class FeatureClass>
class FeatureClient final : public MorquilTextProtocolClient {
public:
    FeatureClient() : MorquilTextProtocolClient(std::make_unique<UnconnectedComms>(canWake)) {}
    ~FeatureClient() override { Stop(); }

    void ReportTo(FeatureClass& feature, const std::string& text, bool notify) {
        feature_ = &feature;
        notify_ = notify;
        OnDataReceived(text.data(), text.size());
    }
    /// The next message as it would be sent; empty when none is pending.
    std::string TakeSentText() {
        const auto message = TakeNextMessage();
        return message != nullptr ? TextOf(*message) : std::string();
    }

    /// Whether the connection thread can be woken.
    bool canWake = true;

private:
    template <class Set>
    void Give(const Set& set) {
        if constexpr (requires { feature_->ApplyChangeSet(set, true); }) {
            feature_->ApplyChangeSet(set, notify_);
        } else if constexpr (requires { feature_->ApplyAvailabilityChangeSet(set); }) {
            feature_->ApplyAvailabilityChangeSet(set);
        } else {
            ADD_FAILURE() << "a block of another feature";
        }
    }

    void OnConnectionChanged(bool) override {}
    void OnProtocolError(const char* text) override { ADD_FAILURE() << text; }
    void OnUnknownBlock() override { ADD_FAILURE() << "an unknown block"; }

    // clang-format off
    void OnProtocolPreamble(const ProtocolPreambleChangeSet& set) override { Give(set); }
    void OnMorquilDevice(const MorquilDeviceChangeSet& set) override { Give(set); }
    void OnVideoInput(const VideoInputChangeSet& set) override { Give(set); }
    void OnVideoInputAvailability(const VideoInputAvailabilityChangeSet& set) override { Give(set); }
    void OnVideoOutput(const VideoOutputChangeSet& set) override { Give(set); }
    void OnVideoOutputAvailability(const VideoOutputAvailabilityChangeSet& set) override { Give(set); }
    void OnSupportedConversions(const SupportedConversionsChangeSet& set) override { Give(set); }
    void OnVideoProcAmp(const VideoProcAmpChangeSet& set) override { Give(set); }
    void OnVideoProcAmpAvailability(const VideoProcAmpAvailabilityChangeSet& set) override { Give(set); }
    void OnVideoAdjust(const VideoAdjustChangeSet& set) override { Give(set); }
    void OnVideoAdjustAvailability(const VideoAdjustAvailabilityChangeSet& set) override { Give(set); }
    void OnNoiseReduction(const NoiseReductionChangeSet& set) override { Give(set); }
    void OnNoiseReductionAvailability(const NoiseReductionAvailabilityChangeSet& set) override { Give(set); }
    void OnTestPattern(const TestPatternChangeSet& set) override { Give(set); }
    void OnTestPatternAvailability(const TestPatternAvailabilityChangeSet& set) override { Give(set); }
    void OnVideoAdvanced(const VideoAdvancedChangeSet& set) override { Give(set); }
    void OnVideoAdvancedAvailability(const VideoAdvancedAvailabilityChangeSet& set) override { Give(set); }
    void OnAncillaryData(const AncillaryDataChangeSet& set) override { Give(set); }
    void OnAncillaryDataAvailability(const AncillaryDataAvailabilityChangeSet& set) override { Give(set); }
    void OnGenlock(const GenlockChangeSet& set) override { Give(set); }
    void OnGenlockAvailability(const GenlockAvailabilityChangeSet& set) override { Give(set); }
    void OnVariableAspectRatio(const VariableAspectRatioChangeSet& set) override { Give(set); }
    void OnVariableAspectRatioAvailability(const VariableAspectRatioAvailabilityChangeSet& set) override { Give(set); }
    void OnAlign(const AlignChangeSet& set) override { Give(set); }
    void OnAlignAvailability(const VariableAspectRatioAvailabilityChangeSet& set) override { Give(set); }
    void OnAudio(const AudioChangeSet& set) override { Give(set); }
    void OnAudioAvailability(const AudioAvailabilityChangeSet& set) override { Give(set); }
    void OnMode3D(const Mode3DChangeSet& set) override { Give(set); }
    void OnMode3DAvailability(const Mode3DAvailabilityChangeSet& set) override { Give(set); }
    void OnNetworkConfig(const NetworkConfigChangeSet& set) override { Give(set); }
    void OnDeviceFilenames(const DeviceFilenamesChangeSet& set) override { Give(set); }
    void OnPreset(const PresetChangeSet& set) override { Give(set); }
    void OnPresetAvailability(const PresetAvailabilityChangeSet& set) override { Give(set); }
    // clang-format on

    FeatureClass* feature_ = nullptr;
    bool notify_ = true;
};

/// Everything around one feature, and the rules that its methods share. `lines` are those of the feature's own block,
/// each with its line feed.
template <class FeatureClass>
class FeatureTest : public testing::Test {
protected:
    static constexpr const FeatureCase& theCase = featureCase<FeatureClass>;

    FeatureTest() { EXPECT_EQ(feature.AddObserver(&observer), S_OK); }

    static std::string BlockOf(const char* header, const std::string& lines) {
        return std::string(header) + ":\n" + lines + "\n";
    }
    void Report(const std::string& lines, bool notify = true) {
        client.ReportTo(feature, BlockOf(theCase.block, lines), notify);
    }
    void ReportAvailability(const std::string& lines) {
        client.ReportTo(feature, BlockOf(theCase.availabilityBlock, lines), true);
    }

    /// The setter that returned `result` has sent one block with exactly these lines.
    void ExpectSent(HRESULT result, const std::string& lines) {
        EXPECT_EQ(result, S_OK) << lines;
        EXPECT_EQ(client.TakeSentText(), BlockOf(theCase.block, lines));
        EXPECT_EQ(client.TakeSentText(), "") << lines;
    }
    void ExpectRefused(HRESULT result, HRESULT expected = E_INVALIDARG) {
        EXPECT_EQ(result, expected);
        EXPECT_EQ(client.TakeSentText(), "");
    }

    /// Values from `bound` on are refused; smaller ones are accepted, negative ones as a block without a line.
    template <class Value>
    void ExpectBounded(HRESULT (STDMETHODCALLTYPE FeatureClass::*setter)(Value), int bound) {
        for (const int tooLarge : {bound, bound + 1, INT_MAX}) {
            SCOPED_TRACE(tooLarge);
            ExpectRefused((feature.*setter)(static_cast<Value>(tooLarge)));
        }
        EXPECT_EQ((feature.*setter)(static_cast<Value>(bound - 1)), S_OK);
        EXPECT_NE(client.TakeSentText(), BlockOf(theCase.block, ""));
        ExpectSent((feature.*setter)(static_cast<Value>(-1)), "");
    }
    /// Values that have no word are accepted and sent as a block without a line.
    template <class Value>
    void ExpectUnbounded(HRESULT (STDMETHODCALLTYPE FeatureClass::*setter)(Value), int words) {
        for (const int value : {words, 99, -1}) {
            SCOPED_TRACE(value);
            ExpectSent((feature.*setter)(static_cast<Value>(value)), "");
        }
    }

    template <class Out>
    void ExpectGets(HRESULT (STDMETHODCALLTYPE FeatureClass::*getter)(Out*), std::type_identity_t<Out> expected,
                    const std::string& lines) {
        SCOPED_TRACE(lines);
        const Out untouched = expected == Out{} ? static_cast<Out>(1) : Out{};
        Out value = untouched;
        feature.ClearCache();
        EXPECT_EQ((feature.*getter)(nullptr), E_POINTER);
        EXPECT_EQ((feature.*getter)(&value), E_FAIL);
        EXPECT_EQ(value, untouched);
        Report(lines);
        EXPECT_EQ((feature.*getter)(nullptr), E_POINTER);
        EXPECT_EQ((feature.*getter)(&value), S_OK);
        EXPECT_EQ(value, expected);
    }

    template <class Out>
    void ExpectGetsRange(HRESULT (STDMETHODCALLTYPE FeatureClass::*getter)(Out*, Out*),
                         std::type_identity_t<Out> minimum, std::type_identity_t<Out> maximum,
                         const std::string& lines) {
        SCOPED_TRACE(lines);
        Out min = maximum;
        Out max = minimum;
        feature.ClearCache();
        EXPECT_EQ((feature.*getter)(nullptr, &max), E_POINTER);
        EXPECT_EQ((feature.*getter)(&min, nullptr), E_POINTER);
        EXPECT_EQ((feature.*getter)(&min, &max), E_FAIL);
        EXPECT_EQ(min, maximum);
        EXPECT_EQ(max, minimum);
        ReportAvailability(lines);
        EXPECT_EQ((feature.*getter)(nullptr, &max), E_POINTER);
        EXPECT_EQ((feature.*getter)(&min, &max), S_OK);
        EXPECT_EQ(min, minimum);
        EXPECT_EQ(max, maximum);
    }

    /// After `lines` only the `offered` values of all below `bound` are available.
    template <class Value>
    void ExpectOffers(HRESULT (STDMETHODCALLTYPE FeatureClass::*query)(Value, LONG*), int bound,
                      const std::set<int>& offered, const std::string& lines) {
        SCOPED_TRACE(lines);
        feature.ClearCache();
        for (const bool reported : {false, true}) {
            for (int value = -1; value < bound; ++value) {
                LONG isAvailable = 2;
                EXPECT_EQ((feature.*query)(static_cast<Value>(value), &isAvailable), S_OK) << value;
                EXPECT_EQ(isAvailable, reported && offered.count(value) != 0 ? 1 : 0) << value;
            }
            LONG isAvailable = 2;
            EXPECT_EQ((feature.*query)(static_cast<Value>(0), nullptr), E_POINTER);
            EXPECT_EQ((feature.*query)(static_cast<Value>(bound), &isAvailable), E_INVALIDARG);
            EXPECT_EQ((feature.*query)(static_cast<Value>(bound), nullptr), E_INVALIDARG);
            EXPECT_EQ(isAvailable, 2);
            ReportAvailability(lines);
        }
    }

    void ExpectFlag(HRESULT (STDMETHODCALLTYPE FeatureClass::*query)(LONG*), const std::string& key) {
        LONG isAvailable = 2;
        feature.ClearCache();
        EXPECT_EQ((feature.*query)(nullptr), E_POINTER) << key;
        EXPECT_EQ((feature.*query)(&isAvailable), S_OK) << key;
        EXPECT_EQ(isAvailable, 0) << key;
        ReportAvailability(key + ": true\n");
        EXPECT_EQ((feature.*query)(&isAvailable), S_OK) << key;
        EXPECT_EQ(isAvailable, 1) << key;
        ReportAvailability(key + ": false\n");
        EXPECT_EQ((feature.*query)(&isAvailable), S_OK) << key;
        EXPECT_EQ(isAvailable, 0) << key;
    }

    /// Removes each line of the whole report in turn: without it the feature is incomplete, except for the `optional`
    /// ones.
    void ExpectToNeedEveryLineBut(const std::string& optional) {
        for (const bool ofAvailability : {false, true}) {
            const std::string lines = ofAvailability ? theCase.availability : theCase.settings;
            for (std::size_t at = 0; at < lines.size(); at = lines.find('\n', at) + 1) {
                std::string rest = lines;
                const std::string missing = rest.substr(at, rest.find('\n', at) + 1 - at);
                rest.erase(at, missing.size());
                feature.ClearCache();
                Report(ofAvailability ? theCase.settings : rest);
                ReportAvailability(ofAvailability ? rest : theCase.availability);
                EXPECT_EQ(feature.IsCacheComplete(), optional.find(missing) != std::string::npos) << missing;
            }
        }
    }
    /// The observer is notified of each line of `lines` on its own, and not of the same line again.
    void ExpectNotifiedOfEachAvailability(const std::string& lines) {
        for (std::size_t at = 0; at < lines.size(); at = lines.find('\n', at) + 1) {
            const std::string line = lines.substr(at, lines.find('\n', at) + 1 - at);
            EXPECT_TRUE(IsNotifiedOfAvailability(line)) << line;
            EXPECT_FALSE(IsNotifiedOfAvailability(line)) << line;
        }
    }

    /// Whether the observer was notified since the last call; expects the feature's own id each time.
    bool WasNotified() {
        const auto notifications = observer.TakeNotifications();
        for (const _MorquilPropertySetId id : notifications) {
            EXPECT_EQ(id, theCase.id);
        }
        return !notifications.empty();
    }
    bool IsNotifiedOf(const std::string& lines) {
        WasNotified();
        Report(lines);
        return WasNotified();
    }
    bool IsNotifiedOfAvailability(const std::string& lines) {
        WasNotified();
        ReportAvailability(lines);
        return WasNotified();
    }

    FeatureOwner owner;
    FeatureObserver observer;
    FeatureClient<FeatureClass> client;
    FeatureClass feature{owner, client};
};

}  // namespace Morquil::Testing

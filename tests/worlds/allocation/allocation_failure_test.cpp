// Memory that runs out anywhere in the life of a device: every call returns a stated result, the host is notified of
// the end, and nothing is left over.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <tuple>

#include "tests/kit/watchdog.h"
#include "tests/worlds/allocation/holdings.h"
#include "tests/worlds/allocation/scarce_host.h"

namespace Morquil::Testing {
namespace {

/// An action of a host, and what it has done before.
struct Scenario {
    const char* name;
    void (*prepare)(ScarceHost& host);
    void (*act)(ScarceHost& host);
};

std::ostream& operator<<(std::ostream& stream, const Scenario& scenario) {
    return stream << scenario.name;
}

void Nothing(ScarceHost& /*host*/) {}

void Create(ScarceHost& host) {
    host.Create();
}

void CreateConnected(ScarceHost& host) {
    host.CreateConnected();
}

void SetNumber(ScarceHost& host) {
    auto* const amp = host.Feature<IMorquilVideoProcAmp>(IID_IMorquilVideoProcAmp);
    int gain = 0;
    host.Set([&] { return amp->SetGain(3); }, [&] { return amp->GetGain(&gain) == S_OK && gain == 3; });
}

void SetDecimal(ScarceHost& host) {
    auto* const geometry = host.Feature<IMorquilVariableAspectRatio>(IID_IMorquilVariableAspectRatio);
    double size = 0;
    host.Set([&] { return geometry->SetSizeX(0.5); }, [&] { return geometry->GetSizeX(&size) == S_OK && size == 0.5; });
}

void SetWord(ScarceHost& host) {
    auto* const output = host.Feature<IMorquilOutputConfiguration>(IID_IMorquilOutputConfiguration);
    _MorquilAPIVideoMode mode{};
    host.Set([&] { return output->SetVideoMode(morquilAPIVideoMode720p50); },
             [&] { return output->GetVideoMode(&mode) == S_OK && mode == morquilAPIVideoMode720p50; });
}

void SetFlag(ScarceHost& host) {
    LONG lock = 0;
    host.Set([&] { return host.device->SetPanelLock(1); },
             [&] { return host.device->GetPanelLock(&lock) == S_OK && lock == 1; });
}

void SetText(ScarceHost& host) {
    auto* const network = host.Feature<IMorquilNetworkConfig>(IID_IMorquilNetworkConfig);
    host.Set([&] { return network->SetFriendlyName(host.longText.Get()); },
             [&] { return host.HasSent("Friendly name: a name that is longer than"); });
}

void SetElement(ScarceHost& host) {
    auto* const audio = host.Feature<IMorquilAudioMapping>(IID_IMorquilAudioMapping);
    _MorquilAPIAudioSelect source{};
    host.Set([&] { return audio->SetAudioMap(3, morquilAudSelMute); },
             [&] { return audio->GetAudioMap(3, &source) == S_OK && source == morquilAudSelMute; });
}

void SetWholeList(ScarceHost& host) {
    auto* const audio = host.Feature<IMorquilAudioMapping>(IID_IMorquilAudioMapping);
    host.Set([&] { return audio->SetAudioGain(-3); }, [&] { return host.HasSent("AudioInLevel15: -3"); });
}

void SetMany(ScarceHost& host) {
    auto* const amp = host.Feature<IMorquilVideoProcAmp>(IID_IMorquilVideoProcAmp);
    host.Set([&] { return amp->ResetAll(); }, [&] { return host.HasSent("VIDEO PROC AMP:\n"); });
}

void SetTextElement(ScarceHost& host) {
    auto* const preset = host.Feature<IMorquilPreset>(IID_IMorquilPreset);
    host.Set([&] { return preset->SetPresetName(1, host.longText.Get()); },
             [&] { return host.HasSent("PresetName1: a name that is longer than"); });
}

void Command(ScarceHost& host) {
    auto* const preset = host.Feature<IMorquilPreset>(IID_IMorquilPreset);
    host.Set([&] { return preset->SavePreset(1); }, [&] { return host.HasSent("PRESET:\nSave: 1\n"); });
}

void GetTexts(ScarceHost& host) {
    auto* const network = host.Feature<IMorquilNetworkConfig>(IID_IMorquilNetworkConfig);
    auto* const names = host.Feature<IMorquilDeviceFilenames>(IID_IMorquilDeviceFilenames);
    auto* const preset = host.Feature<IMorquilPreset>(IID_IMorquilPreset);
    host.GetText([&](BSTR* name) { return host.device->GetDeviceName(name); });
    host.GetText([&](BSTR* name) { return network->GetFriendlyName(name); });
    host.GetText([&](BSTR* name) { return names->GetStillFrameName(name); });
    host.GetText([&](BSTR* name) { return preset->GetPresetName(0, name); });
}

void SetGain(ScarceHost& host) {
    host.QueueForReceipt([&] { return host.Feature<IMorquilVideoProcAmp>(IID_IMorquilVideoProcAmp)->SetGain(3); });
}

void SetName(ScarceHost& host) {
    auto* const network = host.Feature<IMorquilNetworkConfig>(IID_IMorquilNetworkConfig);
    host.QueueForReceipt([&] { return network->SetFriendlyName(host.longText.Get()); });
}

void FollowChanges(ScarceHost& host) {
    host.OpenReceipt();
    SetGain(host);
    SetName(host);
    host.MarkReceipt();
    host.AwaitReceipt();
}

void CancelReceipt(ScarceHost& host) {
    host.OpenReceipt();
    SetGain(host);
    host.CancelReceipt();
}

void PrepareWaitingText(ScarceHost& host) {
    host.CreateConnected();
    host.LeaveTextWaiting();
}

/// The change is merged into the text that waits, or it is not.
void FollowMergedChange(ScarceHost& host) {
    host.OpenReceipt();
    SetName(host);
    host.MarkReceipt();
    host.AnswerLate();
    host.AwaitReceipt();
}

void PrepareReceipt(ScarceHost& host) {
    host.CreateConnected();
    host.OpenReceipt();
    SetGain(host);
    EXPECT_TRUE(host.link.AwaitIdle()) << "what the change itself allocates is not the scenario's";
}

void Notify(ScarceHost& host) {
    host.Report();
}

void PrepareFile(ScarceHost& host) {
    host.CreateConnected();
    host.SaveSettings();
}

void PrepareObject(ScarceHost& host) {
    host.Create();
    host.AddObservers();
}

/// From creation to the end.
void Live(ScarceHost& host) {
    host.Create();
    if (host.device == nullptr) {
        return;
    }
    host.ConnectAsync();
    host.AddObservers();
    for (const auto set : {SetNumber, SetWord, SetText, SetElement}) {
        set(host);
    }
    host.SaveSettings();
    host.LoadSettings();
    GetTexts(host);
    host.Disconnect();
    host.Release();
}

// clang-format off
const Scenario scenarios[] = {
    {"Create",               Nothing,         Create},
    {"Connect",              Create,          [](ScarceHost& host) { host.Connect(); }},
    {"ConnectAsync",         Create,          [](ScarceHost& host) { host.ConnectAsync(); }},
    {"ConnectAndDisconnect", Create,          [](ScarceHost& host) { host.BeginConnect(); host.Disconnect(); }},
    {"AddObservers",         Create,          [](ScarceHost& host) { host.AddObservers(); }},
    {"SetNumber",            CreateConnected, SetNumber},
    {"SetDecimal",           CreateConnected, SetDecimal},
    {"SetWord",              CreateConnected, SetWord},
    {"SetFlag",              CreateConnected, SetFlag},
    {"SetText",              CreateConnected, SetText},
    {"SetElement",           CreateConnected, SetElement},
    {"SetWholeList",         CreateConnected, SetWholeList},
    {"SetMany",              CreateConnected, SetMany},
    {"SetTextElement",       CreateConnected, SetTextElement},
    {"Command",              CreateConnected, Command},
    {"GetTexts",             CreateConnected, GetTexts},
    {"Notify",               CreateConnected, Notify},
    {"FollowChanges",        CreateConnected, FollowChanges},
    {"CancelReceipt",        CreateConnected, CancelReceipt},
    {"FollowMergedChange",   PrepareWaitingText, FollowMergedChange},
    {"FollowReports",        CreateConnected, [](ScarceHost& host) { host.FollowReports(); }},
    {"ListenToConsole",      CreateConnected, [](ScarceHost& host) { host.ListenToConsole(); }},
    {"SaveNewSettings",      CreateConnected, [](ScarceHost& host) { host.SaveSettings(); }},
    {"SaveSettingsAgain",    PrepareFile,     [](ScarceHost& host) { host.SaveSettings(); }},
    {"LoadSettings",         PrepareFile,     [](ScarceHost& host) { host.LoadSettings(); }},
    {"WholeLife",            Nothing,         Live}};

/// What ends something allocates nothing.
const Scenario withoutMemory[] = {
    {"RemoveObservers",      PrepareObject,   [](ScarceHost& host) { host.RemoveObservers(); }},
    {"MarkReceipt",          PrepareReceipt,  [](ScarceHost& host) { host.MarkReceipt(); }},
    {"LoseReceipt",          PrepareReceipt,  [](ScarceHost& host) { host.Disconnect(); host.AwaitReceipt(); }},
    {"DropReceipt",          PrepareReceipt,  [](ScarceHost& host) { host.Release(); }},
    {"Disconnect",           CreateConnected, [](ScarceHost& host) { host.Disconnect(); }},
    {"Release",              CreateConnected, [](ScarceHost& host) { host.Release(); }}};
// clang-format on

/// Returns whether memory has run out.
bool RunScenario(const Scenario& scenario, long index, bool lasting) {
    const Watchdog watchdog;
    ScarceHost host;
    scenario.prepare(host);
    const ScarceMemory memory(index, lasting);
    scenario.act(host);
    return ScarceMemory::HasRunOut();
}

class AllocationFailure : public testing::TestWithParam<std::tuple<Scenario, bool>> {};

TEST_P(AllocationFailure, HasAStatedOutcomeAndLeavesNothingBehind) {
    const Exempt test;
    const auto& [scenario, lasting] = GetParam();
    RunScenario(scenario, ScarceMemory::never, false);  // what is created once per program exists now
    Holdings before;
    long index = 0;
    for (bool hasRunOut = true; hasRunOut; ++index) {
        hasRunOut = RunScenario(scenario, index, lasting);
        ASSERT_EQ(LeakedSince(before), "") << "when allocation " << index << " fails";
        ASSERT_FALSE(HasFailure()) << "when allocation " << index << " fails";
    }
    EXPECT_GT(index, 1) << "nothing could fail";
    RecordProperty("Allocations", static_cast<int>(index - 1));
}

class NoAllocation : public testing::TestWithParam<Scenario> {};

TEST_P(NoAllocation, IsNeededToRelease) {
    const Exempt test;
    RunScenario(GetParam(), ScarceMemory::never, false);
    Holdings before;
    EXPECT_FALSE(RunScenario(GetParam(), 0, true));
    EXPECT_EQ(LeakedSince(before), "");
}

std::string ScenarioAndHowLong(const testing::TestParamInfo<std::tuple<Scenario, bool>>& test) {
    return std::string(std::get<0>(test.param).name) + (std::get<1>(test.param) ? "FromThenOn" : "Once");
}

INSTANTIATE_TEST_SUITE_P(Memory, AllocationFailure, testing::Combine(testing::ValuesIn(scenarios), testing::Bool()),
                         ScenarioAndHowLong);
INSTANTIATE_TEST_SUITE_P(Memory, NoAllocation, testing::ValuesIn(withoutMemory),
                         [](const testing::TestParamInfo<Scenario>& test) { return test.param.name; });

}  // namespace
}  // namespace Morquil::Testing

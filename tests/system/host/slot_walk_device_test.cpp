// The device object itself, slot by slot.
#include "tests/system/host/slot_walk.h"

namespace Morquil::Testing {
namespace {

constexpr const char* features[] = {Iid::inputConfiguration,
                                    Iid::outputConfiguration,
                                    Iid::videoProcAmp,
                                    Iid::colorCorrection,
                                    Iid::videoClip,
                                    Iid::aspectFill,
                                    Iid::noiseReduction,
                                    Iid::testPattern,
                                    Iid::videoAdvanced,
                                    Iid::timecode,
                                    Iid::closedCaption,
                                    Iid::videoIndex,
                                    Iid::reference,
                                    Iid::variableAspectRatio,
                                    Iid::audioMapping,
                                    Iid::mode3d,
                                    Iid::networkConfig,
                                    Iid::deviceFilenames,
                                    Iid::preset};

using DeviceWalk = SlotWalk;

TEST_F(DeviceWalk, NameVersionsAndLocks) {
    HostText name;
    std::uint32_t version = 9;
    std::int32_t lock = 9;
    const auto anywhere = static_cast<std::int32_t*>(nullptr);
    for (const int slot : {Slot::getDeviceName, Slot::getSoftwareVersion, Slot::getFpgaVersion, Slot::getPanelLock,
                           Slot::getRemoteLock, Slot::getNetworkUpdateSupported}) {
        EXPECT_EQ(object.Call(slot, anywhere), nullPointer) << slot;
    }
    EXPECT_EQ(object.Call(Slot::getDeviceName, name.Out()), failed);
    EXPECT_EQ(object.Call(Slot::getSoftwareVersion, &version), failed);
    EXPECT_EQ(object.Call(Slot::getFpgaVersion, &version), failed);
    EXPECT_EQ(object.Call(Slot::getPanelLock, &lock), failed);
    EXPECT_EQ(object.Call(Slot::getRemoteLock, &lock), failed);
    EXPECT_EQ(version, 9U);
    EXPECT_EQ(lock, 9);

    // clang-format off
    EXPECT_EQ(watched->Report("MORQUIL DEVICE:\nSoftware Version: 0x20417\nFPGA Version: 0xFFFFFFFF\n"
                              "Panel lock: true\nRemote lock: false\n\n"), "devc");
    // clang-format on

    EXPECT_EQ(DeviceName(object), u"Report 1");
    EXPECT_EQ(object.Call(Slot::getSoftwareVersion, &version), ok);
    EXPECT_EQ(version, 0x20417U);
    EXPECT_EQ(object.Call(Slot::getFpgaVersion, &version), ok);
    EXPECT_EQ(version, 0xFFFFFFFFU);
    EXPECT_EQ(object.Call(Slot::getPanelLock, &lock), ok);
    EXPECT_EQ(lock, 1);
    EXPECT_EQ(object.Call(Slot::getRemoteLock, &lock), ok);
    EXPECT_EQ(lock, 0);
}

TEST_F(DeviceWalk, VersionZeroIsKnown) {
    std::uint32_t version = 9;
    EXPECT_EQ(watched->Report("MORQUIL DEVICE:\nSoftware Version: 0x0\n\n"), "devc");

    EXPECT_EQ(object.Call(Slot::getSoftwareVersion, &version), ok);
    EXPECT_EQ(version, 0U);
}

TEST_F(DeviceWalk, UpdatesOverTheNetworkAreAnsweredWithTheBitItself) {
    std::int32_t supported = 9;
    EXPECT_EQ(object.Call(Slot::getNetworkUpdateSupported, &supported), ok);
    EXPECT_EQ(supported, 0);

    watched->Report("PROTOCOL PREAMBLE:\nVersion: 3.22\n\n");
    EXPECT_EQ(object.Call(Slot::getNetworkUpdateSupported, &supported), ok);
    EXPECT_EQ(supported, 2);

    watched->Report("PROTOCOL PREAMBLE:\nVersion: 5.22\n\n");
    EXPECT_EQ(object.Call(Slot::getNetworkUpdateSupported, &supported), ok);
    EXPECT_EQ(supported, 0);
}

TEST_F(DeviceWalk, ConversionsAreThoseThatTheDeviceHasListed) {
    const auto isSupported = [&](int input, int output, int aspect) {
        std::int32_t supported = 9;
        EXPECT_EQ(object.Call(Slot::isConversionSupported, input, output, aspect, &supported), ok);
        return supported;
    };
    EXPECT_EQ(object.Call(Slot::isConversionSupported, 99, 0, 0, static_cast<std::int32_t*>(nullptr)), nullPointer);
    EXPECT_EQ(isSupported(4, 7, 0), 0);

    EXPECT_EQ(watched->Report("SUPPORTED CONVERSIONS:\nInput: 720p50\nOutput: 1080i50\nAspect ratio: LetterBox "
                              "Anamorphic\nOutput: 2160p50\nAspect ratio: Smart\n\n"),
              "");

    EXPECT_EQ(isSupported(4, 7, 0), 1);
    EXPECT_EQ(isSupported(4, 7, 1), 0);
    EXPECT_EQ(isSupported(4, 7, 2), 1);
    EXPECT_EQ(isSupported(4, 33, 4), 1);
    EXPECT_EQ(isSupported(7, 4, 0), 0);
    for (const int outside : {34, 35, INT_MAX, -1, INT_MIN}) {
        EXPECT_EQ(isSupported(outside, 7, 0), 0);
        EXPECT_EQ(isSupported(4, outside, 0), 0);
    }
    for (const int outside : {5, INT_MAX, -1, INT_MIN}) {
        EXPECT_EQ(isSupported(4, 7, outside), 0);
    }
}

TEST_F(DeviceWalk, PanelLockIsSentAndItsAnswerNotified) {
    watched->Report("");
    for (const int lock : {1, 0, 5, -1}) {
        EXPECT_EQ(object.Call(Slot::setPanelLock, lock), ok);
        const std::string sent = device.NextChange();
        EXPECT_EQ(sent, lock != 0 ? "MORQUIL DEVICE:\nPanel lock: true\n\n" : "MORQUIL DEVICE:\nPanel lock: false\n\n");
        EXPECT_EQ(watched->Report(sent), lock == -1 ? "" : "devc");  // already true
    }
}

TEST_F(DeviceWalk, SettingsFilesHaveTheResultsThatHostsKnow) {
    const HostText nowhere(std::u16string_view(u"/no such folder/no such file"));
    const auto none = static_cast<char16_t*>(nullptr);

    EXPECT_EQ(object.Call(Slot::saveSettingsFile, none), invalidArgument);
    EXPECT_EQ(object.Call(Slot::loadSettingsFile, none), invalidArgument);
    EXPECT_EQ(object.Call(Slot::saveSettingsFile, nowhere.Get()), ok);
    EXPECT_EQ(object.Call(Slot::loadSettingsFile, nowhere.Get()), okFalse);
}

TEST_F(DeviceWalk, HandsOutEveryFeatureButTheAlignment) {
    const RawObject unknown = object.QueryInterface(Iid::unknown);
    EXPECT_EQ(unknown.Get(), object.Get());
    EXPECT_EQ(object.QueryInterface(Iid::device).Get(), object.Get());
    for (const char* const iid : features) {
        SCOPED_TRACE(iid);
        const std::uint32_t before = object.References();
        const RawObject feature = object.QueryInterface(iid);
        ASSERT_TRUE(feature);
        EXPECT_EQ(object.References(), before + 1);
        EXPECT_EQ(feature.QueryInterface(Iid::unknown).Get(), unknown.Get());
        EXPECT_EQ(feature.QueryInterface(iid).Get(), feature.Get());
        EXPECT_EQ(feature.References(), before + 1);
    }
}

TEST_F(DeviceWalk, RefusesOtherInterfacesWithNull) {
    for (const char* const iid : {Iid::align, Iid::discovery, Iid::iterator, Iid::classFactory}) {
        const Guid guid = ToGuid(iid);
        void* out = &out;
        EXPECT_EQ(object.Call(0, &guid, &out), noInterface) << iid;
        EXPECT_EQ(out, nullptr) << iid;
        EXPECT_EQ(object.Call(0, &guid, static_cast<void**>(nullptr)), nullPointer) << iid;
    }
}

TEST_F(DeviceWalk, PropertyObserversAreKeptOnceForEachPropertySet) {
    PropertyObserver other;
    for (const char* const id : propertySets) {
        const std::int32_t code = FourCharacters({id[0], id[1], id[2], id[3], '\0'});
        EXPECT_EQ(object.Call(Slot::removePropertyObserver, other.Get(), code), okFalse) << id;
        EXPECT_EQ(object.Call(Slot::addPropertyObserver, other.Get(), code), ok) << id;
        EXPECT_EQ(object.Call(Slot::addPropertyObserver, other.Get(), code), okFalse) << id;
        EXPECT_EQ(object.Call(Slot::removePropertyObserver, other.Get(), code), ok) << id;
        EXPECT_EQ(object.Call(Slot::removePropertyObserver, other.Get(), code), okFalse) << id;
    }
    for (const std::int32_t code : {FourCharacters("algn"), FourCharacters("INCO"), 0}) {
        EXPECT_EQ(object.Call(Slot::addPropertyObserver, other.Get(), code), failed);
        EXPECT_EQ(object.Call(Slot::removePropertyObserver, other.Get(), code), failed);
    }
}

TEST_F(DeviceWalk, ConnectionObserversAreKeptOnce) {
    ConnectionObserver other;
    EXPECT_EQ(object.Call(Slot::addConnectionObserver, connection.Get()), okFalse);
    EXPECT_EQ(object.Call(Slot::addConnectionObserver, other.Get()), ok);
    EXPECT_EQ(object.Call(Slot::addConnectionObserver, other.Get()), okFalse);
    EXPECT_EQ(object.Call(Slot::removeConnectionObserver, other.Get()), ok);
    EXPECT_EQ(object.Call(Slot::removeConnectionObserver, other.Get()), okFalse);
}

TEST_F(DeviceWalk, AnObserverOfOneSetIsNotifiedOfThatSetOnly) {
    watched->Report("");
    PropertyObserver amp;
    EXPECT_EQ(object.Call(Slot::addPropertyObserver, amp.Get(), FourCharacters("vpap")), ok);

    watched->Report("VIDEO ADJUST:\nRed: 1\n\nVIDEO PROC AMP:\nGain: 1\n\nGENLOCK:\nLine offset: 1\n\n");

    EXPECT_EQ(amp.Notifications(), std::vector<std::string>{"vpap"});
    EXPECT_EQ(object.Call(Slot::removePropertyObserver, amp.Get(), FourCharacters("vpap")), ok);
}

TEST_F(DeviceWalk, AlignmentIsFollowedSilently) {
    EXPECT_EQ(watched->Report("ALIGN:\nAlign size X left: 2\n\nALIGN AVAILABILITY:\nAlign trim X range: 1 2\n\n"), "");
}

}  // namespace
}  // namespace Morquil::Testing

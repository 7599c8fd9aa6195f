#include "description/outcomes.h"

#include "MorquilAPI.h"
#include "description/names.h"

namespace Morquil::Description {
namespace {

template <_MorquilConnectToFailure reason>
Outcome Failure(std::string_view cause, std::string_view cure) {
    return {ConstantName<reason>(), static_cast<std::uint32_t>(reason), cause, cure};
}

Outcome Result(std::string_view name, HRESULT code, std::string_view cause, std::string_view cure) {
    return {name, static_cast<std::uint32_t>(code), cause, cure};
}

}  // namespace

// clang-format off
const std::vector<Outcome>& Results() {
    static const std::vector<Outcome> results{
        Result("S_OK", S_OK,
            "Done. From a setter: the change is queued, and the device has not answered yet.",
            "To see the result, wait for the device's report and read the value."),
        Result("S_FALSE", S_FALSE,
            "A success. An observer was registered before, or was not registered when it was removed. From SaveSettingsFile: the file is written. From LoadSettingsFile: always. From DllCanUnloadNow: a class factory is alive.",
            "None needed. Test results with SUCCEEDED or FAILED, not against S_OK."),
        Result("E_FAIL", E_FAIL,
            "From a getter: the device has not reported the value (not yet, not on this model, or no longer: a disconnected device has no values). From a setter: the connection thread could not be woken. From Connect: no connection; failReason holds the reason (not written when memory ran out). From ConnectAsync: the attempt could not be started. The observer is notified of the result of an attempt that was. From AddPropertyObserver and RemovePropertyObserver: no such property set. From a range per frame height or video mode: no such height or mode, or no range for it.",
            "Getter: call it again after the next PropertyChanged of its property set, or treat the value as absent. Never use the out-parameter: it was not written (except by IsGenRefAvailable). Setter: connect again."),
        Result("E_INVALIDARG", E_INVALIDARG,
            "A value is at or above the number of its enumeration's values, a channel or preset number does not exist, an input text is null or contains a line feed, a carriage return or a zero, or a decimal number is so large that its line would be cut. Nothing was sent.",
            "Ask for what the device accepts: the Get...Range and Is...Available methods. A range is not checked for you: a number outside it is sent, and the device refuses it."),
        Result("E_POINTER", E_POINTER,
            "An out-parameter or an observer is null.",
            "Pass a pointer. Most methods check pointers first; GetPresetName and the queries for one of a list check the value first."),
        Result("E_NOINTERFACE", E_NOINTERFACE,
            "The object has no such interface. A device always returns this for IMorquilAlign.",
            "Ask the device for a feature interface of the property reference."),
        Result("E_OUTOFMEMORY", E_OUTOFMEMORY,
            "There was no memory for a message, an observer's entry or an object. Nothing has changed.",
            "Try again when there is memory."),
        Result("E_ACCESSDENIED", E_ACCESSDENIED,
            "A lock of the observer lists could not be taken. Current systems always grant it.",
            "Try again."),
        Result("E_NOTIMPL", E_NOTIMPL,
            "The class factory's LockServer keeps no count.",
            "Keep the module loaded by keeping an object or the class factory, or by not unloading it."),
        Result("E_UNEXPECTED", E_UNEXPECTED,
            "Registration could not find out the path of the DLL.",
            "Put the DLL into an ordinary folder and register it again."),
        Result("CLASS_E_NOAGGREGATION", CLASS_E_NOAGGREGATION,
            "CreateInstance was given an outer object.",
            "Pass null: the discovery object cannot be aggregated."),
        Result("CLASS_E_CLASSNOTAVAILABLE", CLASS_E_CLASSNOTAVAILABLE,
            "The DLL was asked for a class other than CMorquilDiscovery.",
            "It is the only one that can be created; a device comes from Connect.")};
    return results;
}

const std::vector<Outcome>& ConnectionFailures() {
    static const std::vector<Outcome> failures{
        Failure<morquilConnectToFailureNoResponse>(
            "No device accepted the connection on TCP port 9800 within 2 seconds; or the device's whole state did not arrive within 120 seconds; or an established connection has ended: the device hung up, did not acknowledge a change for 9 seconds, or the host called Disconnect. Connect also leaves it in failReason when it succeeds: check the result first.",
            "Check the address, that the device is switched on, and that nothing on the way blocks port 9800. \"morquilctl -d ADDRESS status\" tries the same from the command line. After a loss connect again, which makes a new device object."),
        Failure<morquilConnectToFailureRemoteLock>(
            "The device is locked against remote control. If it is locked during a connection, the connection continues, and this becomes the reason of its later end.",
            "Unlock remote control at the device, then connect again."),
        Failure<morquilConnectToFailureIncompatibleFirmware>(
            "The device speaks another version of the protocol: the second number of its version is not 22.",
            "Update the device's firmware, or use a library that is made for it."),
        Failure<morquilConnectToFailureIncompatibleUpdateSupported>(
            "The same, and the device can be updated over the network: the first number of its version has bit 2.",
            "Update the device's firmware over the network, then connect again."),
        Failure<morquilConnectToFailureNoFailure>(
            "No failure. No method returns it to a host.",
            "None."),
        Failure<morquilConnectWarningIncompatibleFirmware>(
            "Declared, but never returned.",
            "None.")};
    return failures;
}
// clang-format on

}  // namespace Morquil::Description

// A host that is built without the library's header. Like a scripting language it reads identifiers, slots of methods
// and names of enumerated values at run time, from the type library in MorquilAPI.dll.
//
//     morquil-type-library-host [ADDRESS [FILE]]
//
// FILE holds the type library: MorquilAPI.dll (the default) or MorquilAPI.tlb. The class must be registered.
//
// The library writes its messages, and everything that it receives, to standard output; the interface that switches
// this off is not in the type library. This host's own lines start with "host: ", to distinguish them.
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "type_library.h"
#include "typed_object.h"

namespace {

void Say(const std::string& text) {
    std::printf("\nhost: %s\n", text.c_str());
    std::fflush(stdout);
}

std::string TextOf(const GUID& identifier) {
    wchar_t wide[40] = L"";
    const int length = StringFromGUID2(identifier, wide, 40);
    std::string text;
    for (int i = 0; i + 1 < length; ++i) {
        text += static_cast<char>(wide[i]);
    }
    return text;
}

void Describe(const TypeLibrary& library) {
    Say(library.NameAndVersion() + " has " + std::to_string(library.Count(TKIND_ENUM)) + " enumerations, " +
        std::to_string(library.Count(TKIND_INTERFACE)) + " interfaces and " +
        std::to_string(library.Count(TKIND_COCLASS)) + " class");
}

TypedObject CreateDiscovery(const TypeLibrary& library) {
    const GUID classIdentifier = library.Find("CMorquilDiscovery").Identifier();
    Type type = library.Find("IMorquilDiscovery");
    Say("CMorquilDiscovery is " + TextOf(classIdentifier));
    void* discovery = nullptr;
    if (FAILED(CoCreateInstance(classIdentifier, nullptr, CLSCTX_INPROC_SERVER, type.Identifier(), &discovery))) {
        throw std::runtime_error("the class is not registered");
    }
    return TypedObject(std::move(type), discovery);
}

TypedObject Connect(const TypeLibrary& library, const TypedObject& discovery, const std::string& address) {
    Say("connecting to " + address + "...");
    void* device = nullptr;
    int reason = 0;
    const BSTR text = SysAllocString(std::wstring(address.begin(), address.end()).c_str());
    try {
        discovery.Call("Connect", {text, &device, &reason});
    } catch (const std::exception&) {
        SysFreeString(text);
        throw std::runtime_error("no connection: " + library.Find("_MorquilConnectToFailure").NameOfValue(reason));
    }
    SysFreeString(text);
    return TypedObject(library.Find("IMorquilDevice"), device);
}

void ReadValues(const TypeLibrary& library, const TypedObject& device) {
    const TypedObject amp = device.As(library.Find("IMorquilVideoProcAmp"));
    int gain = 0;
    amp.Call("GetGain", {&gain});
    Say("IMorquilVideoProcAmp is " + TextOf(amp.GetType().Identifier()) + ", GetGain is in slot " +
        std::to_string(amp.GetType().MethodNamed("GetGain").Slot()) + ", the gain is " + std::to_string(gain));

    const TypedObject output = device.As(library.Find("IMorquilOutputConfiguration"));
    int mode = 0;
    output.Call("GetVideoMode", {&mode});
    Say("the output's video mode is " + std::to_string(mode) + ", which is " +
        library.Find("_MorquilAPIVideoMode").NameOfValue(mode));
}

void Run(const std::string& address, const std::string& file) {
    const TypeLibrary library(file);
    Describe(library);
    const TypedObject discovery = CreateDiscovery(library);
    const TypedObject device = Connect(library, discovery, address);
    ReadValues(library, device);
    discovery.Call("Disconnect", {device.Get()});
    Say("disconnected");
}

}  // namespace

int main(int argumentCount, char** arguments) {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    int status = 0;
    try {
        Run(argumentCount > 1 ? arguments[1] : "127.0.0.1", argumentCount > 2 ? arguments[2] : "MorquilAPI.dll");
    } catch (const std::exception& error) {
        Say(std::string("FAILED: ") + error.what());
        status = 1;
    }
    CoUninitialize();
    return status;
}

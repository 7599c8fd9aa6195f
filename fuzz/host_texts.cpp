#include "fuzz/host_texts.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "features/device_filenames.h"
#include "features/network_config.h"
#include "features/preset.h"
#include "fuzz/block_text.h"
#include "fuzz/require.h"
#include "platform/text.h"
#include "platform/utf8.h"
#include "tests/kit/owned_bstr.h"
#include "tests/unit/settings/queue_client.h"

namespace Morquil::Fuzz {
namespace {

using Testing::OwnedBstr;
using Testing::Utf16;

bool IsWellFormed(std::string_view text) {
    while (!text.empty()) {
        const Utf8Character character = FirstUtf8Character(text);
        if (!character.isWellFormed) {
            return false;
        }
        text.remove_prefix(character.size);
    }
    return true;
}

bool EndsALine(const Utf16& text) {
    return std::any_of(text.begin(), text.end(), [](OLECHAR unit) { return unit == 10 || unit == 13 || unit == 0; });
}

/// Units of UTF-16 with many surrogates, in pairs and alone.
Utf16 HostText(ByteSource& source) {
    const auto lead = [&] { return static_cast<OLECHAR>(0xD800 + source.Byte()); };
    const auto trail = [&] { return static_cast<OLECHAR>(0xDC00 + source.Byte()); };
    Utf16 text;
    for (std::size_t left = source.Byte(); left != 0; --left) {
        switch (source.Byte() % 8) {
            case 0:
                text += source.Number<OLECHAR>();
                break;
            case 1:
                text += lead();
                break;
            case 2:
                text += trail();
                break;
            case 3:
            case 4:
                text += lead();
                text += trail();
                break;
            default:
                text += static_cast<OLECHAR>(source.Byte());
                break;
        }
    }
    return text;
}

void TryShortening(const Utf16& units, std::size_t limit) {
    const OwnedBstr text(units);
    const std::string whole = Utf8FromBstr(text.Get());
    const std::string cut = ShortenedUtf8(text.Get(), limit);
    Require(IsWellFormed(whole), "a host's text becomes well-formed UTF-8");
    Require(IsWellFormed(cut), "a text is cut between characters");
    Require(cut.size() < limit, "a text is cut to its limit");
    Require(whole.starts_with(cut), "a text is cut at its end");
    const bool isWhole = cut.size() == whole.size();
    Require(isWhole || cut.size() + FirstUtf8Character(std::string_view(whole).substr(cut.size())).size >= limit,
            "no more of a text is cut than has to be");
    Require(Utf8FromBstr(OwnedBstr(BstrFromUtf8(whole)).Get()) == whole, "well-formed text survives both ways");
}

void TryDeviceText(const std::string& bytes) {
    const std::string back = Utf8FromBstr(OwnedBstr(BstrFromUtf8(bytes)).Get());
    Require(IsWellFormed(back), "a device's text becomes well-formed text");
    Require(back == bytes || !IsWellFormed(bytes), "a device's well-formed text is kept");
}

/// Does not count references: the fuzzer owns the feature objects.
class Owner final : public IUnknown {
public:
    STDMETHODIMP QueryInterface(REFIID /*iid*/, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
};

/// The objects that have setters of texts, with a client that is not connected.
struct Host {
    Owner owner;
    Testing::QueueClient client;
    CMorquilNetworkConfig networkConfig{owner, client};
    CMorquilDeviceFilenames deviceFilenames{owner, client};
    CMorquilPreset preset{owner, client};

    HRESULT Set(unsigned setter, BSTR text) {
        switch (setter) {
            case 0:
                return networkConfig.SetFriendlyName(text);
            case 1:
                return deviceFilenames.SetStillFrameName(text);
            default:
                return preset.SetPresetName(static_cast<int>(setter), text);
        }
    }
};

}  // namespace

void TryConversions(ByteSource& source) {
    const std::size_t limit = 1 + source.Byte();
    TryShortening(HostText(source), limit);
    TryDeviceText(source.Text());
}

void TryTextSetters(ByteSource& source) {
    Host host;  // a new one for each input: a client remembers what it has sent
    const unsigned setter = source.Byte() % 8;
    const Utf16 units = HostText(source);
    const HRESULT result = host.Set(setter, OwnedBstr(units).Get());
    const auto message = host.client.Take();
    Require((result == S_OK) == !EndsALine(units), "a text that would end its line is refused, and no other is");
    Require((message != nullptr) == (result == S_OK), "a refused text is not queued");
    if (message != nullptr) {
        const std::string text = TextOf(*message);
        Require(IsOneBlock(text) && std::count(text.begin(), text.end(), '\n') <= 3, "a text is one line of one block");
        Require(IsWellFormed(text), "a text is sent as well-formed UTF-8");
        Require(LongestLine(text) <= longestReadLine, "a text's line is not cut");
    }
}

}  // namespace Morquil::Fuzz

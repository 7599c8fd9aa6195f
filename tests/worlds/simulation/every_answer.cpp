#include "tests/worlds/simulation/every_answer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <string_view>
#include <type_traits>

#include "platform/text.h"
#include "tests/kit/four_characters.h"
#include "tests/kit/owned_bstr.h"

namespace Morquil::Testing::Worlds {

namespace {

using Testing::FourCharacters;

struct Constant {
    std::string_view enumeration;
    int value;
};

constexpr std::array constants{
#define ENUMERATION(name)
#define CONSTANT(enumeration, name, value) Constant{#enumeration, value},
#include "tests/system/api/expected_enumerations.inc"
#undef ENUMERATION
#undef CONSTANT
};

template <class Enumeration>
constexpr std::string_view nameOf;
#define ENUMERATION(name) \
    template <>           \
    constexpr std::string_view nameOf<name> = #name;
#define CONSTANT(enumeration, name, value)
#include "tests/system/api/expected_enumerations.inc"
#undef ENUMERATION
#undef CONSTANT

/// One more than the largest value.
template <class Enumeration>
constexpr int valuesOf = [] {
    int values = 0;
    for (const Constant& constant : constants) {
        values = constant.enumeration == nameOf<Enumeration> ? std::max(values, constant.value + 1) : values;
    }
    return values;
}();

/// Numbers that choose one of several answers: positions, channels, frame heights, and some invalid ones.
constexpr std::array numbers{0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11,  12,  13,  14,   15,   16,
                             17, 18, 19, 20, 21, 22, 23, 24, 31, 32, 64, 486, 576, 720, 1080, 2160, -1};

template <class Parameter>
constexpr bool isChoice = std::is_integral_v<Parameter> || std::is_enum_v<Parameter>;
/// A text passed to a method is a pointer, too.
template <class Parameter>
constexpr bool isAnswer = false;
template <class Out>
constexpr bool isAnswer<Out*> =
    (std::is_arithmetic_v<Out> && !std::is_same_v<Out, OLECHAR>) || std::is_enum_v<Out> || std::is_same_v<Out, BSTR>;

template <class... Parameters>
constexpr bool isQuestion = (isAnswer<Parameters> || ...) && ((isAnswer<Parameters> || isChoice<Parameters>)&&...);

template <class... Parameters>
struct List {};

/// Walks the table of interfaces and their methods.
class Asker {
public:
    Asker(IMorquilDevice& device, AnswerSink& sink) : device_(device), sink_(sink) {}
    ~Asker() { Leave(); }
    Asker(const Asker&) = delete;
    Asker& operator=(const Asker&) = delete;

    /// The following methods are those of `Interface`, if the device has it.
    template <class Interface>
    void Enter(const IID& iid) {
        Leave();
        void* feature = nullptr;
        device_.QueryInterface(iid, &feature);
        feature_ = static_cast<Interface*>(feature);
    }
    template <class Interface, class... Parameters>
    void Ask(const char* name, HRESULT (STDMETHODCALLTYPE Interface::*method)(Parameters...)) {
        if constexpr (isQuestion<Parameters...>) {
            if (feature_ != nullptr) {
                Walk(name, static_cast<Interface&>(*feature_), method, List<Parameters...>());
            }
        }
    }

private:
    void Leave() {
        if (feature_ != nullptr) {
            feature_->Release();
            feature_ = nullptr;
        }
    }

    /// Every value of the first parameter that has not been used yet.
    template <class Interface, class Method, class First, class... Rest, class... Given>
    void Walk(const char* name, Interface& feature, Method method, List<First, Rest...> /*missing*/, Given... given) {
        if constexpr (std::is_enum_v<First>) {
            for (int value = 0; value < valuesOf<First>; ++value) {
                Walk(name, feature, method, List<Rest...>(), given..., static_cast<First>(value));
            }
        } else if constexpr (isChoice<First>) {
            for (const int value : numbers) {
                Walk(name, feature, method, List<Rest...>(), given..., static_cast<First>(value));
            }
        } else if constexpr (sizeof...(Rest) == 0) {
            std::remove_pointer_t<First> answer{};
            const HRESULT result = (feature.*method)(given..., &answer);
            Take(name, result, answer);
        } else {
            std::remove_pointer_t<First> minimum{};
            std::remove_pointer_t<First> maximum{};
            const HRESULT result = (feature.*method)(given..., &minimum, &maximum);
            Take(name, result, minimum);
            Take(name, result, maximum);
        }
    }

    void Take(const char* name, HRESULT result, BSTR text) {
        const Testing::OwnedBstr owned(text);
        sink_.Take(name, result, text != nullptr ? Utf8FromBstr(text) : std::string("(null)"));
    }
    void Take(const char* name, HRESULT result, double number) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &number, sizeof bits);
        sink_.Take(name, result, bits);
    }
    template <class Number>
    void Take(const char* name, HRESULT result, Number number) {
        sink_.Take(name, result, static_cast<std::uint64_t>(number));
    }

    IMorquilDevice& device_;
    AnswerSink& sink_;
    IUnknown* feature_ = nullptr;
};

class Digest final : public AnswerSink {
public:
    void Take(const char* /*method*/, HRESULT result, std::uint64_t number) override {
        value_ = (value_ ^ number ^ static_cast<std::uint64_t>(result) << 32) * 0x9E3779B97F4A7C15U;
        value_ ^= value_ >> 32;
    }
    void Take(const char* method, HRESULT result, const std::string& text) override {
        Take(method, result, std::uint64_t{std::hash<std::string>()(text)});
    }
    std::uint64_t Value() const { return value_; }

private:
    std::uint64_t value_ = 0;
};

class Words final : public AnswerSink {
public:
    void Take(const char* method, HRESULT result, std::uint64_t number) override {
        Take(method, result, std::to_string(number));
    }
    void Take(const char* method, HRESULT result, const std::string& text) override {
        words_.append(method).append(" ").append(std::to_string(result)).append(" ").append(text).append("\n");
    }
    const std::string& Text() const { return words_; }

private:
    std::string words_;
};

}  // namespace

void AskEverything(IMorquilDevice& device, AnswerSink& sink) {
    Asker asker(device, sink);
#define INTERFACE(name, iid, help) asker.Enter<name>(IID_##name);
#define METHOD(interfaceName, name, parameters) asker.Ask(#interfaceName "::" #name, &interfaceName::name);
#include "tests/system/api/expected_interfaces.inc"
#undef INTERFACE
#undef METHOD
}

std::uint64_t DigestOfEveryAnswer(IMorquilDevice& device) {
    Digest digest;
    AskEverything(device, digest);
    return digest.Value();
}

std::string EveryAnswer(IMorquilDevice& device) {
    Words words;
    AskEverything(device, words);
    return words.Text();
}

}  // namespace Morquil::Testing::Worlds

#pragma once

#include <cstdint>
#include <string>

#include "MorquilAPI.h"

namespace Morquil::Testing::Worlds {

/// Receives answers of getters, each with the name of its method.
class AnswerSink {
public:
    virtual void Take(const char* method, HRESULT result, std::uint64_t number) = 0;
    virtual void Take(const char* method, HRESULT result, const std::string& text) = 0;

protected:
    ~AnswerSink() = default;
};

/// Calls every getter of `device` and its features: every method of the binary contract that returns a value, for every
/// value of its first argument. Always the same number of answers in the same order.
void AskEverything(IMorquilDevice& device, AnswerSink& sink);

/// A fingerprint of all answers.
std::uint64_t DigestOfEveryAnswer(IMorquilDevice& device);
/// All answers in words, one per line; for people, because it is slow.
std::string EveryAnswer(IMorquilDevice& device);

}  // namespace Morquil::Testing::Worlds

#pragma once

#include <cstdint>
#include <string>

#include "MorquilAPI.h"

namespace Morquil::Simulation {

/// Takes answers of getters, each with the name of its method.
class AnswerSink {
public:
    virtual void Take(const char* method, HRESULT result, std::uint64_t number) = 0;
    virtual void Take(const char* method, HRESULT result, const std::string& text) = 0;

protected:
    ~AnswerSink() = default;
};

/// Asks all that `device` and its features can be asked: every method of the binary contract that answers with a value,
/// for every value of what it wants to know first. Always the same number of answers in the same order.
void AskEverything(IMorquilDevice& device, AnswerSink& sink);

/// A fingerprint of all answers.
std::uint64_t DigestOfEveryAnswer(IMorquilDevice& device);
/// All answers in words, a line for each; for people, because it takes long.
std::string EveryAnswer(IMorquilDevice& device);

}  // namespace Morquil::Simulation

#pragma once

#include <array>
#include <cstddef>
#include <tuple>
#include <utility>

#include "protocol/sink.h"

namespace Morquil {

/// A sink that treats all blocks alike: hands each to `Derived::OnBlock<Description>(set)`. What is no block (pings,
/// acknowledgements, unknown blocks, errors) stays with the derived class, and so do the blocks whose operations it
/// overrides. `Base` is the sink itself, or a class that leaves the blocks to others.
template <class Derived, class Base = IMorquilTextProtocolSink>
class EveryBlockSink : public Base {
protected:
    using Base::Base;

    void OnOtherBlock(std::size_t place, const void* changeSet) final {
        handlers[place](static_cast<Derived&>(*this), changeSet);
    }

private:
    using Handler = void (*)(Derived& sink, const void* changeSet);

    template <class Description>
    static void Handle(Derived& sink, const void* changeSet) {
        sink.template OnBlock<Description>(*static_cast<const ChangeSetOf<Description>*>(changeSet));
    }

    static constexpr std::array<Handler, blockCount> handlers = [] {
        std::array<Handler, blockCount> all{};
        ForEachBlock([&]<class Description>() { all[placeOf<Description>] = &Handle<Description>; });
        return all;
    }();
};

}  // namespace Morquil

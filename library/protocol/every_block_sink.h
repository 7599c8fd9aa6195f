#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include "protocol/blocks/all.h"
#include "protocol/sink.h"

namespace Morquil {

/// A sink that handles all blocks alike: passes each to `Derived::OnBlock<Description>(set)`. The derived class handles
/// everything else itself (pings, acknowledgements, unknown blocks, errors), and also the blocks whose operations it
/// overrides. `Base` is the sink interface, or a class that leaves the blocks to its derived classes.
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

#include "simulator/device/announcement.h"

#include "simulator/blocks/device_text.h"
#include "simulator/blocks/members.h"

namespace Morquil::Simulator {

namespace {

template <class Set>
Set Differences(const Set& before, const Set& after) {
    Set different = after;
    ForEachPairOfFields(different, before, [](auto& field, const auto& old) {
        if (old.IsPresent() && !field.DiffersFrom(old)) {
            field = {};
        }
    });
    return different;
}

template <class Set>
Set FieldsPresentIn(const Set& mask, const Set& values) {
    Set found = values;
    ForEachPairOfFields(found, mask, [](auto& field, const auto& marked) {
        if (!marked.IsPresent()) {
            field = {};
        }
    });
    return found;
}

}  // namespace

std::string Announcement(const DeviceBlocks& before, const DeviceBlocks& after, const DeviceBlocks& mentioned) {
    std::string text;
    ForEachBlock([&]<class Description>() {
        const auto& present = after.Of<Description>();
        auto reported = Differences(before.Of<Description>(), present);
        Merge(reported, FieldsPresentIn(mentioned.Of<Description>(), present));
        if (!HoldsNothing<Description>(reported)) {
            text += DeviceText<Description>(reported);
        }
    });
    return text;
}

}  // namespace Morquil::Simulator

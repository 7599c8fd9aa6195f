#pragma once

#include <cstddef>
#include <tuple>

#include "features/feature_base.h"
#include "transport/message_queue.h"

namespace Morquil {

template <class FeatureClass>
struct FeatureHolder {
    FeatureHolder(IUnknown& owner, IMessageQueue& queue) : feature(owner, queue) {}
    FeatureClass feature;
};

/// One object of each feature class in `List`, a tuple of the classes.
template <class List>
class FeatureSet;
template <class... Classes>
class FeatureSet<std::tuple<Classes...>> : private FeatureHolder<Classes>... {
public:
    static constexpr std::size_t size = sizeof...(Classes);

    /// `owner` counts the references to all objects, `queue` accepts their messages; both must outlive the set.
    FeatureSet(IUnknown& owner, IMessageQueue& queue) : FeatureHolder<Classes>(owner, queue)... {}

    template <class FeatureClass>
    FeatureClass& Of() {
        return static_cast<FeatureHolder<FeatureClass>&>(*this).feature;
    }

    /// Calls `visit` with every object, in the order of the list.
    template <class Visit>
    void ForEach(Visit visit) {
        (visit(Of<Classes>()), ...);
    }
};

}  // namespace Morquil

#include "features/feature_list.h"

#include <utility>

#include "features/all.h"

namespace Morquil {

namespace {

/// Makes one object of each class, from `place` on.
template <class... Classes>
void Make(std::type_identity<std::tuple<Classes...>> /*classes*/, std::unique_ptr<FeatureBase>* place, IUnknown& owner,
          IMessageQueue& queue) {
    ((place++->reset(new Classes(owner, queue))), ...);
}

}  // namespace

FeatureList::FeatureList(IUnknown& owner, IMessageQueue& queue) {
    Make(std::type_identity<Features>(), objects_.data(), owner, queue);
    Make(std::type_identity<HiddenFeatures>(), objects_.data() + handedOutCount_, owner, queue);
}

}  // namespace Morquil

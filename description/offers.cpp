#include "description/offers.h"

#include <type_traits>

#include "description/key_walk.h"
#include "simulator/limit_tables.h"

namespace Morquil::Description {
namespace {

template <class One, class Other>
bool AreSame(One one, Other other) {
    if constexpr (std::is_same_v<One, Other>) {
        return one == other;
    } else {
        return false;
    }
}

template <class Description, class Member>
std::string_view KeyOf(Member wanted) {
    std::string_view key;
    VisitKeysOf<Description>([&](const KeyPlace& place, const auto& /*kind*/, auto member, const auto& /*row*/) {
        key = AreSame(member, wanted) ? place.key : key;
    });
    return key;
}

template <class Description, class Row>
void AddOffer(std::vector<OfferDescription>& offers, const Row& row) {
    using Offers = typename Simulator::LimitsOf<Description>::Offers;
    if constexpr (requires { row.offer; }) {
        offers.push_back({.block = Description::block.header.name,
                          .key = KeyOf<Description>(row.setting),
                          .offerBlock = Offers::block.header.name,
                          .offerKey = KeyOf<Offers>(row.offer)});
    }
}

}  // namespace

std::vector<OfferDescription> DescribeOffers() {
    std::vector<OfferDescription> offers;
    VisitBlocks([&]<class Entry>(Entry /*entry*/) {
        using Description = typename Entry::Description;
        std::apply([&](const auto&... row) { (AddOffer<Description>(offers, row), ...); },
                   Simulator::LimitsOf<Description>::rows);
    });
    return offers;
}

}  // namespace Morquil::Description

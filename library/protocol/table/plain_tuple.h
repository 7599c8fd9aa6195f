#pragma once

#include <cstddef>
#include <utility>

namespace Morquil {

template <std::size_t place, class Item>
struct PlacedItem {
    Item item{};
};

template <class Places, class... Items>
struct PlacedItems;
template <std::size_t... place, class... Items>
struct PlacedItems<std::index_sequence<place...>, Items...> : PlacedItem<place, Items>... {
    constexpr PlacedItems() = default;
    constexpr explicit PlacedItems(const Items&... items) : PlacedItem<place, Items>{items}... {}
};

/// Objects of different types, in order: what the library needs of std::tuple, which takes compilers several times as
/// long when it has as many types as a block has keys.
template <class... Items>
class PlainTuple : private PlacedItems<std::index_sequence_for<Items...>, Items...> {
    using Base = PlacedItems<std::index_sequence_for<Items...>, Items...>;

public:
    static constexpr std::size_t size = sizeof...(Items);

    constexpr PlainTuple() = default;
    constexpr explicit PlainTuple(const Items&... items) requires(sizeof...(Items) > 0) : Base(items...) {}

    /// The item at a place, counted from 0.
    template <std::size_t place>
    constexpr auto& Get() {
        return At<place>(*this);
    }
    template <std::size_t place>
    constexpr const auto& Get() const {
        return At<place>(*this);
    }

    /// Calls `function` with all items.
    template <class Function>
    constexpr decltype(auto) Apply(Function&& function) const {
        return ApplyAll(function, std::index_sequence_for<Items...>());
    }
    /// Calls `visit` with each item, in order.
    template <class Visit>
    constexpr void ForEach(Visit&& visit) const {
        VisitAll(visit, std::index_sequence_for<Items...>());
    }

private:
    template <std::size_t place, class Item>
    static constexpr Item& At(PlacedItem<place, Item>& placed) {
        return placed.item;
    }
    template <std::size_t place, class Item>
    static constexpr const Item& At(const PlacedItem<place, Item>& placed) {
        return placed.item;
    }
    template <class Visit, std::size_t... place>
    constexpr void VisitAll(Visit& visit, std::index_sequence<place...> /*places*/) const {
        (visit(static_cast<const PlacedItem<place, Items>&>(*this).item), ...);
    }
    template <class Function, std::size_t... place>
    constexpr decltype(auto) ApplyAll(Function& function, std::index_sequence<place...> /*places*/) const {
        return function(static_cast<const PlacedItem<place, Items>&>(*this).item...);
    }
};

/// The items of all lists, one after the other.
template <class... Items>
constexpr PlainTuple<Items...> Joined(const PlainTuple<Items...>& list) {
    return list;
}
template <class... First, class... Second, class... Others>
constexpr auto Joined(const PlainTuple<First...>& first, const PlainTuple<Second...>& second, const Others&... others) {
    const auto join = [&](const First&... one) {
        return second.Apply([&](const Second&... two) { return PlainTuple<First..., Second...>(one..., two...); });
    };
    return Joined(first.Apply(join), others...);
}

}  // namespace Morquil

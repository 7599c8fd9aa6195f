#pragma once

namespace QRN::Core {

/// A doubly linked list of objects that live elsewhere, mostly on stacks. It allocates nothing. `Node` is a class with
/// the public members `Node* previous` and `Node* next`.
/// Threads: the owner's lock guards the list and every link.
template <class Node>
class IntrusiveList {
public:
    constexpr IntrusiveList() = default;
    IntrusiveList(const IntrusiveList&) = delete;
    IntrusiveList& operator=(const IntrusiveList&) = delete;

    void Add(Node& node) {
        node.previous = nullptr;
        node.next = first_;
        if (first_ != nullptr) {
            first_->previous = &node;
        }
        first_ = &node;
    }

    void Remove(Node& node) {
        (node.previous != nullptr ? node.previous->next : first_) = node.next;
        if (node.next != nullptr) {
            node.next->previous = node.previous;
        }
    }

    Node* First() const { return first_; }

private:
    Node* first_ = nullptr;
};

}  // namespace QRN::Core

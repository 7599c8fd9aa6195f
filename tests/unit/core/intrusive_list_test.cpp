#include "core/intrusive_list.h"

#include <gtest/gtest.h>

#include <vector>

namespace QRN::Core {
namespace {

struct Node {
    int value = 0;
    Node* previous = nullptr;
    Node* next = nullptr;
};

std::vector<int> Values(const IntrusiveList<Node>& list) {
    std::vector<int> values;
    for (const Node* node = list.First(); node != nullptr; node = node->next) {
        values.push_back(node->value);
    }
    return values;
}

class IntrusiveListTest : public testing::Test {
protected:
    IntrusiveListTest() {
        for (Node* node : {&first, &second, &third}) {
            list.Add(*node);
        }
    }

    Node first{.value = 1};
    Node second{.value = 2};
    Node third{.value = 3};
    IntrusiveList<Node> list;
};

TEST_F(IntrusiveListTest, HasTheNewestFirst) {
    EXPECT_EQ(Values(list), (std::vector<int>{3, 2, 1}));
}

TEST_F(IntrusiveListTest, LosesItsFirstNode) {
    list.Remove(third);
    EXPECT_EQ(Values(list), (std::vector<int>{2, 1}));
}

TEST_F(IntrusiveListTest, LosesANodeInTheMiddle) {
    list.Remove(second);
    EXPECT_EQ(Values(list), (std::vector<int>{3, 1}));
}

TEST_F(IntrusiveListTest, LosesItsLastNodeAndAcceptsItAgain) {
    list.Remove(first);
    EXPECT_EQ(Values(list), (std::vector<int>{3, 2}));
    list.Add(first);
    EXPECT_EQ(Values(list), (std::vector<int>{1, 3, 2}));
}

TEST_F(IntrusiveListTest, IsEmptyWhenAllAreGone) {
    for (Node* node : {&second, &third, &first}) {
        list.Remove(*node);
    }
    EXPECT_EQ(list.First(), nullptr);
}

}  // namespace
}  // namespace QRN::Core

#include "THandle.h"

#include <gtest/gtest.h>

namespace {

struct Node {
    static int destroyed;
    virtual ~Node() { ++destroyed; }
    // A back handle to itself, as graph members keep: it must not keep the object alive.
    TWeakHandle<Node> self;
};
int Node::destroyed = 0;
struct Leaf : Node {};

} // namespace

// A weak handle sees its object while a strong one lives and null afterwards, however the two are
// dropped; a cast shares the counts and gives null for an object of another class.
TEST(TWeakHandle, FollowsTheObjectAndCastsShareTheCount)
{
    Node::destroyed = 0;
    TWeakHandle<Node> outside;
    {
        THandle<Node> node(new Leaf);
        node->self = node;
        outside = node;
        EXPECT_EQ(outside.lock(), node);
        EXPECT_EQ(node.use_count(), 1) << "weak handles add no strong count";
        const THandle<Leaf> leaf = node.cast<Leaf>();
        EXPECT_EQ(leaf.get(), node.get());
        EXPECT_EQ(node.use_count(), 2);
        EXPECT_TRUE(THandle<Node>(new Node).cast<Leaf>().is_null());
        EXPECT_EQ(Node::destroyed, 1);
    }
    EXPECT_EQ(Node::destroyed, 2);
    EXPECT_TRUE(outside.expired());
    EXPECT_TRUE(outside.lock().is_null());
    EXPECT_TRUE(TWeakHandle<Node>().expired());
}

#include "platform/ComPointer.h"

#include <gtest/gtest.h>

namespace {

/// Counts references like a COM object, but is never destroyed.
struct Counted {
    int references = 1;
    void AddRef() { ++references; }
    void Release() { --references; }
};

} // namespace

TEST(ComPointer, AdoptedReferenceIsReleasedOnce)
{
    Counted object;
    {
        const auto owner = ComPointer<Counted>::Adopt(&object);
        EXPECT_EQ(object.references, 1);
        EXPECT_EQ(owner.Get(), &object);
    }
    EXPECT_EQ(object.references, 0);
}

TEST(ComPointer, SharingAddsAReference)
{
    Counted object;
    {
        const auto owner = ComPointer<Counted>::Share(&object);
        EXPECT_EQ(object.references, 2);
    }
    EXPECT_EQ(object.references, 1);
    EXPECT_FALSE(ComPointer<Counted>::Share(nullptr));
}

TEST(ComPointer, CopyCountsAndMoveDoesNot)
{
    Counted object;
    auto first = ComPointer<Counted>::Adopt(&object);
    {
        const ComPointer<Counted> second = first;
        EXPECT_EQ(object.references, 2);
    }
    const ComPointer<Counted> third = std::move(first);
    EXPECT_EQ(object.references, 1);
    EXPECT_EQ(third.Get(), &object);
}

TEST(ComPointer, AssignmentReleasesWhatWasHeld)
{
    Counted before;
    Counted after;
    auto owner = ComPointer<Counted>::Adopt(&before);
    owner = ComPointer<Counted>::Adopt(&after);
    EXPECT_EQ(before.references, 0);
    EXPECT_EQ(after.references, 1);
    const auto& self = owner;
    owner = self;
    EXPECT_EQ(after.references, 1);
}

TEST(ComPointer, OutReleasesBeforeItIsWritten)
{
    Counted before;
    Counted after;
    auto owner = ComPointer<Counted>::Adopt(&before);
    *owner.Out() = &after;
    EXPECT_EQ(before.references, 0);
    owner.Free();
    owner.Free();
    EXPECT_EQ(after.references, 0);
    EXPECT_FALSE(owner);
}

TEST(ComPointer, DetachedReferenceBelongsToTheCaller)
{
    Counted object;
    {
        auto owner = ComPointer<Counted>::Adopt(&object);
        EXPECT_EQ(owner.Detach(), &object);
    }
    EXPECT_EQ(object.references, 1);
}

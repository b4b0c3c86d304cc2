#include "support/object.h"

#include "support/zv_string.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using zorvan::AbstractObject;
using zorvan::Comparable;
using zorvan::Object;
using zorvan::Object2;

class Watched : public Object {
public:
    explicit Watched(int& deleted)
        : deleted_(deleted)
    {
    }
    ~Watched() override { ++deleted_; }

private:
    int& deleted_;
};

class Both : public Object, public Object2 { };

class Number : public Comparable {
public:
    explicit Number(int number)
        : number_(number)
    {
    }
    std::int32_t compareTo(const Comparable& other) const override
    {
        return number_ - dynamic_cast<const Number&>(other).number_;
    }

private:
    int number_;
};

} // namespace

TEST(Object, EqualsItselfOnly)
{
    const Object a;
    const Object b;
    EXPECT_TRUE(a.equals(a));
    EXPECT_FALSE(a.equals(b));
    EXPECT_EQ(a.hashCode(), a.hashCode());
    EXPECT_NE(a.hashCode(), b.hashCode());
    EXPECT_EQ(a.toString().length, 0);
    EXPECT_STREQ(a.toString().value(), "");
}

TEST(Object, SecondRootBehavesAlike)
{
    const Object2 a;
    const Object2 b;
    EXPECT_TRUE(a.equals(a));
    EXPECT_FALSE(a.equals(b));
    EXPECT_NE(a.hashCode(), b.hashCode());
    EXPECT_STREQ(a.toString().value(), "");
}

TEST(Object, IsDeletedThroughItsRoot)
{
    int deleted = 0;
    std::unique_ptr<AbstractObject> root = std::make_unique<Watched>(deleted);
    root.reset();
    EXPECT_EQ(deleted, 1);
}

TEST(Object, RootIsSharedByBothKinds)
{
    Both both;
    EXPECT_EQ(static_cast<AbstractObject*>(static_cast<Object*>(&both)),
        static_cast<AbstractObject*>(static_cast<Object2*>(&both)));
}

TEST(Object, ComparableSaysTheOrder)
{
    const Number one(1);
    const Number two(2);
    const Comparable& first = one;
    EXPECT_LT(first.compareTo(two), 0);
    EXPECT_GT(two.compareTo(one), 0);
    EXPECT_EQ(first.compareTo(one), 0);
}

#include "containers/failures.h"

#include "tests/containers/expect_failure.h"

#include <gtest/gtest.h>

#include <new>

using testing_support::expectFailure;
using namespace zorvan;

TEST(Failures, CarryCodeAndTextAndNothingElse)
{
    expectFailure(25, "item could not be found",
        [] { throwContainerFailure(FAILURE_NOT_FOUND, "item could not be found"); });
    expectFailure(137, "Index is too small.",
        [] { throwContainerFailure(FAILURE_INDEX, "Index is too small."); });
    expectFailure(15, "x", [] { throwContainerFailure(FAILURE_FOREIGN_NODE, "x"); });
}

TEST(Failures, StorageIsBadAlloc) { EXPECT_THROW(throwOutOfStorage(), std::bad_alloc); }

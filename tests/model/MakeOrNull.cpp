#include "model/MakeOrNull.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(MakeOrNull, OnlyMissingMemoryIsHeldBack)
{
    int nRun = 0;
    EXPECT_TRUE(TryAllocating([&] { ++nRun; }));
    EXPECT_FALSE(TryAllocating([] { throw std::bad_alloc(); }));
    EXPECT_FALSE(TryAllocating([&nRun] { std::vector<int>().reserve(~size_t(0) / size_t(nRun)); }));
    EXPECT_EQ(1, nRun);
    EXPECT_EQ(7, *MakeOrNull<int>(7));
    EXPECT_DEATH(TryAllocating([] { throw std::string("a mistake"); }), "");
}

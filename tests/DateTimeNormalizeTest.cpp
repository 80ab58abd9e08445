#include <gtest/gtest.h>
TEST(Placeholder, DateTimeNormalizeTest) { EXPECT_TRUE(true); }

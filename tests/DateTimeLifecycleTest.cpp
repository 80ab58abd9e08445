#include <gtest/gtest.h>
TEST(Placeholder, DateTimeLifecycleTest) { EXPECT_TRUE(true); }

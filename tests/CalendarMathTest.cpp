#include <gtest/gtest.h>
TEST(Placeholder, CalendarMathTest) { EXPECT_TRUE(true); }

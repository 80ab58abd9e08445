#include <gtest/gtest.h>
TEST(Placeholder, SiblingsTest) { EXPECT_TRUE(true); }

#include "container_test.hpp"

#include <godot_cpp/core/math.hpp>

using namespace godot;

// What scripts cannot ask the engine about; everything they can is compared with its answers elsewhere.
TEST(MathTest, PowersOfTwoRoundUp) {
	EXPECT_EQ(next_power_of_2(0u), 0u);
	EXPECT_EQ(next_power_of_2(1u), 1u);
	EXPECT_EQ(next_power_of_2(17u), 32u);
	EXPECT_EQ(next_power_of_2(uint64_t(1) << 40), uint64_t(1) << 40);
	EXPECT_EQ(next_power_of_2((uint64_t(1) << 40) + 1), uint64_t(1) << 41);
}

TEST(MathTest, TheSmallestIntegerHasARest) {
	EXPECT_EQ(Math::posmod(INT64_MIN, -1), 0);
}

#include "container_test.hpp"

#include <godot_cpp/templates/sort_array.hpp>

#include <algorithm>
#include <random>
#include <vector>

using namespace godot;

namespace {

struct Contrary {
	bool operator()(int, int) const { return true; }
};

} // namespace

TEST(SortTest, SortsWhateverTheInputLooksLike) {
	std::mt19937 random(5);
	for (int length : { 0, 1, 2, 16, 17, 100, 3000 }) {
		for (int shape = 0; shape < 5; shape++) {
			std::vector<int> numbers;
			for (int i = 0; i < length; i++) {
				// Random, ascending, descending, few values, and rising then falling.
				const int choices[] = { int(random() % 10000), i, -i, int(random() % 3), i < length / 2 ? i : length - i };
				numbers.push_back(choices[shape]);
			}
			std::vector<int> expected = numbers;
			std::sort(expected.begin(), expected.end());
			SortArray<int>().sort(numbers.data(), length);
			ASSERT_EQ(numbers, expected) << length << " of shape " << shape;
		}
	}
}

TEST(SortTest, AComparatorThatContradictsItselfLosesNothing) {
	std::vector<int> numbers(500);
	for (int i = 0; i < 500; i++) {
		numbers[i] = i;
	}
	SortArray<int, Contrary>().sort(numbers.data(), 500);
	std::sort(numbers.begin(), numbers.end());
	for (int i = 0; i < 500; i++) {
		ASSERT_EQ(numbers[i], i);
	}
}

#include "container_test.hpp"

#include <godot_cpp/templates/hash_set.hpp>

#include <vector>

using namespace godot;

namespace {

class HashSetTest : public ContainerTest {};

std::vector<int> numbers_in(const HashSet<Counted> &set) {
	std::vector<int> numbers;
	for (const Counted &element : set) {
		numbers.push_back(element.number());
	}
	return numbers;
}

} // namespace

TEST_F(HashSetTest, HoldsEachKeyOnceInOrder) {
	HashSet<Counted> set;
	for (int i : { 4, 1, 4, 3, 1 }) {
		set.insert(Counted(i));
	}
	EXPECT_EQ(numbers_in(set), (std::vector<int>{ 4, 1, 3 }));
	EXPECT_TRUE(set.erase(Counted(1)));
	EXPECT_FALSE(set.erase(Counted(1)));
	set.insert(Counted(1));
	EXPECT_EQ(numbers_in(set), (std::vector<int>{ 4, 3, 1 }));
}

TEST_F(HashSetTest, ErasesTheKeyThatALoopIsAt) {
	HashSet<Counted> set;
	for (int i = 0; i < 200; i++) {
		set.insert(Counted(i));
	}
	for (HashSet<Counted>::Iterator it = set.begin(); it;) {
		HashSet<Counted>::Iterator here = it;
		++it;
		if (here->number() >= 3) {
			// The argument is the key inside the set.
			set.erase(*here);
		}
	}
	EXPECT_EQ(numbers_in(set), (std::vector<int>{ 0, 1, 2 }));
}

TEST_F(HashSetTest, CopiesAreIndependent) {
	HashSet<int> set = { 1, 2, 3 };
	HashSet<int> copy = set;
	copy.erase(2);
	EXPECT_TRUE(set.has(2));
	EXPECT_NE(set, copy);
	copy.insert(2);
	EXPECT_EQ(set, copy);
	copy = HashSet<int>();
	EXPECT_TRUE(copy.is_empty());
	EXPECT_FALSE(copy.has(1));
}

#include "container_test.hpp"

#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/hash_set.hpp>
#include <godot_cpp/variant/vector2.hpp>

#include <algorithm>
#include <random>

using namespace godot;

namespace {

class HashMapTest : public ContainerTest {};
class HashSetTest : public ContainerTest {};

// Everything lands on one place, so that each probe and each erasure has to work its way along.
struct CollidingHasher {
	static uint32_t hash(int) { return 0; }
};

template <typename M>
std::vector<int> keys_of(const M &map) {
	std::vector<int> keys;
	for (const auto &entry : map) {
		keys.push_back(entry.key);
	}
	return keys;
}

// The list of keys is what the map has to agree with after every step.
template <typename M>
void compare_with_a_list(uint32_t seed, int key_count) {
	std::mt19937 random(seed);
	M map;
	std::vector<std::pair<int, int>> expected;
	for (int step = 0; step < 4000; step++) {
		const int key = int(random() % key_count);
		const auto known = std::find_if(expected.begin(), expected.end(), [key](const auto &entry) { return entry.first == key; });
		const bool was_known = known != expected.end();
		ASSERT_EQ(map.has(key), was_known);
		if (random() % 5 < 3) {
			map.insert(key, step);
			was_known ? void(known->second = step) : void(expected.emplace_back(key, step));
		} else {
			ASSERT_EQ(map.erase(key), was_known);
			if (was_known) {
				expected.erase(known);
			}
		}
		std::vector<std::pair<int, int>> found;
		for (const auto &entry : map) {
			found.emplace_back(entry.key, entry.value);
		}
		ASSERT_EQ(found, expected);
		ASSERT_EQ(map.size(), expected.size());
	}
}

} // namespace

TEST_F(HashMapTest, KeepsInsertionOrderThroughErasingAndGrowing) {
	compare_with_a_list<HashMap<int, int>>(1, 300);
}

TEST_F(HashMapTest, FindsEveryKeyWhenAllHashesAreEqual) {
	compare_with_a_list<HashMap<int, int, CollidingHasher>>(2, 40);
}

TEST_F(HashMapTest, PointersToValuesStayGoodWhileTheMapGrows) {
	HashMap<int, Counted> map;
	Counted *first = &map[0];
	*first = Counted(7);
	for (int i = 1; i < 5000; i++) {
		map[i] = Counted(i);
	}
	EXPECT_EQ(map.getptr(0), first);
	EXPECT_EQ(first->number(), 7);
}

TEST_F(HashMapTest, ALoopSeesWhatIsInsertedAndMissesWhatIsErasedAhead) {
	HashMap<int, int> map = { { 0, 0 }, { 1, 0 }, { 2, 0 } };
	std::vector<int> seen;
	for (const KeyValue<int, int> &entry : map) {
		seen.push_back(entry.key);
		if (entry.key == 0) {
			map.erase(1);
			for (int i = 10; i < 40; i++) {
				map.insert(i, 0);
			}
		}
	}
	EXPECT_EQ(seen, keys_of(map));
	EXPECT_EQ(seen.size(), 32u);
}

TEST_F(HashMapTest, CopiesAreIndependentAndMovesLeaveNothing) {
	HashMap<Counted, Counted> map;
	for (int i = 0; i < 50; i++) {
		map[Counted(i)] = Counted(i * 2);
	}
	HashMap<Counted, Counted> copy(map);
	map.erase(Counted(0));
	EXPECT_EQ(copy.size(), 50u);
	HashMap<Counted, Counted> moved = std::move(copy);
	EXPECT_EQ(moved.size(), 50u);
	EXPECT_TRUE(copy.is_empty());
	copy[Counted(1)] = Counted(1);
	EXPECT_EQ(copy.size(), 1u);
	moved = map;
	const HashMap<Counted, Counted> &itself = moved;
	moved = itself;
	EXPECT_FALSE(moved.has(Counted(0)));
	EXPECT_EQ(moved[Counted(49)].number(), 98);
}

TEST_F(HashMapTest, AValueMayReachTheMapWhileItIsCleared) {
	struct Nosy {
		HashMap<int, Nosy> *map = nullptr;
		int *seen = nullptr;
		~Nosy() {
			if (map != nullptr) {
				*seen += int(map->size()) + (map->has(1) ? 1 : 0);
			}
		}
	};
	int seen = 0;
	HashMap<int, Nosy> map;
	for (int i = 0; i < 30; i++) {
		Nosy *value = &map[i];
		value->map = &map;
		value->seen = &seen;
	}
	map.clear();
	EXPECT_EQ(seen, 0);
	map[1];
	EXPECT_FALSE(map.has(2));
}

TEST_F(HashMapTest, FindsFloatKeysThatCompareOddly) {
	HashMap<Vector2, int> map;
	map[Vector2(0, 1)] = 1;
	map[Vector2(-0.0f, 1)] = 2;
	map[Vector2(NAN, 1)] = 3;
	map[Vector2(NAN, 1)] = 4;
	EXPECT_EQ(map.size(), 2u);
	EXPECT_EQ(map[Vector2(0, 1)], 2);
}

TEST_F(HashSetTest, HoldsEachKeyOnceAndErasesTheOneALoopIsAt) {
	HashSet<Counted> set;
	for (int i = 0; i < 400; i++) {
		set.insert(Counted(i % 200));
	}
	EXPECT_EQ(set.size(), 200u);
	HashSet<Counted> copy(set);
	for (HashSet<Counted>::Iterator it = set.begin(); it;) {
		HashSet<Counted>::Iterator here = it;
		++it;
		if (here->number() >= 3) {
			// The argument is the key inside the set.
			set.erase(*here);
		}
	}
	set.insert(Counted(1));
	std::vector<int> numbers;
	for (const Counted &element : set) {
		numbers.push_back(element.number());
	}
	EXPECT_EQ(numbers, (std::vector<int>{ 0, 1, 2 }));
	EXPECT_TRUE(copy.has(Counted(199)));
}

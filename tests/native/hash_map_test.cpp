#include "container_test.hpp"

#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/variant/vector2.hpp>
#include <godot_cpp/variant/vector3i.hpp>

#include <algorithm>
#include <random>
#include <vector>

using namespace godot;

namespace {

class HashMapTest : public ContainerTest {};

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
		if (random() % 5 < 3) {
			map.insert(key, step);
			if (known == expected.end()) {
				expected.emplace_back(key, step);
			} else {
				known->second = step;
			}
		} else {
			ASSERT_EQ(map.erase(key), known != expected.end());
			if (known != expected.end()) {
				expected.erase(known);
			}
		}
		ASSERT_EQ(map.size(), expected.size());
		if (step % 50 == 0) {
			std::vector<std::pair<int, int>> found;
			for (const auto &entry : map) {
				found.emplace_back(entry.key, entry.value);
			}
			ASSERT_EQ(found, expected);
			for (int each = 0; each < key_count; each++) {
				const bool wanted = std::any_of(expected.begin(), expected.end(), [each](const auto &entry) { return entry.first == each; });
				ASSERT_EQ(map.has(each), wanted) << each;
			}
		}
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
	EXPECT_EQ(map[4999].number(), 4999);
}

TEST_F(HashMapTest, ErasesTheEntryThatALoopIsAt) {
	HashMap<int, Counted> map;
	for (int i = 0; i < 100; i++) {
		map.insert(i, Counted(i));
	}
	for (HashMap<int, Counted>::Iterator it = map.begin(); it;) {
		HashMap<int, Counted>::Iterator here = it;
		++it;
		if (here->key % 3 != 0) {
			map.remove(here);
		}
	}
	std::vector<int> expected;
	for (int i = 0; i < 100; i += 3) {
		expected.push_back(i);
	}
	EXPECT_EQ(keys_of(map), expected);
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

TEST_F(HashMapTest, InsertingAgainKeepsThePlace) {
	HashMap<int, int> map = { { 5, 1 }, { 6, 2 } };
	map.insert(5, 9);
	map.insert(4, 0, true);
	EXPECT_EQ(keys_of(map), (std::vector<int>{ 4, 5, 6 }));
	EXPECT_EQ(map.get(5), 9);
}

TEST_F(HashMapTest, CopiesAreIndependentAndMovesLeaveNothing) {
	HashMap<Counted, Counted> map;
	for (int i = 0; i < 50; i++) {
		map[Counted(i)] = Counted(i * 2);
	}
	HashMap<Counted, Counted> copy = map;
	map.erase(Counted(0));
	EXPECT_EQ(copy.size(), 50u);
	HashMap<Counted, Counted> moved = std::move(copy);
	EXPECT_EQ(moved.size(), 50u);
	EXPECT_TRUE(copy.is_empty());
	copy[Counted(1)] = Counted(1);
	EXPECT_EQ(copy.size(), 1u);
	moved = map;
	EXPECT_FALSE(moved.has(Counted(0)));
	EXPECT_EQ(moved[Counted(49)].number(), 98);
}

TEST_F(HashMapTest, ReplacesAKeyInItsPlace) {
	HashMap<int, int> map = { { 1, 10 }, { 2, 20 }, { 3, 30 } };
	// The old key is handed over as the very one inside the map.
	EXPECT_TRUE(map.replace_key(map.find(2)->key, 22));
	EXPECT_EQ(keys_of(map), (std::vector<int>{ 1, 22, 3 }));
	EXPECT_EQ(map.get(22), 20);
	EXPECT_FALSE(map.has(2));
	EXPECT_FALSE(map.replace_key(1, 3));
	EXPECT_EQ(stub_host::take_errors().size(), 1u);
}

TEST_F(HashMapTest, AValueMayReachTheMapWhileItIsCleared) {
	struct Nosy {
		HashMap<int, Nosy> *map = nullptr;
		int *seen = nullptr;
		Nosy() = default;
		Nosy(HashMap<int, Nosy> *of, int *count) :
				map(of), seen(count) {}
		~Nosy() {
			if (map != nullptr) {
				*seen += map->has(1) ? 1 : 0;
				*seen += int(map->size());
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
	EXPECT_FALSE(map.has(1));
}

TEST_F(HashMapTest, SortsStably) {
	HashMap<int, int> map;
	for (int i : { 5, 3, 9, 1, 7 }) {
		map.insert(i, i);
	}
	map.sort();
	EXPECT_EQ(keys_of(map), (std::vector<int>{ 1, 3, 5, 7, 9 }));
	EXPECT_EQ(map.last()->key, 9);
	map.erase(1);
	map.erase(9);
	EXPECT_EQ(keys_of(map), (std::vector<int>{ 3, 5, 7 }));
}

TEST_F(HashMapTest, FindsFloatKeysThatCompareOddly) {
	HashMap<double, int> map;
	map[0.0] = 1;
	map[-0.0] = 2;
	map[NAN] = 3;
	map[NAN] = 4;
	EXPECT_EQ(map.size(), 2u);
	EXPECT_EQ(map[0.0], 2);
	HashMap<Vector2, int> vectors;
	vectors[Vector2(0, 1)] = 1;
	vectors[Vector2(-0.0f, 1)] = 2;
	vectors[Vector2(NAN, 1)] = 3;
	EXPECT_EQ(vectors.size(), 2u);
	EXPECT_TRUE(vectors.has(Vector2(NAN, 1)));
	HashMap<Vector3i, int> cells;
	for (int i = 0; i < 1000; i++) {
		cells[Vector3i(i % 10, i / 10 % 10, i / 100)] = i;
	}
	EXPECT_EQ(cells.size(), 1000u);
	EXPECT_EQ(cells[Vector3i(3, 2, 1)], 123);
}

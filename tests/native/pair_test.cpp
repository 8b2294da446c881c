#include "container_test.hpp"

#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/pair.hpp>

using namespace godot;

TEST(PairTest, ComparesOrdersAndServesAsKey) {
	using Cell = Pair<int, int>;
	EXPECT_EQ(Cell(1, 2), Cell(1, 2));
	EXPECT_NE(Cell(1, 2), Cell(2, 1));
	EXPECT_TRUE((PairSort<int, int>()(Cell(1, 9), Cell(2, 0))));
	EXPECT_TRUE((PairSort<int, int>()(Cell(1, 1), Cell(1, 2))));
	EXPECT_FALSE((PairSort<int, int>()(Cell(1, 2), Cell(1, 2))));
	HashMap<Cell, int, PairHash<int, int>> map;
	for (int i = 0; i < 400; i++) {
		map[Cell(i % 20, i / 20)] = i;
	}
	EXPECT_EQ(map.size(), 400u);
	EXPECT_EQ(map[Cell(7, 3)], 67);
	EXPECT_FALSE(map.has(Cell(3, 20)));
}

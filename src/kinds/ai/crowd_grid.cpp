#include "kinds/ai/crowd_grid.hpp"

#include "fast_lane/spots.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/typed_array.hpp>

#include <cmath>

namespace crowd_grid {

namespace {

constexpr double SMALLEST_CELL = 0.001;
constexpr uint64_t ROW_OF_CELLS = 1000003;
// Farther out nothing is near anything within the engine's numbers.
constexpr double FARTHEST_CELL = 1.0e12;
constexpr uint32_t MOST_GRIDS = 16;
constexpr uint32_t LEAST_SLOTS = 64;
constexpr int32_t NOBODY = -1;

struct Cell {
	int64_t x = 0;
	int64_t y = 0;

	uint64_t key() const { return uint64_t(x) * ROW_OF_CELLS + uint64_t(y); }
};

struct Member {
	double x = 0.0;
	double y = 0.0;
	uint64_t id = 0;
	spots::Side side = spots::NOWHERE;
	// The next in its cell.
	int32_t next = NOBODY;
};

// False for a node that is nowhere.
bool place_of(const Node *node, Member &member) {
	member.side = spots::side_of(node);
	Vector3 spot;
	if (member.side == spots::NOWHERE || !spots::read(node, member.side, spot) || !spot.is_finite()) {
		return false;
	}
	member.id = node->get_instance_id();
	member.x = double(spot.x);
	member.y = double(member.side == spots::IN_2D ? spot.y : spot.z);
	return true;
}

// A table by cell, of which nothing is cleared from one frame to the next: what an earlier frame left has an earlier stamp.
class CellTable {
	struct Slot {
		uint64_t key = 0;
		uint32_t stamp = 0;
		int32_t head = NOBODY;
	};
	LocalVector<Slot> slots;
	uint32_t stamp = 0;

	uint32_t place_of(uint64_t key) const {
		const uint32_t mask = slots.size() - 1;
		uint32_t at = uint32_t((key * 0x9E3779B97F4A7C15ull) >> 32) & mask;
		while (slots[at].stamp == stamp && slots[at].key != key) {
			at = (at + 1) & mask;
		}
		return at;
	}

public:
	void begin(uint32_t members) {
		uint32_t wanted = LEAST_SLOTS;
		while (wanted < members * 2) {
			wanted *= 2;
		}
		stamp++;
		if (slots.size() < wanted || stamp == 0) {
			slots.clear();
			slots.resize(wanted);
			stamp = 1;
		}
	}
	int32_t first_in(uint64_t key) const {
		const Slot &slot = slots[place_of(key)];
		return slot.stamp == stamp ? slot.head : NOBODY;
	}
	// Answers who was first before.
	int32_t put_first(uint64_t key, int32_t member) {
		Slot &slot = slots[place_of(key)];
		const int32_t before = slot.stamp == stamp ? slot.head : NOBODY;
		slot.key = key;
		slot.stamp = stamp;
		slot.head = member;
		return before;
	}
};

class CrowdGrid {
public:
	StringName group;
	uint64_t tree = 0;
	double cell = 0.0;
	int64_t frame = -1;

	void read(SceneTree *from, int64_t now, int64_t count) {
		frame = now;
		node_count = count;
		members.clear();
		const TypedArray<Node> nodes = from->get_nodes_in_group(group);
		for (int64_t i = 0; i < nodes.size(); i++) {
			Member member;
			Cell in;
			const Node *node = Object::cast_to<Node>(nodes[i].get_validated_object());
			if (node != nullptr && place_of(node, member) && find_cell(member, in)) {
				members.push_back(member);
			}
		}
		cells.begin(members.size());
		// From the last on, so that each cell lists them in their order.
		for (int32_t i = int32_t(members.size()) - 1; i >= 0; i--) {
			Cell in;
			find_cell(members[uint32_t(i)], in);
			members[uint32_t(i)].next = cells.put_first(in.key(), i);
		}
	}
	bool is_of(int64_t now, int64_t count) const { return frame == now && node_count == count; }

	bool find_cell(const Member &member, Cell &found) const {
		const double x = std::floor(member.x / cell);
		const double y = std::floor(member.y / cell);
		if (!(std::abs(x) < FARTHEST_CELL && std::abs(y) < FARTHEST_CELL)) {
			return false;
		}
		found.x = int64_t(x);
		found.y = int64_t(y);
		return true;
	}

	template <class Each>
	void each_near(const Cell &middle, Each each) const {
		for (int64_t x = middle.x - 1; x <= middle.x + 1; x++) {
			for (int64_t y = middle.y - 1; y <= middle.y + 1; y++) {
				for (int32_t at = cells.first_in(Cell{ x, y }.key()); at != NOBODY; at = members[uint32_t(at)].next) {
					each(members[uint32_t(at)]);
				}
			}
		}
	}

private:
	int64_t node_count = -1;
	LocalVector<Member> members;
	CellTable cells;
};

struct Grids {
	mutable LocalVector<CrowdGrid *> grids;

	~Grids() {
		for (CrowdGrid *grid : grids) {
			memdelete(grid);
		}
	}
};

// The grid of that crowd, or the one that has not been asked for longest.
CrowdGrid &grid_for(uint64_t tree, const StringName &group, double cell) {
	LocalVector<CrowdGrid *> &grids = NativeNames::of<Grids>().grids;
	CrowdGrid *oldest = nullptr;
	for (CrowdGrid *grid : grids) {
		if (grid->tree == tree && grid->cell == cell && grid->group == group) {
			return *grid;
		}
		oldest = oldest == nullptr || grid->frame < oldest->frame ? grid : oldest;
	}
	CrowdGrid *taken = oldest;
	if (grids.size() < MOST_GRIDS) {
		taken = memnew(CrowdGrid);
		grids.push_back(taken);
	}
	taken->tree = tree;
	taken->group = group;
	taken->cell = cell;
	taken->frame = -1;
	return *taken;
}

} // namespace

Vector2 way_out(const Node *of, const StringName &group, double space, bool on_a_line) {
	Member self;
	SceneTree *tree = of->get_tree();
	if (tree == nullptr || !place_of(of, self)) {
		return Vector2();
	}
	CrowdGrid &grid = grid_for(tree->get_instance_id(), group, MAX(space, SMALLEST_CELL));
	const int64_t now = int64_t(Engine::get_singleton()->get_physics_frames());
	const int64_t count = tree->get_node_count_in_group(group);
	if (!grid.is_of(now, count)) {
		grid.read(tree, now, count);
	}
	Cell middle;
	if (!grid.find_cell(self, middle)) {
		return Vector2();
	}
	double x = 0.0;
	double y = 0.0;
	grid.each_near(middle, [&](const Member &other) {
		const double away_x = self.x - other.x;
		const double away_y = self.y - other.y;
		const double squared = away_x * away_x + away_y * away_y;
		if (other.id == self.id || other.side != self.side || !(squared > 0.0) || squared > space * space) {
			return;
		}
		const double apart = std::sqrt(squared);
		const double strength = 1.0 - apart / space;
		if (on_a_line) {
			x += SIGN(away_x) * strength;
		} else {
			x += away_x / apart * strength;
			y += away_y / apart * strength;
		}
	});
	return Vector2(real_t(x), real_t(y));
}

} // namespace crowd_grid

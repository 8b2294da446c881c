#include "kinds/ai/crowd_grid.hpp"

#include "fast_lane/spots.hpp"
#include "machine/native_names.hpp"
#include "machine/prefetch.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/typed_array.hpp>

#include <cmath>

namespace crowd_grid {

namespace {

constexpr double SMALLEST_CELL = 0.001;
// Farther out nothing is near anything within the engine's numbers.
constexpr double FARTHEST_CELL = 1.0e12;
constexpr uint32_t MOST_GRIDS = 16;
constexpr uint32_t LEAST_BUCKETS = 64;
// How far ahead of the one being read, and how much of the engine's half of a node.
constexpr uint32_t READ_AHEAD = 2;
constexpr uintptr_t LINES_OF_A_NODE = 18;

struct Spot {
	real_t x = 0.0f;
	real_t y = 0.0f;
};

// Of a node within the tree and of that side.
Spot spot_of(const Node *node, spots::Side side) {
	if (side == spots::IN_2D) {
		const Vector2 place = static_cast<const Node2D *>(node)->get_global_position();
		return { place.x, place.y };
	}
	const Vector3 place = static_cast<const Node3D *>(node)->get_global_position();
	return { place.x, place.z };
}

struct Cell {
	int64_t x = 0;
	int64_t y = 0;
};

bool find_cell(const Spot &spot, double width, Cell &found) {
	const double x = std::floor(double(spot.x) / width);
	const double y = std::floor(double(spot.y) / width);
	// Also false for what is no number.
	if (!(std::abs(x) < FARTHEST_CELL && std::abs(y) < FARTHEST_CELL)) {
		return false;
	}
	found.x = int64_t(x);
	found.y = int64_t(y);
	return true;
}

// Which bucket a cell's members are in. Cells above one another have buckets side by side, and the columns begin by the golden ratio
// apart, so that those of one crowd hardly ever share any, and the nine cells about a place never do. Those that do share one are
// far from each other.
class Buckets {
	static constexpr double GOLDEN = 0.6180339887498949;
	uint64_t mask = LEAST_BUCKETS - 1;
	uint64_t column = 0;

public:
	void fit(uint32_t members) {
		uint64_t wanted = LEAST_BUCKETS;
		while (wanted < uint64_t(members) * 2) {
			wanted *= 2;
		}
		mask = wanted - 1;
		column = uint64_t(double(wanted) * GOLDEN) | 1;
	}
	uint32_t count() const { return uint32_t(mask + 1); }
	uint32_t of(int64_t x, int64_t y) const { return uint32_t((uint64_t(x) * column + uint64_t(y)) & mask); }
};

class CrowdGrid {
	struct Member {
		uint64_t id = 0;
		// The class of a node never changes.
		spots::Side side = spots::NOWHERE;
		// Where the two halves of the node lay when the list was made, for prefetching alone: nothing may lie there any more.
		uintptr_t wrapper = 0;
		uintptr_t owner = 0;
	};
	struct Standing {
		Spot spot;
		uint64_t id = 0;
		// Its place among the members.
		uint32_t order = 0;
	};

	// Everybody in the group, in its order.
	LocalVector<Member> members;
	int64_t node_count = -1;
	// Those of this side that stand somewhere, and the bucket that each belongs in.
	LocalVector<Standing> found;
	LocalVector<uint32_t> bucket_of;
	// The same, bucket by bucket, and where each bucket begins.
	LocalVector<Standing> standing;
	LocalVector<uint32_t> begins;
	Buckets buckets;

	StringName group;
	uint64_t tree = 0;
	spots::Side side = spots::NOWHERE;
	double cell = 0.0;
	int64_t frame = -1;

public:
	bool is_for(uint64_t of_tree, const StringName &of_group, spots::Side of_side, double of_cell) const {
		return tree == of_tree && cell == of_cell && side == of_side && group == of_group;
	}
	void take_over(uint64_t of_tree, const StringName &of_group, spots::Side of_side, double of_cell) {
		tree = of_tree;
		group = of_group;
		side = of_side;
		cell = of_cell;
		frame = -1;
		node_count = -1;
	}
	int64_t last_read() const { return frame; }
	bool is_of(int64_t now, int64_t count) const { return frame == now && node_count == count; }

	void read(SceneTree *from, int64_t now, int64_t count) {
		frame = now;
		if (node_count != count || !find_members()) {
			list_members(from);
			find_members();
		}
		node_count = count;
		lay_out();
	}

	// Thousands of nodes lie all over the memory, and waiting for that is most of what another one costs. Those who keep apart are
	// called in their order as a rule.
	void prefetch_after(const Standing &one) const { prefetch_member(one.order + 1); }

	template <class Each>
	void each_near(const Spot &place, Each each) const {
		Cell middle;
		if (!find_cell(place, cell, middle)) {
			return;
		}
		for (int64_t x = middle.x - 1; x <= middle.x + 1; x++) {
			for (int64_t y = middle.y - 1; y <= middle.y + 1; y++) {
				const uint32_t bucket = buckets.of(x, y);
				const uint32_t end = begins[bucket + 1];
				for (uint32_t i = begins[bucket]; i < end; i++) {
					each(standing[i]);
				}
			}
		}
	}

private:
	void prefetch_member(uint32_t at) const {
		constexpr uintptr_t LINE = 64;
		if (at >= members.size()) {
			return;
		}
		prefetch(members[at].wrapper);
		for (uintptr_t line = 0; line < LINES_OF_A_NODE; line++) {
			prefetch(members[at].owner + line * LINE);
		}
	}

	void list_members(SceneTree *from) {
		members.clear();
		const TypedArray<Node> nodes = from->get_nodes_in_group(group);
		for (int64_t i = 0; i < nodes.size(); i++) {
			if (const Node *node = Object::cast_to<Node>(nodes[i].get_validated_object())) {
				members.push_back({ node->get_instance_id(), spots::side_of(node), uintptr_t(node), uintptr_t(node->_owner) });
			}
		}
	}

	// False when one of them has left. Together with their number, that says whether the list is still right, and the engine need
	// not make one in every frame.
	bool find_members() {
		found.clear();
		bucket_of.clear();
		buckets.fit(members.size());
		for (uint32_t at = 0; at < members.size(); at++) {
			prefetch_member(at + READ_AHEAD);
			const Member &member = members[at];
			const Node *node = Object::cast_to<Node>(ObjectDB::get_instance(member.id));
			if (node == nullptr || !node->is_inside_tree() || !node->is_in_group(group)) {
				return false;
			}
			if (member.side != side) {
				continue;
			}
			const Spot spot = spot_of(node, side);
			Cell in;
			if (find_cell(spot, cell, in)) {
				found.push_back({ spot, member.id, at });
				bucket_of.push_back(buckets.of(in.x, in.y));
			}
		}
		return true;
	}

	void lay_out() {
		begins.resize(buckets.count() + 1);
		for (uint32_t &begin : begins) {
			begin = 0;
		}
		for (const uint32_t bucket : bucket_of) {
			begins[bucket]++;
		}
		uint32_t end = 0;
		for (uint32_t &begin : begins) {
			end += begin;
			begin = end;
		}
		standing.resize(found.size());
		// From the last on, so that each bucket lists them in their order.
		for (uint32_t i = found.size(); i > 0; i--) {
			standing[--begins[bucket_of[i - 1]]] = found[i - 1];
		}
	}
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
CrowdGrid &grid_for(uint64_t tree, const StringName &group, spots::Side side, double cell) {
	LocalVector<CrowdGrid *> &grids = NativeNames::of<Grids>().grids;
	CrowdGrid *oldest = nullptr;
	for (CrowdGrid *grid : grids) {
		if (grid->is_for(tree, group, side, cell)) {
			return *grid;
		}
		oldest = oldest == nullptr || grid->last_read() < oldest->last_read() ? grid : oldest;
	}
	CrowdGrid *taken = oldest;
	if (grids.size() < MOST_GRIDS) {
		taken = memnew(CrowdGrid);
		grids.push_back(taken);
	}
	taken->take_over(tree, group, side, cell);
	return *taken;
}

} // namespace

Vector2 way_out(const Node *of, const StringName &group, double space, bool on_a_line) {
	const spots::Side side = spots::side_of(of);
	SceneTree *tree = of->is_inside_tree() ? of->get_tree() : nullptr;
	if (tree == nullptr || side == spots::NOWHERE) {
		return Vector2();
	}
	CrowdGrid &grid = grid_for(tree->get_instance_id(), group, side, MAX(space, SMALLEST_CELL));
	const int64_t now = int64_t(Engine::get_singleton()->get_physics_frames());
	const int64_t count = tree->get_node_count_in_group(group);
	if (!grid.is_of(now, count)) {
		grid.read(tree, now, count);
	}
	const Spot self = spot_of(of, side);
	const uint64_t own_id = of->get_instance_id();
	const double farthest = space * space;
	const double share = 1.0 / space;
	double x = 0.0;
	double y = 0.0;
	grid.each_near(self, [&](const auto &other) {
		const double away_x = double(self.x) - double(other.spot.x);
		const double away_y = double(self.y) - double(other.spot.y);
		const double squared = away_x * away_x + away_y * away_y;
		if (other.id == own_id) {
			grid.prefetch_after(other);
			return;
		}
		if (!(squared > 0.0) || squared > farthest) {
			return;
		}
		const double apart = std::sqrt(squared);
		if (on_a_line) {
			x += SIGN(away_x) * (1.0 - apart * share);
		} else {
			const double strength = 1.0 / apart - share;
			x += away_x * strength;
			y += away_y * strength;
		}
	});
	return Vector2(real_t(x), real_t(y));
}

} // namespace crowd_grid

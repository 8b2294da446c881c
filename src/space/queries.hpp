#pragma once

// Asking the physics world: what a line meets, what a shape touches, and how far a shape gets. Runtimes that look, feel or reach
// make a Query for the side they are on, ask it all they want to know, and only then tell anyone: everybody on one side shares one
// set of the engine's query objects, which the next Query takes over.
//
//	queries::Query<In3D> query(body, filter);
//	queries::Hit<Vector3> hit;
//	if (query.ray(from, to, hit)) ...

#include "space/sides.hpp"

#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/rid.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/typed_array.hpp>

class SCMachineBase;

namespace queries {

inline constexpr int64_t EVERY_LAYER = 0xFFFFFFFF;

struct Filter {
	int64_t mask = EVERY_LAYER;
	bool bodies = true;
	bool areas = false;
	// A line that starts inside a shape hits it at once, with no normal.
	bool from_inside = false;
	// What belongs to these is passed by, for instance the asker's own body.
	const Node *own[2] = { nullptr, nullptr };
	StringName only_group;
	StringName except_group;
	// Something that is not in the group ends the line.
	bool stopped_by_others = false;

	bool is_own(const Node *node) const;
};

template <class Vector>
struct Hit {
	// Invalid for what stands in the world without a node.
	ObjectID node;
	RID rid;
	Vector place;
	Vector normal;
	double distance = 0.0;

	Node *get() const { return node.is_valid() ? Object::cast_to<Node>(ObjectDB::get_instance(node)) : nullptr; }
	// Tells it from others, never 0.
	int64_t key() const { return node.is_valid() ? int64_t(uint64_t(node)) : rid.get_id(); }
};
template <class Vector>
using Hits = LocalVector<Hit<Vector>>;

// More than this is taken for endless.
inline constexpr int MOST = 1024;

template <class Side>
class Query {
	using Vector = typename Side::Vector;
	using Transform = typename Side::Transform;

	struct Shared;
	Shared &shared;
	const Filter &filter;
	typename Side::Space *space = nullptr;

	bool next_on_line(Hit<Vector> &hit);
	bool next_on_way(const RID &shape, const Transform &at, const Vector &motion, Hit<Vector> &hit);
	bool rest(const RID &shape, const Transform &at, Hit<Vector> &hit);
	void suit_shape(const RID &shape, const Transform &at, const Vector &motion, double margin);

public:
	// In the world of that node, which has to be inside the tree.
	Query(const Node *in_the_world_of, const Filter &asked_of);

	// There is a world that can be asked.
	explicit operator bool() const { return space != nullptr; }
	void leave_out(const RID &collider);

	// The first thing on the line that counts.
	bool ray(const Vector &from, const Vector &to, Hit<Vector> &hit);
	// Everything on it that counts, each node once, in the order of meeting it.
	void rays(const Vector &from, const Vector &to, int most, Hits<Vector> &hits);
	// Adds what the shape touches where it stands, each node once, in no order and without places.
	void touching(const RID &shape, const Transform &at, double margin, Hits<Vector> &hits);
	// The same for all shapes of an area or a body that are switched on, and by the layers of the filter alone.
	void touching(const typename Side::Collider *of, double margin, Hits<Vector> &hits);
	// Adds what the shape meets on its way, each node once, in the order of meeting it. What is among the hits already, it passes.
	void sweep(const RID &shape, const Transform &at, const Vector &motion, int most, Hits<Vector> &hits);
	// Fills in where the shape touches the first of what it touches.
	void place_first(const RID &shape, const Transform &at, Hits<Vector> &hits);

	// Shapes for whoever has none, until the next Query.
	RID round(double radius);
	RID box(const Vector &size);
};

// The nearest area or body at this node or above it.
const Node *collider_above(const Node *node);

// True in the frame in which the machine has just begun. The places of fresh bodies, tiles and combined shapes reach the physics
// only with the end of that frame.
bool is_fresh(const SCMachineBase *machine);
// False between physics frames where the physics have a thread of their own.
bool are_answered_now(bool in_2d);

} // namespace queries

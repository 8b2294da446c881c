#include "space/bullet_sweeps.hpp"

#include "action/shared_verbs.hpp"
#include "machine/native_names.hpp"
#include "space/bullet_bounds.hpp"
#include "space/queries.hpp"

#include <godot_cpp/classes/capsule_shape2d.hpp>
#include <godot_cpp/classes/capsule_shape3d.hpp>
#include <godot_cpp/classes/viewport.hpp>

namespace bullet_sweeps {

namespace {

struct Names {
	StringName hurt_box = "hurt_box";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// From so many in one cell on, the cell is asked for them.
constexpr int LEAST_TOGETHER = 3;
// What a bullet may bounce off, and what it may meet on its way, within one step.
constexpr int MOST_LEGS = 8;
constexpr uint32_t MOST_MET = 64;
// With more around than that, asking the engine is cheaper than looking through them.
constexpr uint32_t MOST_BOXES = 64;

// What differs between the two sides: how a bullet's plain numbers read there.
struct Flying2D : In2D {
	using Capsule = CapsuleShape2D;
	static constexpr double CELL = 256.0;

	static Vector at(const Vector3 &place) { return Vector2(place.x, place.y); }
	static Vector3 kept(const Vector &place) { return Vector3(place.x, place.y, 0); }
	static Vector along(const Vector2 &way) { return way; }
	static Vector2 flat(const Vector &normal) { return normal; }
	static Transform turned(const Vector2 &way, const Vector3 &place) { return Transform2D(way, Vector2(-way.y, way.x), at(place)); }
	// A capsule stands upright.
	static Transform lying(const Vector2 &way, const Vector &middle) { return Transform2D(Vector2(-way.y, way.x), way, middle); }
	static const Transform &shape_of(const Flight &flight) { return flight.shape_2d; }
	static uint64_t cell(const Vector3 &place, double side) {
		return (uint64_t(uint32_t(int32_t(std::floor(double(place.x) / side)))) << 32) | uint32_t(int32_t(std::floor(double(place.y) / side)));
	}
};

struct Flying3D : In3D {
	using Capsule = CapsuleShape3D;
	static constexpr double CELL = 8.0;
	// Floors are as wide as the world, and bullets of one height pass over them together.
	static constexpr double CELL_HEIGHT = 0.5;

	static Vector at(const Vector3 &place) { return place; }
	static Vector3 kept(const Vector &place) { return place; }
	static Vector along(const Vector2 &way) { return Vector3(way.x, 0, way.y); }
	static Vector2 flat(const Vector &normal) { return Vector2(normal.x, normal.z); }
	static Transform turned(const Vector2 &way, const Vector3 &place) { return Transform3D(looking_along(way), place); }
	static Transform lying(const Vector2 &way, const Vector &middle) {
		const Vector3 forward = along(way);
		return Transform3D(Basis(forward.cross(up()), forward, up()), middle);
	}
	static const Transform &shape_of(const Flight &flight) { return flight.shape_3d; }
	static uint64_t cell(const Vector3 &place, double side) {
		constexpr uint64_t PART = (uint64_t(1) << 21) - 1;
		const auto part = [](double of) { return uint64_t(int64_t(std::floor(of))) & PART; };
		return (part(double(place.x) / side) << 42) | (part(double(place.z) / side) << 21) | part(double(place.y) / CELL_HEIGHT);
	}
};

struct Verdict {
	enum What {
		PASSED_BY,
		SOLID,
		TARGET,
	};
	What what = PASSED_BY;
	ObjectID thing;
	ObjectID hurt_box;
};

bool is_area(const Node *node) {
	return Object::cast_to<Area2D>(node) != nullptr || Object::cast_to<Area3D>(node) != nullptr;
}

bool collides(const Node *node) {
	return Object::cast_to<CollisionObject2D>(node) != nullptr || Object::cast_to<CollisionObject3D>(node) != nullptr;
}

bool can_be_noticed(const Node *area) {
	const Area2D *area_2d = Object::cast_to<Area2D>(area);
	return area_2d != nullptr ? area_2d->is_monitorable() : Object::cast_to<Area3D>(area)->is_monitorable();
}

bool has_shapes(Node *node) {
	if (auto *collider_2d = Object::cast_to<CollisionObject2D>(node)) {
		return !collider_2d->get_shape_owners().is_empty();
	}
	auto *collider_3d = Object::cast_to<CollisionObject3D>(node);
	return collider_3d != nullptr && !collider_3d->get_shape_owners().is_empty();
}

// What a thing in the group is: found from what was touched of it.
class Judge {
	const StringName &group;
	const Node *top;

	bool is_in(const Node *node) const { return node->is_in_group(group); }
	// Above this nothing is a part of what was touched.
	bool is_beyond(const Node *node) const { return node == nullptr || node == top || Object::cast_to<Viewport>(node) != nullptr; }

	// An area that is a part of something solid is for that thing's own use, such as what it picks up from around it, unless it
	// is the place where it can be hurt.
	Node *thing_of(Node *touched, bool is_hurt_box) const {
		if (is_in(touched)) {
			return touched;
		}
		const bool stops_at_solids = is_area(touched) && !is_hurt_box;
		for (Node *at = touched->get_parent(); !is_beyond(at) && !(stops_at_solids && collides(at)); at = at->get_parent()) {
			if (is_in(at)) {
				return at;
			}
		}
		return nullptr;
	}

	// The Hurt Box right under a node that has no shapes of its own: those with shapes are hit there alone.
	static Node *plain_box_under(Node *node, bool &has_others) {
		for (int i = 0; i < node->get_child_count(); i++) {
			Node *child = node->get_child(i);
			if (!CompanionScripts::is_one(child, names().hurt_box)) {
				continue;
			}
			if (!has_shapes(child)) {
				return child;
			}
			has_others = true;
		}
		return nullptr;
	}

public:
	Judge(const StringName &hits_group, const Node *bullets_parent) : group(hits_group), top(bullets_parent) {}

	Verdict of(Node *touched) const {
		Verdict verdict;
		const bool area = is_area(touched);
		if (area && !can_be_noticed(touched)) {
			return verdict;
		}
		const bool is_hurt_box = CompanionScripts::is_one(touched, names().hurt_box);
		const Node *thing = group.is_empty() ? nullptr : thing_of(touched, is_hurt_box);
		if (thing == nullptr) {
			verdict.what = area ? Verdict::PASSED_BY : Verdict::SOLID;
			return verdict;
		}
		verdict.what = Verdict::TARGET;
		verdict.thing = ObjectID(thing->get_instance_id());
		Node *box = is_hurt_box ? touched : nullptr;
		bool has_others = false;
		for (Node *at = touched; box == nullptr && at != nullptr; at = at == thing ? nullptr : at->get_parent()) {
			box = plain_box_under(at, has_others);
		}
		if (box != nullptr) {
			verdict.hurt_box = ObjectID(box->get_instance_id());
		} else if (has_others) {
			verdict.what = Verdict::PASSED_BY;
		}
		return verdict;
	}
};

// Bullets by where they are, with what all those of a cell pass through in this step.
template <class Side>
struct Cells {
	using Vector = typename Side::Vector;

	struct Cell {
		uint64_t key = 0;
		uint32_t round = 0;
		int32_t first = -1;
		int32_t count = 0;
		Bounds<Vector> bounds;
	};

	LocalVector<Cell> table;
	// Of each bullet, the next in its cell.
	LocalVector<int32_t> next;
	LocalVector<uint32_t> used;
	uint32_t round = 0;

	void begin(uint32_t bullets) {
		uint32_t size = 64;
		while (size < bullets * 2) {
			size *= 2;
		}
		if (table.size() < size) {
			table.clear();
			table.resize(size);
			round = 0;
		}
		next.resize(bullets);
		used.clear();
		round++;
		if (round == 0) {
			table.clear();
			table.resize(size);
			round = 1;
		}
	}

	void add(uint32_t bullet, uint64_t key, const Vector &from, const Vector &to) {
		const uint32_t mask = table.size() - 1;
		uint32_t at = uint32_t((key * 0x9E3779B97F4A7C15ull) >> 32) & mask;
		while (table[at].round == round && table[at].key != key) {
			at = (at + 1) & mask;
		}
		Cell &cell = table[at];
		if (cell.round != round) {
			cell.round = round;
			cell.key = key;
			cell.first = -1;
			cell.count = 0;
			cell.bounds = Bounds<Vector>(from, to);
			used.push_back(at);
		}
		cell.bounds.take_in(from);
		cell.bounds.take_in(to);
		next[bullet] = cell.first;
		cell.first = int32_t(bullet);
		cell.count++;
	}
};

struct Boxes {
	uint32_t first = 0;
	uint32_t count = 0;
};

// Kept from step to step, so that a step asks for no memory.
template <class Side>
struct Workshop {
	struct Room {
		Cells<Side> cells;
		LocalVector<uint32_t> near;
		queries::Hits<typename Side::Vector> met;
		HashMap<uint64_t, Verdict> known;
		// By the id of what is near: which of the boxes are around its shapes, none when these are not known.
		HashMap<uint64_t, Boxes> boxes_of;
		LocalVector<Bounds<typename Side::Vector>> boxes;
		LocalVector<Bounds<typename Side::Vector>> around;
		Ref<typename Side::Capsule> capsule;

		Room() { capsule.instantiate(); }
	};
	mutable Room room;
};

template <class Side>
class Step {
	using Vector = typename Side::Vector;
	using Transform = typename Side::Transform;
	using Query = queries::Query<std::conditional_t<Side::IS_2D, In2D, In3D>>;
	using Met = queries::Hit<Vector>;

	Flight &flight;
	const Node *parent;
	Hits &hits;
	typename Workshop<Side>::Room &room;
	queries::Filter filter;
	Judge judge;

	static constexpr double HAIR = 2.0 * Side::HAIR;

	Verdict verdict_on(const Met &met) {
		Node *touched = met.get();
		if (touched == nullptr) {
			Verdict solid;
			solid.what = Verdict::SOLID;
			return solid;
		}
		const uint64_t id = touched->get_instance_id();
		if (const Verdict *known = room.known.getptr(id)) {
			return *known;
		}
		const Verdict verdict = judge.of(touched);
		room.known.insert(id, verdict);
		return verdict;
	}

	bool is_shooters_own(const Bullet &bullet, const Met &met) const {
		const Node *shooter = Object::cast_to<Node>(ObjectDB::get_instance(bullet.shooter));
		Node *touched = met.get();
		if (shooter == nullptr || touched == nullptr) {
			return false;
		}
		// One who holds all the bullets holds the whole world.
		return shooter == touched || (shooter != parent && !shooter->is_ancestor_of(const_cast<Node *>(parent)) && shooter->is_ancestor_of(touched));
	}

	Verdict verdict_for(const Bullet &bullet, const Met &met) {
		Verdict verdict = verdict_on(met);
		if (verdict.what == Verdict::PASSED_BY) {
			return verdict;
		}
		const bool has_passed = verdict.thing.is_valid() && bullet.passed.has(verdict.thing);
		if (has_passed || is_shooters_own(bullet, met)) {
			verdict.what = Verdict::PASSED_BY;
		}
		return verdict;
	}

	void hit(Bullet &bullet, const Verdict &verdict, const Met &met) {
		hits.push_back({ bullet.node, met.node, verdict.thing, verdict.hurt_box, flight.hit_event, flight.damage });
		if (bullet.pierce <= 0) {
			bullet.is_spent = true;
		} else {
			bullet.pierce--;
			bullet.passed.push_back(verdict.thing);
		}
	}

	bool bounce(Bullet &bullet, const Met &met) const {
		constexpr double LEAST_UPRIGHT = 0.05;
		const Vector2 normal = Side::flat(met.normal);
		if (bullet.bounces <= 0 || double(normal.length()) < LEAST_UPRIGHT) {
			return false;
		}
		const Vector2 off = normal.normalized();
		const double into = double(bullet.way.dot(off));
		if (into >= 0.0) {
			return false;
		}
		bullet.bounces--;
		bullet.way = (bullet.way - off * real_t(2.0 * into)).normalized();
		bullet.place = Side::kept(Side::at(bullet.place) + Side::along(off) * real_t(HAIR));
		bullet.has_turned = true;
		bullet.bounced_off = met.node;
		bullet.passed.clear();
		return true;
	}

	// Both of these fly on to what stops the bullet or turns it, and answer how much of its way is left then.
	double fly_as_a_point(Bullet &bullet, double length) {
		Query query(parent, filter);
		const Vector from = Side::at(bullet.place);
		const Vector to = from + Side::along(bullet.way) * real_t(length);
		queries::Hits<Vector> &met = room.met;
		met.clear();
		for (uint32_t i = 0; i < MOST_MET; i++) {
			query.rays(from, to, int(i) + 1, met);
			if (met.size() <= i) {
				break;
			}
			const Verdict verdict = verdict_for(bullet, met[i]);
			if (verdict.what == Verdict::PASSED_BY) {
				continue;
			}
			if (verdict.what == Verdict::TARGET) {
				hit(bullet, verdict, met[i]);
				if (!bullet.is_spent) {
					continue;
				}
			}
			const Met stop = met[i];
			bullet.place = Side::kept(stop.place);
			bullet.is_spent = bullet.is_spent || !bounce(bullet, stop);
			return length - stop.distance;
		}
		bullet.place = Side::kept(to);
		return 0.0;
	}

	// What it touches before it has moved. True when that has stopped or turned it.
	bool stays_at_what_it_touches(Bullet &bullet, const Transform &at) {
		queries::Hits<Vector> &met = room.met;
		bool still_at_the_wall = false;
		for (uint32_t i = 0; i < met.size(); i++) {
			const Verdict verdict = verdict_for(bullet, met[i]);
			if (verdict.what == Verdict::PASSED_BY) {
				continue;
			}
			if (verdict.what == Verdict::TARGET) {
				hit(bullet, verdict, met[i]);
			} else if (bullet.bounced_off.is_valid() && met[i].node == bullet.bounced_off) {
				still_at_the_wall = true;
			} else {
				queries::Hits<Vector> wall;
				wall.push_back(met[i]);
				Query(parent, filter).place_first(flight.shape_rid, at, wall);
				const bool turned = bounce(bullet, wall[0]);
				bullet.is_spent = !turned;
				return true;
			}
			if (bullet.is_spent) {
				return true;
			}
		}
		if (!still_at_the_wall) {
			bullet.bounced_off = ObjectID();
		}
		return false;
	}

	double fly_with_its_shape(Bullet &bullet, double length) {
		const Transform at = Side::turned(bullet.way, bullet.place) * Side::shape_of(flight);
		const Vector from = Side::at(bullet.place);
		const Vector motion = Side::along(bullet.way) * real_t(length);
		queries::Hits<Vector> &met = room.met;
		met.clear();
		Query(parent, filter).touching(flight.shape_rid, at, 0.0, met);
		if (stays_at_what_it_touches(bullet, at)) {
			return length;
		}
		Query query(parent, filter);
		for (uint32_t i = met.size(); i < MOST_MET; i++) {
			query.sweep(flight.shape_rid, at, motion, int(i) + 1, met);
			if (met.size() <= i) {
				break;
			}
			const Verdict verdict = verdict_for(bullet, met[i]);
			if (verdict.what == Verdict::PASSED_BY) {
				continue;
			}
			if (verdict.what == Verdict::TARGET) {
				hit(bullet, verdict, met[i]);
				if (!bullet.is_spent) {
					continue;
				}
			}
			const Met stop = met[i];
			bullet.place = Side::kept(from + Side::along(bullet.way) * real_t(stop.distance));
			bullet.is_spent = bullet.is_spent || !bounce(bullet, stop);
			return length - stop.distance;
		}
		bullet.place = Side::kept(from + motion);
		return 0.0;
	}

	void fly_among_things(Bullet &bullet) {
		double length = flight.speed * bullet.seconds;
		for (int leg = 0; leg < MOST_LEGS; leg++) {
			length = flight.shape_rid.is_valid() ? fly_with_its_shape(bullet, length) : fly_as_a_point(bullet, length);
			if (bullet.is_spent || length <= 0.0) {
				return;
			}
		}
	}

	Vector end_of(const Bullet &bullet) const { return Side::at(bullet.place) + Side::along(bullet.way) * real_t(flight.speed * bullet.seconds); }

	// None for what is not made of a few shapes that are known.
	Boxes boxes_around(const Met &met) {
		Node *touched = met.get();
		const uint64_t id = touched != nullptr ? touched->get_instance_id() : 0;
		if (const Boxes *known = room.boxes_of.getptr(id)) {
			return *known;
		}
		Boxes boxes;
		boxes.first = room.boxes.size();
		auto *collider = Object::cast_to<typename Side::Collider>(touched);
		if (collider == nullptr || !add_boxes(collider)) {
			room.boxes.resize(boxes.first);
		}
		boxes.count = room.boxes.size() - boxes.first;
		room.boxes_of.insert(id, boxes);
		return boxes;
	}

	bool add_boxes(typename Side::Collider *collider) {
		const Transform world = collider->get_global_transform();
		for (const int32_t owner : collider->get_shape_owners()) {
			if (collider->is_shape_owner_disabled(uint32_t(owner))) {
				continue;
			}
			const Transform at = world * collider->shape_owner_get_transform(uint32_t(owner));
			for (int32_t i = 0; i < collider->shape_owner_get_shape_count(uint32_t(owner)); i++) {
				const Ref<typename Side::Shape> shape = collider->shape_owner_get_shape(uint32_t(owner), i);
				Bounds<Vector> bounds;
				if (shape.is_null() || !bounds_of<Side>(shape.ptr(), bounds)) {
					return false;
				}
				room.boxes.push_back(moved<Side>(bounds, at));
			}
		}
		return true;
	}

	// What concerns the bullets of one cell.
	enum Around {
		NOTHING,
		// All of it lies in the boxes around.
		IN_BOXES,
		UNKNOWN,
	};

	Around look_around(Query &query, const Bounds<Vector> &cell) {
		const Bounds<Vector> all = cell.grown(reach());
		const Transform middle = Transform().translated((all.least + all.most) * real_t(0.5));
		queries::Hits<Vector> &met = room.met;
		met.clear();
		query.touching(query.box(all.most - all.least), middle, 0.0, met);
		room.around.clear();
		for (const Met &one : met) {
			if (verdict_on(one).what == Verdict::PASSED_BY) {
				continue;
			}
			const Boxes boxes = boxes_around(one);
			if (boxes.count == 0 || room.around.size() > MOST_BOXES) {
				return UNKNOWN;
			}
			for (uint32_t i = 0; i < boxes.count; i++) {
				if (overlap(room.boxes[boxes.first + i], all)) {
					room.around.push_back(room.boxes[boxes.first + i]);
				}
			}
		}
		return room.around.is_empty() ? NOTHING : IN_BOXES;
	}

	Vector reach() const { return Side::at(Vector3(1, 1, 1)) * real_t(flight.radius + HAIR); }

	bool is_near_a_box(const Bullet &bullet) const {
		const Bounds<Vector> way = Bounds<Vector>(Side::at(bullet.place), end_of(bullet)).grown(reach());
		for (const Bounds<Vector> &box : room.around) {
			if (overlap(way, box)) {
				return true;
			}
		}
		return false;
	}

	bool is_anything_for(Query &query, const RID &shape, const Transform &at, const Bullet *bullet) {
		queries::Hits<Vector> &met = room.met;
		met.clear();
		query.touching(shape, at, 0.0, met);
		for (const Met &one : met) {
			const Verdict verdict = bullet != nullptr ? verdict_for(*bullet, one) : verdict_on(one);
			if (verdict.what != Verdict::PASSED_BY) {
				return true;
			}
		}
		return false;
	}

	bool is_anything_on_the_way_of(Query &query, const Bullet &bullet) {
		const Vector from = Side::at(bullet.place);
		const Vector to = end_of(bullet);
		if (flight.shape_rid.is_valid()) {
			return is_anything_for(query, room.capsule->get_rid(), Side::lying(bullet.way, (from + to) * real_t(0.5)), &bullet);
		}
		Met met;
		return query.ray(from, to, met);
	}

	// All shapes of the flight's bullets on their way through this step lie within it, put along that way.
	void suit_capsule(double longest) {
		const double radius = flight.radius;
		const double height = longest + 2.0 * radius + Side::HAIR;
		if (double(room.capsule->get_radius()) == double(real_t(radius)) && double(room.capsule->get_height()) == double(real_t(height))) {
			return;
		}
		room.capsule->set_height(real_t(height));
		room.capsule->set_radius(real_t(radius));
		room.capsule->set_height(real_t(height));
		// A thread of the physics' own takes the change before it answers.
		Side::Server::get_singleton()->shape_get_type(room.capsule->get_rid());
	}

	void sort_into_cells() {
		double longest = 0.0;
		for (const Bullet &bullet : flight.bullets) {
			longest = MAX(longest, flight.speed * bullet.seconds);
		}
		if (flight.shape_rid.is_valid()) {
			suit_capsule(longest);
		}
		const double side = MAX(Side::CELL, 2.0 * longest);
		room.cells.begin(flight.bullets.size());
		for (uint32_t i = 0; i < flight.bullets.size(); i++) {
			const Bullet &bullet = flight.bullets[i];
			if (bullet.seconds > 0.0) {
				room.cells.add(i, Side::cell(bullet.place, side), Side::at(bullet.place), end_of(bullet));
			}
		}
	}

	void look_ahead(Query &query) {
		room.near.clear();
		for (const uint32_t used : room.cells.used) {
			const typename Cells<Side>::Cell &cell = room.cells.table[used];
			const Around around = cell.count >= LEAST_TOGETHER ? look_around(query, cell.bounds) : UNKNOWN;
			for (int32_t i = cell.first; i >= 0; i = room.cells.next[uint32_t(i)]) {
				Bullet &bullet = flight.bullets[uint32_t(i)];
				const bool may_meet = around == UNKNOWN || (around == IN_BOXES && is_near_a_box(bullet));
				if (!may_meet || !is_anything_on_the_way_of(query, bullet)) {
					bullet.place = Side::kept(end_of(bullet));
				} else {
					room.near.push_back(uint32_t(i));
				}
			}
		}
	}

public:
	Step(Flight &of_flight, const Node *under, Hits &into) :
			flight(of_flight), parent(under), hits(into), room(NativeNames::of<Workshop<Side>>().room), judge(of_flight.hits_group, under) {
		filter.mask = flight.mask;
		filter.areas = !flight.hits_group.is_empty();
		filter.from_inside = true;
	}

	bool take() {
		Query query(parent, filter);
		if (!query) {
			return false;
		}
		room.known.clear();
		room.boxes_of.clear();
		room.boxes.clear();
		sort_into_cells();
		look_ahead(query);
		for (const uint32_t i : room.near) {
			fly_among_things(flight.bullets[i]);
		}
		for (Bullet &bullet : flight.bullets) {
			const double farthest = MAX(Math::abs(double(bullet.place.x)), MAX(Math::abs(double(bullet.place.y)), Math::abs(double(bullet.place.z))));
			bullet.is_spent = bullet.is_spent || !(farthest < FARTHEST);
		}
		return true;
	}
};

} // namespace

bool fly(Flight &flight, const Node *parent, Hits &hits) {
	return flight.side == spots::IN_2D ? Step<Flying2D>(flight, parent, hits).take() : Step<Flying3D>(flight, parent, hits).take();
}

Basis looking_along(const Vector2 &way) {
	const Vector3 back(-way.x, 0, -way.y);
	const Vector3 up(0, 1, 0);
	return Basis(up.cross(back), up, back);
}

} // namespace bullet_sweeps

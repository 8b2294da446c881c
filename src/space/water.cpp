#include "space/water.hpp"

#include "action/spaces.hpp"

#include <godot_cpp/classes/area2d.hpp>
#include <godot_cpp/classes/area3d.hpp>
#include <godot_cpp/classes/box_shape3d.hpp>
#include <godot_cpp/classes/capsule_shape3d.hpp>
#include <godot_cpp/classes/circle_shape2d.hpp>
#include <godot_cpp/classes/collision_polygon2d.hpp>
#include <godot_cpp/classes/collision_polygon3d.hpp>
#include <godot_cpp/classes/collision_shape2d.hpp>
#include <godot_cpp/classes/collision_shape3d.hpp>
#include <godot_cpp/classes/convex_polygon_shape2d.hpp>
#include <godot_cpp/classes/convex_polygon_shape3d.hpp>
#include <godot_cpp/classes/cylinder_shape3d.hpp>
#include <godot_cpp/classes/physics_body2d.hpp>
#include <godot_cpp/classes/physics_body3d.hpp>
#include <godot_cpp/classes/sphere_shape3d.hpp>
#include <godot_cpp/core/math.hpp>

#include <limits>

namespace water {

namespace {

constexpr double ENDLESS = std::numeric_limits<double>::infinity();

// Heights from a lowest to a highest, with up above zero on both sides.
struct Span {
	double low = -ENDLESS;
	double high = ENDLESS;

	static Span none() { return { ENDLESS, -ENDLESS }; }
	bool is_none() const { return !(low <= high); }
	void take_in(double height) {
		low = MIN(low, height);
		high = MAX(high, height);
	}
	void keep_to(double least, double most) {
		low = MAX(low, least);
		high = MIN(high, most);
	}
};

struct In2D {
	using Vector = Vector2;
	using Space = Transform2D;
	using Shape = CollisionShape2D;
	using Polygon = CollisionPolygon2D;
	static constexpr int AXES = 2;
	static Vector up() { return Vector2(0, -1); }
	static Vector without_height(const Vector &place) { return Vector2(place.x, 0); }
	static Vector turned(const Space &space, const Vector &way) { return space.basis_xform(way); }
	static bool has_a_way_back(const Space &space) { return spaces::has_a_way_back(space); }
};

struct In3D {
	using Vector = Vector3;
	using Space = Transform3D;
	using Shape = CollisionShape3D;
	using Polygon = CollisionPolygon3D;
	static constexpr int AXES = 3;
	static Vector up() { return Vector3(0, 1, 0); }
	static Vector without_height(const Vector &place) { return Vector3(place.x, 0, place.z); }
	static Vector turned(const Space &space, const Vector &way) { return space.basis.xform(way); }
	static bool has_a_way_back(const Space &space) { return spaces::has_a_way_back(space.basis); }
};

// A shape as the box round it in its own space, and as a ball where it is one, or an outline.
template <class Side>
struct Body {
	using Vector = typename Side::Vector;
	typename Side::Space space;
	Vector least;
	Vector most;
	double radius = 0.0;
	PackedVector2Array outline;
	bool is_there = false;

	void be(const Vector &from, const Vector &to) {
		least = from;
		most = to;
		is_there = true;
	}
	template <class Points>
	void be_round(const Points &points) {
		for (int64_t i = 0; i < points.size(); i++) {
			const Vector point = Vector(points[i]);
			if (i == 0) {
				be(point, point);
			}
			least = least.min(point);
			most = most.max(point);
		}
	}
};

void read(Body<In2D> &body, const CollisionShape2D *node) {
	const Ref<Shape2D> shape = node->get_shape();
	if (node->is_disabled() || shape.is_null()) {
		return;
	}
	const Rect2 box = shape->get_rect();
	body.be(box.position, box.position + box.size);
	if (const CircleShape2D *circle = Object::cast_to<CircleShape2D>(shape.ptr())) {
		body.radius = double(circle->get_radius());
	} else if (const ConvexPolygonShape2D *convex = Object::cast_to<ConvexPolygonShape2D>(shape.ptr())) {
		body.outline = convex->get_points();
	}
}
void read(Body<In2D> &body, const CollisionPolygon2D *node) {
	if (!node->is_disabled()) {
		body.outline = node->get_polygon();
		body.be_round(body.outline);
	}
}

void read(Body<In3D> &body, const CollisionShape3D *node) {
	const Ref<Shape3D> shape = node->get_shape();
	if (node->is_disabled() || shape.is_null()) {
		return;
	}
	const auto be_upright = [&](double wide, double tall) {
		const Vector3 half(real_t(wide), real_t(tall * 0.5), real_t(wide));
		body.be(-half, half);
	};
	if (const BoxShape3D *box = Object::cast_to<BoxShape3D>(shape.ptr())) {
		body.be(box->get_size() * -0.5f, box->get_size() * 0.5f);
	} else if (const SphereShape3D *sphere = Object::cast_to<SphereShape3D>(shape.ptr())) {
		body.radius = double(sphere->get_radius());
		be_upright(body.radius, body.radius * 2.0);
	} else if (const CapsuleShape3D *capsule = Object::cast_to<CapsuleShape3D>(shape.ptr())) {
		be_upright(double(capsule->get_radius()), double(capsule->get_height()));
	} else if (const CylinderShape3D *cylinder = Object::cast_to<CylinderShape3D>(shape.ptr())) {
		be_upright(double(cylinder->get_radius()), double(cylinder->get_height()));
	} else if (const ConvexPolygonShape3D *convex = Object::cast_to<ConvexPolygonShape3D>(shape.ptr())) {
		body.be_round(convex->get_points());
	}
}
void read(Body<In3D> &body, const CollisionPolygon3D *node) {
	if (node->is_disabled()) {
		return;
	}
	const PackedVector2Array outline = node->get_polygon();
	const real_t half = real_t(node->get_depth()) * 0.5f;
	for (int64_t i = 0; i < outline.size(); i++) {
		const Vector3 front(outline[i].x, outline[i].y, half);
		const Vector3 back(outline[i].x, outline[i].y, -half);
		if (i == 0) {
			body.be(back, front);
		}
		body.least = body.least.min(back);
		body.most = body.most.max(front);
	}
}

template <class Side, class Act>
void for_each_shape(const Node *of, Act act) {
	const int count = of->get_child_count();
	for (int i = 0; i < count; i++) {
		Body<Side> body;
		const Node *child = of->get_child(i);
		if (const auto *shape = Object::cast_to<typename Side::Shape>(child)) {
			body.space = spaces::world_of(shape);
			read(body, shape);
		} else if (const auto *polygon = Object::cast_to<typename Side::Polygon>(child)) {
			body.space = spaces::world_of(polygon);
			read(body, polygon);
		}
		if (body.is_there && Side::has_a_way_back(body.space)) {
			act(body);
		}
	}
}

// How high and low the box round a shape reaches.
template <class Side>
Span reach_of(const Body<Side> &body) {
	using Vector = typename Side::Vector;
	const Vector half = (body.most - body.least) * 0.5f;
	const double middle = double(body.space.xform(body.least + half).dot(Side::up()));
	double extent = 0.0;
	for (int axis = 0; axis < Side::AXES; axis++) {
		Vector along;
		along[axis] = half[axis];
		extent += Math::abs(double(Side::turned(body.space, along).dot(Side::up())));
	}
	return { middle - extent, middle + extent };
}

Span through_outline(const Body<In2D> &body, real_t x) {
	Span span = Span::none();
	const int64_t count = body.outline.size();
	for (int64_t i = 0; i < count; i++) {
		const Vector2 from = body.space.xform(body.outline[i]);
		const Vector2 to = body.space.xform(body.outline[(i + 1) % count]);
		if ((from.x <= x) != (to.x <= x)) {
			const real_t share = (x - from.x) / (to.x - from.x);
			span.take_in(-double(Math::lerp(from.y, to.y, share)));
		}
	}
	return span;
}

// What of the upright line through a place lies inside the shape.
template <class Side>
Span through(const Body<Side> &body, const typename Side::Vector &place) {
	using Vector = typename Side::Vector;
	if constexpr (std::is_same_v<Side, In2D>) {
		if (!body.outline.is_empty()) {
			return through_outline(body, place.x);
		}
	}
	const auto back = body.space.affine_inverse();
	const Vector from = back.xform(Side::without_height(place));
	const Vector way = Side::turned(back, Side::up());
	Span span;
	if (body.radius > 0.0) {
		const double a = double(way.dot(way));
		const double half_b = double(from.dot(way));
		const double root = half_b * half_b - a * (double(from.dot(from)) - body.radius * body.radius);
		if (root < 0.0) {
			return Span::none();
		}
		span.keep_to((-half_b - Math::sqrt(root)) / a, (-half_b + Math::sqrt(root)) / a);
		return span;
	}
	for (int axis = 0; axis < Side::AXES; axis++) {
		const double least = double(body.least[axis]) - double(from[axis]);
		const double most = double(body.most[axis]) - double(from[axis]);
		const double step = double(way[axis]);
		if (step == 0.0) {
			span = least <= 0.0 && most >= 0.0 ? span : Span::none();
		} else {
			span.keep_to(MIN(least / step, most / step), MAX(least / step, most / step));
		}
	}
	return span;
}

template <class Side, class Placed>
double depth_on(const Placed *someone, const Node *area) {
	const auto place = spaces::world_of(someone).get_origin();
	Span reach = Span::none();
	for_each_shape<Side>(someone, [&](const Body<Side> &body) {
		const Span of_shape = reach_of(body);
		reach.take_in(of_shape.low);
		reach.take_in(of_shape.high);
	});
	if (reach.is_none()) {
		reach.take_in(double(place.dot(Side::up())));
	}
	double depth = 0.0;
	for_each_shape<Side>(area, [&](const Body<Side> &body) {
		const Span wet = through(body, place);
		if (!wet.is_none() && wet.low <= reach.high) {
			depth = MAX(depth, wet.high - reach.low);
		}
	});
	return depth;
}

bool has_a_shape(const Node *area) {
	bool any = false;
	const auto note = [&](const auto &) { any = true; };
	for_each_shape<In2D>(area, note);
	for_each_shape<In3D>(area, note);
	return any;
}

template <class Area>
Node *area_in(SCMachineBase *machine, const NodePath &path) {
	return path.is_empty() ? Object::cast_to<Area>(machine->target_node()) : verbs::first_of<Area>(machine->node_at(path));
}

} // namespace

Node *area_at(SCMachineBase *machine, const NodePath &path, bool in_2d) {
	return in_2d ? area_in<Area2D>(machine, path) : area_in<Area3D>(machine, path);
}

bool is_monitoring(const Node *area) {
	if (const Area2D *area_2d = Object::cast_to<Area2D>(area)) {
		return area_2d->is_monitoring();
	}
	const Area3D *area_3d = Object::cast_to<Area3D>(area);
	return area_3d != nullptr && area_3d->is_monitoring();
}

bool feels(Node *area, Node *body) {
	if (!is_monitoring(area) || !area->is_inside_tree() || !body->is_inside_tree()) {
		return false;
	}
	if (const Area2D *area_2d = Object::cast_to<Area2D>(area)) {
		return Object::cast_to<PhysicsBody2D>(body) != nullptr && area_2d->overlaps_body(body);
	}
	const Area3D *area_3d = Object::cast_to<Area3D>(area);
	return area_3d != nullptr && Object::cast_to<PhysicsBody3D>(body) != nullptr && area_3d->overlaps_body(body);
}

double depth_of(const Node *someone, const Node *area) {
	if (!someone->is_inside_tree() || !area->is_inside_tree()) {
		return 0.0;
	}
	const Node2D *in_2d = Object::cast_to<Node2D>(someone);
	const Node3D *in_3d = Object::cast_to<Node3D>(someone);
	if (in_2d != nullptr && Object::cast_to<Area2D>(area) != nullptr) {
		return depth_on<In2D>(in_2d, area);
	}
	return in_3d != nullptr && Object::cast_to<Area3D>(area) != nullptr ? depth_on<In3D>(in_3d, area) : 0.0;
}

double depth_or_warn(SCMachineBase *machine, const Object *kind, const Node *someone, const NodePath &path, const StringName &setting, const char *instead) {
	const bool in_2d = places::is_2d(someone);
	const Node *area = area_at(machine, path, in_2d);
	const String shown = verbs::setting_in_inspector(setting);
	if (area == nullptr) {
		verbs::warn(machine, kind,
				vformat("there is no %s at %s, %s. Pick an %s with a collision shape under %s, or a node that holds one.", in_2d ? "Area2D" : "Area3D",
						path.is_empty() ? String("Self") : String(path), instead, in_2d ? "Area2D" : "Area3D", shown));
		return 0.0;
	}
	if (!has_a_shape(area)) {
		verbs::warn(machine, kind, vformat("%s has no collision shape, %s. Give it one, or pick another under %s.", area->get_name(), instead, shown));
		return 0.0;
	}
	return depth_of(someone, area);
}

} // namespace water

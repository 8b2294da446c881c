#include "kinds/combat/swings.hpp"

#include "action/places.hpp"
#include "action/spaces.hpp"
#include "action/values.hpp"
#include "character/body_keys.hpp"
#include "character/facing_along.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/collision_shape2d.hpp>
#include <godot_cpp/classes/collision_shape3d.hpp>

namespace swings {

namespace {

struct SwingNames {
	StringName script = "hit_box";
	StringName move_script = "quillstead_move";
	StringName headings = "_heading";
	StringName swing = "Swing";
	StringName swing_over = "SwingOver";
	StringName swung_weapon = "SwungWeapon";
	// Where the picture points in the middle of the swing, and how far to either side it goes.
	StringName middle = "quillstead_swing_middle";
	StringName arc = "quillstead_swing_arc";

	StringName damage = "damage";
	StringName knockback = "knockback";
	StringName hurts_group = "hurts_group";
	StringName attacker = "attacker";
	StringName hit_again = "hit_again";
	StringName shape = "shape";
	StringName on = "on";
	StringName strike = "strike";

	StringName size = "size";
	StringName height = "height";
	StringName radius = "radius";
};

const SwingNames &names() {
	return NativeNames::of<SwingNames>();
}

// Closer than this there is no way to go.
constexpr double TOO_CLOSE = 0.001;
constexpr real_t NO_SIDE = 0.001f;
// Each thing once, for as long as it is on.
constexpr double NEVER_AGAIN = -1.0;
// A shape of no size touches nothing.
constexpr double LEAST_REACH_2D = 3.2;
constexpr double LEAST_REACH_3D = 0.1;
// How wide a swing is for its reach.
constexpr double SHARE_TO_THE_SIDES = 0.75;
// How far the picture goes to either side, in radians.
constexpr double EITHER_WAY = 1.0;

template <class CollisionShape>
CollisionShape *first_shape(const Node *body) {
	for (int i = 0; i < body->get_child_count(); i++) {
		auto *holder = Object::cast_to<CollisionShape>(body->get_child(i));
		if (holder != nullptr && holder->get_shape().is_valid()) {
			return holder;
		}
	}
	return nullptr;
}

Vector2 middle_of(Node2D *body) {
	const auto *shape = first_shape<CollisionShape2D>(body);
	return shape != nullptr ? shape->get_global_position() : body->get_global_position();
}

Vector3 middle_of(Node3D *body) {
	const auto *shape = first_shape<CollisionShape3D>(body);
	return shape != nullptr ? shape->get_global_position() : body->get_global_position();
}

bool last_moved(const Node2D *body, Vector2 &heading) {
	const Ref<Script> script = CompanionScripts::script(names().move_script);
	const Dictionary headings = script.is_valid() ? Dictionary(script->get(names().headings)) : Dictionary();
	const Variant held = headings.get(int64_t(body->get_instance_id()), Variant());
	heading = held.get_type() == Variant::VECTOR2 ? Vector2(held) : Vector2();
	return heading.is_finite() && !heading.is_zero_approx();
}

Vector2 facing(const Node2D *body) {
	Vector2 heading;
	const bool has_moved = last_moved(body, heading);
	if (body->has_meta(BodyKeys::shared().side_on)) {
		// It may have fallen last, and still faces to one side.
		const bool has_turned = body->has_meta(BodyKeys::shared().faces_left);
		const bool left = has_turned ? facing_along::faces_left(body) : has_moved && heading.x < -NO_SIDE;
		return Vector2(left ? -1.0f : 1.0f, 0.0f);
	}
	if (has_moved) {
		return heading.normalized();
	}
	const double angle = double(body->get_global_rotation());
	return Vector2(real_t(Math::cos(angle)), real_t(Math::sin(angle)));
}

Vector3 facing(const Node3D *body) {
	const Vector3 ahead = -body->get_global_transform().basis.get_column(2);
	return ahead.is_finite() && !ahead.is_zero_approx() ? ahead.normalized() : Vector3(0, 0, -1);
}

Transform2D aimed(const Vector2 &at, const Vector2 &heading) {
	return Transform2D(heading.angle(), at);
}

Transform3D aimed(const Vector3 &at, const Vector3 &heading) {
	const Vector3 up = Math::abs(heading.y) < 0.99f ? Vector3(0, 1, 0) : Vector3(1, 0, 0);
	const Vector3 back = -heading;
	const Vector3 right = up.cross(back).normalized();
	return Transform3D(Basis(right, back.cross(right), back), at);
}

// In the swinger's own space, in which it goes along with it. Its size has no say.
Transform2D own_place(Node2D *swinger, const Transform2D &world) {
	const Transform2D of = swinger->get_global_transform();
	return spaces::has_a_way_back(of) ? of.affine_inverse() * world : world;
}

Transform3D own_place(Node3D *swinger, const Transform3D &world) {
	const Transform3D of = swinger->get_global_transform();
	return spaces::has_a_way_back(of.basis) ? of.affine_inverse() * world : world;
}

double at_least(double reach, bool in_2d) {
	return MAX(reach, in_2d ? LEAST_REACH_2D : LEAST_REACH_3D);
}

// How tall the swinger is, by its first shape: what stands in front of it is hit at any height.
template <class CollisionShape>
double height_of(const Node *body) {
	const auto *holder = first_shape<CollisionShape>(body);
	if (holder == nullptr) {
		return 0.0;
	}
	const Ref<Resource> shape = holder->get_shape();
	const Variant size = shape->get(names().size);
	if (values::is_vector(size)) {
		return double(Vector3(places::as_vector3(size)).y);
	}
	const Variant height = shape->get(names().height);
	return values::is_number(height) ? double(height) : values::as_number(shape->get(names().radius)) * 2.0;
}

Vector2 size_of_swing(double reach, const Node2D *swinger) {
	const bool side_on = swinger->has_meta(BodyKeys::shared().side_on);
	return Vector2(real_t(reach), real_t(MAX(reach * SHARE_TO_THE_SIDES, side_on ? height_of<CollisionShape2D>(swinger) : 0.0)));
}

Vector3 size_of_swing(double reach, const Node3D *swinger) {
	return Vector3(real_t(reach * SHARE_TO_THE_SIDES), real_t(MAX(reach, height_of<CollisionShape3D>(swinger))), real_t(reach));
}

} // namespace

template <class Side>
typename Side::Vector turn_and_head(typename Side::Placed *swinger, Node *aim, double reach) {
	using Vector = typename Side::Vector;
	auto *target = Object::cast_to<typename Side::Placed>(aim);
	if (target != nullptr && target != swinger && target->is_inside_tree()) {
		const Vector way = target->get_global_position() - swinger->get_global_position();
		const double distance = double(way.length());
		if (distance > TOO_CLOSE && distance <= reach) {
			const Vector heading = way.normalized();
			facing_along::turn(swinger, heading, 1.0);
			return heading;
		}
	}
	return facing(swinger);
}

template <class Side>
Node *make(typename Side::Placed *swinger, const Weapon &weapon, const typename Side::Vector &heading) {
	const Ref<Script> script = CompanionScripts::script(names().script);
	if (script.is_null()) {
		return nullptr;
	}
	const double reach = at_least(weapon.reach, Side::IS_2D);
	Ref<typename Side::Box> shape;
	shape.instantiate();
	shape->set_size(size_of_swing(reach, swinger));
	auto *box = memnew(typename Side::Area);
	box->set_name(names().swing);
	box->set_script(script);
	box->set_collision_layer(0);
	box->set_collision_mask(0xFFFFFFFF);
	box->set(names().damage, weapon.damage);
	box->set(names().knockback, weapon.knockback);
	box->set(names().hurts_group, weapon.hurts_group);
	box->set(names().attacker, swinger);
	box->set(names().hit_again, NEVER_AGAIN);
	box->set(names().shape, shape);
	box->set(names().on, true);
	// From the middle of the swinger to as far as it reaches.
	const auto middle = middle_of(swinger) + heading * real_t(reach / 2.0);
	box->set_transform(own_place(swinger, aimed(middle, heading)));
	return box;
}

template Vector2 turn_and_head<In2D>(Node2D *, Node *, double);
template Vector3 turn_and_head<In3D>(Node3D *, Node *, double);
template Node *make<In2D>(Node2D *, const Weapon &, const Vector2 &);
template Node *make<In3D>(Node3D *, const Weapon &, const Vector3 &);

Node *make_picture(Node2D *swinger, const Weapon &weapon, const Vector2 &heading) {
	const Vector2 size = weapon.icon.is_valid() ? weapon.icon->get_size() : Vector2();
	const real_t longest = MAX(size.x, size.y);
	if (!(longest > 0.0f)) {
		return nullptr;
	}
	const double reach = at_least(weapon.reach, true);
	const bool left = heading.x < 0.0f;
	auto *picture = memnew(Sprite2D);
	picture->set_name(names().swung_weapon);
	picture->set_texture(weapon.icon);
	picture->set_flip_v(left);
	// Whoever turns the character flips the pictures right below it. This one is turned already.
	picture->set_meta(BodyKeys::shared().art_faces_left, facing_along::faces_left(swinger));
	const real_t scale = real_t(MIN(1.0, reach / double(longest)));
	picture->set_transform(own_place(swinger, aimed(middle_of(swinger), heading)));
	picture->set_scale(picture->get_scale() * scale);
	picture->set_offset(Vector2(real_t(reach / 2.0) / scale, 0.0f));
	picture->set_meta(names().middle, picture->get_rotation());
	picture->set_meta(names().arc, left ? -EITHER_WAY : EITHER_WAY);
	sweep(picture, 0.0);
	return picture;
}

Node *make_picture(Node3D *, const Weapon &, const Vector3 &) {
	return nullptr;
}

void sweep(Sprite2D *picture, double share) {
	const double arc = body_keys::number(picture, names().arc, 0.0);
	picture->set_rotation(body_keys::number(picture, names().middle, 0.0) + arc * (share * 2.0 - 1.0));
}

void strike(Node *box) {
	if (CompanionScripts::is_one(box, names().script)) {
		box->call(names().strike);
	}
}

void switch_off(Node *box) {
	box->set(names().on, false);
	take_away(box);
}

void take_away(Node *node) {
	node->queue_free();
	// Another swing may begin before this one is gone, and is called by that name then.
	node->set_name(names().swing_over);
}

} // namespace swings

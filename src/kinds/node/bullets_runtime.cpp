// The compiled runtime of Bullet Pattern: who fires, where to, and which bullets. Their flight is the business of space/bullet_flight.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "action/told_path.hpp"
#include "action/weak.hpp"
#include "kinds/node/bullets.hpp"
#include "kinds/node/own_ways.hpp"
#include "machine/native_names.hpp"
#include "space/bullet_flight.hpp"
#include "space/newcomers.hpp"

#include <godot_cpp/classes/canvas_layer.hpp>
#include <godot_cpp/classes/character_body2d.hpp>
#include <godot_cpp/classes/character_body3d.hpp>
#include <godot_cpp/classes/collision_object2d.hpp>
#include <godot_cpp/classes/collision_object3d.hpp>
#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/classes/rigid_body2d.hpp>
#include <godot_cpp/classes/rigid_body3d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

using Kind = SCBulletPatternAction;

constexpr int64_t MOST_IN_A_SHOT = 1000;
// So that a game that stood still for a moment does not fire everything at once.
constexpr int MOST_SHOTS_AT_ONCE = 8;
// What a sum of many frames may be short of the seconds they make.
constexpr double HAIR = 1.0e-6;
constexpr double WHOLE_RING = 360.0;
constexpr int64_t NO_GAP_YET = -1;

struct Names {
	StringName script = "quillstead_bullets";
	StringName look_after = "look_after";
	StringName play = "play";
	StringName waited = "waited";
	StringName shots = "shots";
	StringName gap = "gap";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// What one shot leaves for the next.
struct Before {
	int64_t shots = 0;
	int64_t gap_at = NO_GAP_YET;
};

// Shots of an action that fires one alone go on from the one before, though its state was left in between. By machine and action.
struct Remembered {
	struct Row {
		ObjectID action;
		Before before;
	};
	mutable HashMap<uint64_t, LocalVector<Row>> by_machine;
	mutable uint32_t most = 64;

	Before &of(const SCMachineBase *machine, const SCMachineAction *action) const {
		if (uint32_t(by_machine.size()) >= most) {
			forget_the_gone();
		}
		LocalVector<Row> &rows = by_machine[machine->get_instance_id()];
		const ObjectID id = ObjectID(action->get_instance_id());
		for (Row &row : rows) {
			if (row.action == id) {
				return row.before;
			}
		}
		rows.push_back({ id, Before() });
		return rows[rows.size() - 1].before;
	}

	void forget_the_gone() const {
		LocalVector<uint64_t> gone;
		for (const KeyValue<uint64_t, LocalVector<Row>> &entry : by_machine) {
			if (ObjectDB::get_instance(ObjectID(entry.key)) == nullptr) {
				gone.push_back(entry.key);
			}
		}
		for (const uint64_t id : gone) {
			by_machine.erase(id);
		}
		most = MAX(64u, uint32_t(by_machine.size()) * 2);
	}
};

bool in_2d(const Node *node) {
	return Object::cast_to<Node2D>(node) != nullptr;
}
bool in_3d(const Node *node) {
	return Object::cast_to<Node3D>(node) != nullptr;
}

Vector3 place_of(const Node *node) {
	if (const Node2D *node_2d = Object::cast_to<Node2D>(node)) {
		const Vector2 place = node_2d->get_global_position();
		return Vector3(place.x, place.y, 0);
	}
	return Object::cast_to<Node3D>(node)->get_global_position();
}

// As the camera looking down sees it.
Vector2 from_above(const Node *node, const Vector3 &vector) {
	return in_2d(node) ? Vector2(vector.x, vector.y) : Vector2(vector.x, vector.z);
}

Vector2 front_of(const Node *node) {
	if (in_2d(node)) {
		const Vector2 front = own_ways::to_world(node, Vector2(1, 0));
		return front.is_zero_approx() ? Vector2(1, 0) : front.normalized();
	}
	// One that looks straight down or up has its front where the top of its head or its chin points.
	for (const Vector3 &own : { Vector3(0, 0, -1), Vector3(0, 1, 0) }) {
		constexpr real_t LEAST = 0.001f;
		const Vector2 front = from_above(node, own_ways::to_world(node, own));
		if (front.length() > LEAST) {
			return front.normalized();
		}
	}
	return Vector2(0, -1);
}

bool moves_by_itself(const Node *node) {
	return Object::cast_to<CharacterBody2D>(node) != nullptr || Object::cast_to<CharacterBody3D>(node) != nullptr ||
			Object::cast_to<RigidBody2D>(node) != nullptr || Object::cast_to<RigidBody3D>(node) != nullptr;
}

bool collides(const Node *node) {
	return Object::cast_to<CollisionObject2D>(node) != nullptr || Object::cast_to<CollisionObject3D>(node) != nullptr;
}

// Whose bullets they are: the outermost character or rigid body that the node is a part of, such as the vehicle that a gunner rides
// in, else the nearest body or area, else the node itself.
const Node *shooter_of(const Node *from, const Node *scene) {
	const Node *outermost = nullptr;
	const Node *nearest = nullptr;
	for (const Node *at = from; at != nullptr && at != scene; at = at->get_parent()) {
		if (moves_by_itself(at)) {
			outermost = at;
		}
		if (nearest == nullptr && collides(at)) {
			nearest = at;
		}
	}
	if (outermost != nullptr) {
		return outermost;
	}
	return nearest != nullptr ? nearest : from;
}

// What the bullets go under: the scene being played, or the layer or the view of its own that the shooter lives in.
Node *parent_for(SCMachineBase *machine, const Node *from) {
	const Node *below = from;
	Node *at = from->get_parent();
	while (at != nullptr && Object::cast_to<Viewport>(at) == nullptr && (Object::cast_to<CanvasLayer>(at) == nullptr || !in_2d(from))) {
		below = at;
		at = at->get_parent();
	}
	const SceneTree *tree = from->get_tree();
	if (at != nullptr && Object::cast_to<Window>(at) == nullptr) {
		return at;
	}
	if (tree->get_current_scene() != nullptr || below == from || below == shooter_of(from, nullptr)) {
		return newcomers::scene_of(machine);
	}
	// Without a scene being played, what lies at the top stands for it.
	return const_cast<Node *>(below);
}

// The engine finds a name that is not taken by counting up from the first, which takes ever longer the more there are.
void give_a_name(Node *made, const Node *parent) {
	static uint32_t serial = 0;
	const String name = made->get_name();
	// One that is added late is not there yet.
	if (parent->has_node(NodePath(name)) || Engine::get_singleton()->is_in_physics_frame()) {
		serial++;
		made->set_name(vformat("%s%d", name, serial));
	}
}

class Shot {
	SCMachineBase *machine;
	SCMachineAction *action;
	const Kind *kind;
	String name;
	Node *from = nullptr;
	bool is_2d = false;
	String from_name;
	Vector3 center;
	Vector2 aim;
	double speed = 0.0;
	double lifetime = 0.0;
	double start_out = 0.0;
	bullet_flight::Order order;
	LocalVector<Vector2> ways;

	void warn(Kind::Wrong which, const String &sentence) const { verbs::warn_whole(machine, action, which, sentence); }

	bool has_bullets() const {
		if (kind->scene.is_null()) {
			warn(Kind::NO_SCENE, vformat("Bullet Pattern on %s has no bullet scene picked, so nothing was fired. Pick one beside Scene.", name));
			return false;
		}
		if (kind->count < 1) {
			warn(Kind::NO_COUNT, vformat("Bullet Pattern on %s has a Count of %d, so nothing was fired. Give Count 1 or more.", name, kind->count));
			return false;
		}
		return true;
	}

	// Where it fires from and where to.
	String trouble_with_from() const {
		if (from == nullptr) {
			return vformat("there is no node at %s", words::told_path(kind->from_path));
		}
		if (!in_2d(from) && !in_3d(from)) {
			return vformat("%s is a %s, which has no place in the world", from->get_name(), from->get_class());
		}
		return from->is_inside_tree() ? String() : vformat("%s is not in the scene", from->get_name());
	}

	bool finds_from() {
		from = values::node_of(machine, kind->from_path);
		const String trouble = trouble_with_from();
		if (!trouble.is_empty()) {
			warn(Kind::NO_FROM,
					vformat("Bullet Pattern on %s: %s, so nothing was fired. Pick a 2D or 3D node beside From.", machine->name_in_messages(), trouble));
			return false;
		}
		is_2d = in_2d(from);
		from_name = from->get_name();
		center = place_of(from);
		return checked::sound_or_warn(machine, action, center, verbs::name_of<&Kind::from_path>());
	}

	String trouble_with_target(const Node *target) const {
		if (kind->target_path.is_empty()) {
			return "nobody is picked";
		}
		if (target == nullptr) {
			return vformat("there is no node at %s", words::told_path(kind->target_path));
		}
		if (!in_2d(target) && !in_3d(target)) {
			return vformat("%s is a %s, which has no place in the world", target->get_name(), target->get_class());
		}
		if (in_2d(target) != in_2d(from)) {
			return vformat("%s is a %s node and %s a %s one", target->get_name(), in_2d(target) ? "2D" : "3D", from->get_name(), in_2d(from) ? "2D" : "3D");
		}
		return target->is_inside_tree() ? String() : vformat("%s is not in the scene", target->get_name());
	}

	// A zero when there is no way to go.
	Vector2 way_to_target() const {
		const Node *target = kind->target_path.is_empty() ? nullptr : values::node_of(machine, kind->target_path);
		const String trouble = trouble_with_target(target);
		if (!trouble.is_empty()) {
			warn(Kind::NO_TARGET,
					vformat("Bullet Pattern on %s aims At A Node, but %s, so it fires the way From faces instead. Pick who to fire at beside Target.", name,
							trouble));
			return Vector2();
		}
		return from_above(from, place_of(target) - center);
	}

	Vector2 way_along_direction() const {
		if (!checked::is_sound(kind->direction) || kind->direction.is_zero_approx()) {
			warn(Kind::NO_DIRECTION,
					vformat("Bullet Pattern on %s has a Direction of %s, which points nowhere, so it fires the way From faces instead. Give Direction a "
							"length.",
							name, words::text_of(kind->direction)));
			return Vector2();
		}
		return kind->direction;
	}

	Vector2 middle() {
		Vector2 way;
		switch (checked::choice<&Kind::aim>(machine, action, Kind::THE_WAY_IT_FACES)) {
			case Kind::AT_A_NODE:
				way = way_to_target();
				break;
			case Kind::ALONG_A_DIRECTION:
				way = way_along_direction();
				break;
			case Kind::AN_ANGLE:
				return Vector2::from_angle(real_t(Math::deg_to_rad(checked::number<&Kind::angle>(machine, action))));
			default:
				break;
		}
		return way.is_zero_approx() || !way.is_finite() ? front_of(from) : way.normalized();
	}

	int64_t count_of_bullets() const {
		if (kind->count > MOST_IN_A_SHOT) {
			warn(Kind::TOO_MANY_AT_ONCE,
					vformat("Bullet Pattern on %s has a Count of %d, so only %d were fired. Give Count no more than that, and fire more often.", name,
							kind->count, MOST_IN_A_SHOT));
		}
		return MIN(kind->count, MOST_IN_A_SHOT);
	}

	int64_t gap_in(int64_t count) const {
		const int64_t gap = MAX(kind->gap, int64_t(0));
		if (gap < count) {
			return gap;
		}
		warn(Kind::GAP_TOO_WIDE,
				vformat("Bullet Pattern on %s has a Gap of %d in a pattern of %d, which would leave nothing to fire, so %d is left out instead.", name, gap,
						count, count - 1));
		return count - 1;
	}

	// Another place than the last time, when there is one.
	static int64_t place_of_gap(int64_t places, int64_t last) {
		if (places < 2) {
			return 0;
		}
		if (last < 0 || last >= places) {
			return UtilityFunctions::randi_range(0, places - 1);
		}
		const int64_t drawn = UtilityFunctions::randi_range(0, places - 2);
		return drawn >= last ? drawn + 1 : drawn;
	}

	void lay_out(Before &before) {
		const int64_t count = count_of_bullets();
		const double spread = CLAMP(checked::number<&Kind::spread>(machine, action), -WHOLE_RING, WHOLE_RING);
		const bool is_ring = Math::abs(spread) >= WHOLE_RING;
		const double apart = is_ring ? spread / double(count) : spread / double(MAX(count - 1, int64_t(1)));
		// A ring begins at the aim, so that one bullet goes there.
		const double first = is_ring || count < 2 ? 0.0 : -spread / 2.0;
		const double turned = Math::fmod(checked::number<&Kind::turn_each_shot>(machine, action) * double(before.shots), WHOLE_RING);
		const double wobble = Math::abs(checked::number<&Kind::wobble>(machine, action));
		const int64_t gap = gap_in(count);
		int64_t gap_at = NO_GAP_YET;
		if (gap > 0) {
			gap_at = place_of_gap(is_ring ? count : count - gap + 1, before.gap_at);
		}
		for (int64_t i = 0; i < count; i++) {
			const int64_t into_gap = (i - gap_at + count) % count;
			if (gap > 0 && into_gap < gap) {
				continue;
			}
			const double strays = wobble > 0.0 ? UtilityFunctions::randf_range(-wobble, wobble) : 0.0;
			const double degrees = first + apart * double(i) + turned + strays;
			ways.push_back(aim.rotated(real_t(Math::deg_to_rad(degrees))));
		}
		before.shots++;
		before.gap_at = gap_at;
	}

	bool has_numbers() {
		speed = checked::number<&Kind::speed>(machine, action);
		lifetime = checked::number<&Kind::lifetime>(machine, action);
		start_out = checked::number<&Kind::start_out>(machine, action);
		if (lifetime > 0.0) {
			return true;
		}
		warn(Kind::NO_LIFETIME,
				vformat("Bullet Pattern on %s has a Lifetime of %s, so nothing was fired. Give Lifetime some seconds.", name, words::number(lifetime)));
		return false;
	}

	void write_order() {
		order.scene = kind->scene->get_instance_id();
		order.hits_group = kind->hits_group;
		order.hit_event = kind->hit_event;
		order.damage = checked::number<&Kind::damage>(machine, action);
		order.speed = Math::abs(speed);
		order.lifetime = lifetime;
		order.homing = Math::deg_to_rad(Math::abs(checked::number<&Kind::homing>(machine, action)));
		order.bounces = MAX(kind->bounces, int64_t(0));
		order.pierce = MAX(kind->pierce, int64_t(0));
		if (kind->hits_group.is_empty()) {
			warn(Kind::NO_GROUP,
					vformat("Bullet Pattern on %s has nothing picked beside Hits Group, so its bullets hurt nothing and only something solid stops them. Pick "
							"what "
							"they hit, such as the player.",
							name));
		}
	}

	bool is_a_bullet(const Node *made) const {
		if (made != nullptr && (is_2d ? in_2d(made) : in_3d(made))) {
			return true;
		}
		const String path = kind->scene->get_path();
		const String named = !path.is_empty() ? path.get_file() : made != nullptr ? String(made->get_name()) : String("that is picked");
		if (made == nullptr || (!in_2d(made) && !in_3d(made))) {
			warn(Kind::NO_BULLET,
					vformat("Bullet Pattern on %s: the bullet scene %s is not a 2D or 3D node at its top, so nothing was fired. Build the bullet on an Area2D "
							"in a "
							"2D game or an Area3D in a 3D one.",
							name, named));
		} else {
			warn(Kind::OTHER_SIDE,
					vformat("Bullet Pattern on %s fires %s bullets from %s, a %s node, so they cannot fly where it is. Use an Area2D bullet in a 2D game and "
							"an "
							"Area3D one in a 3D game.",
							name, in_2d(made) ? "2D" : "3D", from_name, is_2d ? "2D" : "3D"));
		}
		return false;
	}

	// Any of these may run a game's code: a bullet's own script, as it is made and as it is added.
	void fire_all() {
		const StillHere here(machine);
		const Weak<Node> parent(parent_for(machine, from));
		const Weak<Node> shooter(shooter_of(from, parent.get()));
		const Ref<PackedScene> scene = kind->scene;
		const Ref<AudioStream> sound = kind->sound;
		const StringName bus = kind->sound_bus;
		for (uint32_t i = 0; i < ways.size() && parent.get() != nullptr; i++) {
			const Weak<Node> made(scene->can_instantiate() ? scene->instantiate() : nullptr);
			if (!here || parent.get() == nullptr || (i == 0 && !is_a_bullet(made.get()))) {
				if (made.get() != nullptr) {
					made.get()->queue_free();
				}
				return;
			}
			if (made.get() == nullptr) {
				continue;
			}
			fire(made, parent.get(), shooter, ways[i]);
			if (!here) {
				break;
			}
		}
		if (parent.get() == nullptr || !parent.get()->is_inside_tree()) {
			return;
		}
		CompanionScripts::call(names().script, names().look_after, Array::make(parent.get()->get_tree()));
		if (sound.is_valid() && parent.get() != nullptr) {
			const Variant place = is_2d ? Variant(Vector2(center.x, center.y)) : Variant(center);
			CompanionScripts::call(names().script, names().play, Array::make(parent.get(), place, sound, bus));
		}
	}

	void fire(const Weak<Node> &made, Node *parent, const Weak<Node> &shooter, const Vector2 &out) {
		const Vector2 way = speed < 0.0 ? -out : out;
		const Vector2 off = out * real_t(start_out);
		const Vector3 place = center + (in_2d(made.get()) ? Vector3(off.x, off.y, 0) : Vector3(off.x, 0, off.y));
		order.shooter = shooter.get() != nullptr ? ObjectID(shooter.get()->get_instance_id()) : ObjectID();
		newcomers::note_maker(machine, made.get());
		const Weak<Node> under(parent);
		bullet_flight::put(made.get(), parent, place, way);
		give_a_name(made.get(), parent);
		newcomers::add(parent, made.get());
		if (made.get() != nullptr && !made.get()->is_queued_for_deletion() && under.get() != nullptr) {
			bullet_flight::launch(made.get(), under.get(), place, way, order);
		}
	}

	bool has_room() const {
		if (bullet_flight::count() + int64_t(ways.size()) <= bullet_flight::MOST) {
			return true;
		}
		warn(Kind::TOO_MANY_IN_FLIGHT,
				vformat("Bullet Pattern on %s: %d bullets are in flight, which is as many as there can be, so this shot was not fired. Fire less often, or "
						"give them "
						"a shorter Lifetime.",
						name, bullet_flight::count()));
		return false;
	}

public:
	Shot(SCMachineBase *of_machine, SCMachineAction *of_action, const Kind *of_kind) :
			machine(of_machine), action(of_action), kind(of_kind), name(of_machine->name_in_messages()) {}

	void fire(Before &before) {
		if (!has_bullets() || !finds_from() || !has_numbers()) {
			return;
		}
		write_order();
		aim = middle();
		lay_out(before);
		if (has_room()) {
			fire_all();
		}
	}
};

int64_t whole_in(const Dictionary &slot, const StringName &name, int64_t otherwise) {
	const Variant held = slot.get(name, Variant());
	return held.get_type() == Variant::INT ? int64_t(held) : otherwise;
}

class BulletPattern : public SCNativeAction {
	static void fire(SCMachineBase *machine, SCMachineAction *action, int index) {
		const Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr) {
			return;
		}
		// What the shot runs may write here as well.
		Dictionary slot = machine->slot(index);
		const bool repeats = kind->every_seconds > 0.0;
		const Remembered &remembered = NativeNames::of<Remembered>();
		Before before = repeats ? Before{ whole_in(slot, names().shots, 0), whole_in(slot, names().gap, NO_GAP_YET) } : remembered.of(machine, action);
		const uint64_t id = machine->get_instance_id();
		const Ref<SCMachineAction> held(action);
		Shot(machine, action, kind).fire(before);
		if (repeats) {
			slot[names().shots] = before.shots;
			slot[names().gap] = before.gap_at;
		} else if (ObjectDB::get_instance(ObjectID(id)) != nullptr) {
			remembered.of(machine, action) = before;
		}
	}

public:
	BulletPattern() { bullet_flight::add_helpers(); }

	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Dictionary slot = machine->slot(index);
		slot[names().waited] = 0.0;
		slot.erase(names().shots);
		slot.erase(names().gap);
		const StillHere here(machine);
		fire(machine, action, index);
		if (here) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const double every = checked::number<&Kind::every_seconds>(machine, action);
		if (every <= 0.0) {
			return;
		}
		const StillHere here(machine);
		Dictionary slot = machine->slot(index);
		const Variant held = slot.get(names().waited, 0.0);
		double waited = (held.get_type() == Variant::FLOAT ? double(held) : 0.0) + delta;
		int count = 0;
		for (; here && waited + HAIR >= every && count < MOST_SHOTS_AT_ONCE; count++) {
			waited -= every;
			slot[names().waited] = waited;
			fire(machine, action, index);
		}
		slot[names().waited] = count < MOST_SHOTS_AT_ONCE ? waited : 0.0;
	}
};

const AddKinds added = {
	add_kind<SCBulletPatternAction, BulletPattern>(),
};

} // namespace

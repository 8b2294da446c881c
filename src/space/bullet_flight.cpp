#include "space/bullet_flight.hpp"

#include "action/native_calls.hpp"
#include "action/places.hpp"
#include "action/sc_native_actions.hpp"
#include "action/spaces.hpp"
#include "fast_lane/engine_calls.hpp"
#include "fast_lane/group_snapshots.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"
#include "space/bullet_sweeps.hpp"

#include <godot_cpp/classes/area2d.hpp>
#include <godot_cpp/classes/area3d.hpp>
#include <godot_cpp/classes/collision_object2d.hpp>
#include <godot_cpp/classes/collision_object3d.hpp>
#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/classes/viewport.hpp>

#include <limits>

namespace bullet_flight {

namespace {

using bullet_sweeps::Bullet;
using bullet_sweeps::Flight;
using bullet_sweeps::Hit;

// The numbers tell a method's parameters apart from those it may have in another version of the engine.
constexpr GDExtensionInt CAN_PROCESS = 36873697;
constexpr GDExtensionInt PUT_IN_2D = 743155724;
constexpr GDExtensionInt PUT_IN_3D = 3460891852;
// Of a life, what a sum of many frames may be short of the seconds they make.
constexpr double HAIR = 1.0e-6;

struct Names {
	StringName ready = "ready";
	StringName take_hit = "take_hit";
	StringName hurt_event = "hurt_event";
	StringName died_event = "died_event";
	StringName node = "Node";
	StringName node_2d = "Node2D";
	StringName node_3d = "Node3D";
	StringName can_process = "can_process";
	StringName set_position = "set_position";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// What was fired while the others were being moved joins them afterwards.
struct Newcomer {
	uint32_t flight = 0;
	Bullet bullet;
};

struct Sky {
	LocalVector<Flight *> flights;
	LocalVector<Newcomer> newcomers;
	LocalVector<Hit> hits;
	GroupSnapshots groups;
	uint64_t clock = 0;
	int64_t in_flight = 0;
	bool is_moving = false;
	GDExtensionMethodBindPtr can_process = nullptr;
	// Within the parent.
	GDExtensionMethodBindPtr put_in_2d = nullptr;
	GDExtensionMethodBindPtr put_in_3d = nullptr;

	// False when the engine has no such methods any more.
	bool prepare() {
		if (can_process == nullptr) {
			can_process = method(names().node, names().can_process, CAN_PROCESS);
			put_in_2d = method(names().node_2d, names().set_position, PUT_IN_2D);
			put_in_3d = method(names().node_3d, names().set_position, PUT_IN_3D);
		}
		return engine_calls::prepare() && can_process != nullptr && put_in_2d != nullptr && put_in_3d != nullptr;
	}

	static GDExtensionMethodBindPtr method(const StringName &of_class, const StringName &called, GDExtensionInt number) {
		return gdextension_interface::classdb_get_method_bind(of_class._native_ptr(), called._native_ptr(), number);
	}

	~Sky() {
		for (Flight *flight : flights) {
			memdelete(flight);
		}
	}
};

struct KeptSky {
	mutable Sky sky;
};

Sky &shared() {
	return NativeNames::of<KeptSky>().sky;
}

Node *node_by(ObjectID id) {
	return id.is_valid() ? Object::cast_to<Node>(ObjectDB::get_instance(id)) : nullptr;
}

bool is_alike(const Flight &flight, const Flight &other) {
	return flight.parent == other.parent && flight.scene == other.scene && flight.side == other.side && flight.speed == other.speed &&
			flight.homing == other.homing && flight.damage == other.damage && flight.hits_group == other.hits_group && flight.hit_event == other.hit_event;
}

// The number of the flight that is like that one.
uint32_t flight_like(Sky &sky, const Flight &wanted, Node *bullet) {
	for (uint32_t i = 0; i < sky.flights.size(); i++) {
		if (is_alike(*sky.flights[i], wanted)) {
			return i;
		}
	}
	Flight *made = memnew(Flight(wanted));
	bullet_sweeps::read_shape(*made, bullet);
	sky.flights.push_back(made);
	return sky.flights.size() - 1;
}

void join(Sky &sky, uint32_t flight, Bullet &&bullet) {
	sky.in_flight++;
	if (sky.is_moving) {
		sky.newcomers.push_back({ flight, std::move(bullet) });
	} else {
		sky.flights[flight]->bullets.push_back(std::move(bullet));
	}
}

void turn(Node *bullet, const Vector2 &way) {
	if (Node2D *node_2d = Object::cast_to<Node2D>(bullet)) {
		node_2d->set_global_rotation(double(way.angle()));
	} else if (Node3D *node_3d = Object::cast_to<Node3D>(bullet)) {
		const Vector3 scale = node_3d->get_global_basis().get_scale_abs();
		node_3d->set_global_basis(bullet_sweeps::looking_along(way) * Basis::from_scale(scale));
	}
}

// Turns the bullet toward whichever of the group is nearest, by as much as it can in that time.
void home_in(Sky &sky, const Flight &flight, const Node *parent, Bullet &bullet) {
	const GroupSnapshots::Members &members = sky.groups.members(sky.groups.number_of(flight.hits_group), parent, sky.clock);
	double least = std::numeric_limits<double>::infinity();
	const GroupSnapshots::Member *nearest = nullptr;
	for (const GroupSnapshots::Member &member : members) {
		if (member.side != flight.side || member.id == bullet.shooter || member.id == bullet.node) {
			continue;
		}
		const double apart = spots::apart_squared(bullet.place, member.spot, flight.side, false);
		if (apart < least && !bullet.passed.has(member.id)) {
			least = apart;
			nearest = &member;
		}
	}
	if (nearest == nullptr) {
		return;
	}
	const Vector3 way = nearest->spot - bullet.place;
	const Vector2 wanted = flight.side == spots::IN_2D ? Vector2(way.x, way.y) : Vector2(way.x, way.z);
	if (wanted.is_zero_approx() || !wanted.is_finite()) {
		return;
	}
	const double most = flight.homing * bullet.seconds;
	const double by = CLAMP(double(bullet.way.angle_to(wanted)), -most, most);
	if (by != 0.0) {
		bullet.way = bullet.way.rotated(real_t(by)).normalized();
		bullet.has_turned = true;
	}
}

// Which of them fly in this step, and for how long.
void wind_up(Sky &sky, Flight &flight, const Node *parent, double delta) {
	for (Bullet &bullet : flight.bullets) {
		bullet.seconds = 0.0;
		GDExtensionObjectPtr object = engine_calls::find(bullet.node);
		if (object == nullptr) {
			bullet.is_gone = true;
			continue;
		}
		if (!engine_calls::ask<GDExtensionBool>(engine_calls::methods.is_inside_tree, object)) {
			// One that is added late comes with the end of this frame.
			bullet.is_gone = bullet.has_arrived;
			continue;
		}
		bullet.has_arrived = true;
		if (!engine_calls::ask<GDExtensionBool>(sky.can_process, object)) {
			continue;
		}
		bullet.seconds = MIN(delta, bullet.life);
		bullet.life -= delta;
		if (flight.homing > 0.0 && !flight.hits_group.is_empty()) {
			home_in(sky, flight, parent, bullet);
		}
	}
}

// Whether a place in the world is the same place in this parent.
bool is_the_world(const Node *parent) {
	if (const CanvasItem *item = Object::cast_to<CanvasItem>(parent)) {
		return spaces::world_of(item) == Transform2D();
	}
	const Node3D *node_3d = Object::cast_to<Node3D>(parent);
	return node_3d == nullptr || spaces::world_of(node_3d) == Transform3D();
}

// May run a game's code, which may do anything but move these bullets.
void move_nodes(const Sky &sky, Flight &flight, bool in_the_world) {
	const bool is_2d = flight.side == spots::IN_2D;
	for (uint32_t i = 0; i < flight.bullets.size(); i++) {
		Bullet &bullet = flight.bullets[i];
		if (bullet.seconds <= 0.0 || bullet.is_gone) {
			continue;
		}
		GDExtensionObjectPtr object = engine_calls::find(bullet.node);
		if (object != nullptr && !in_the_world) {
			engine_calls::put(object, flight.side, bullet.place);
		} else if (object != nullptr && is_2d) {
			engine_calls::tell(sky.put_in_2d, object, Vector2(bullet.place.x, bullet.place.y));
		} else if (object != nullptr) {
			engine_calls::tell(sky.put_in_3d, object, bullet.place);
		}
		if (bullet.has_turned) {
			bullet.has_turned = false;
			if (Node *node = node_by(bullet.node)) {
				turn(node, bullet.way);
			}
		}
		bullet.is_spent = bullet.is_spent || bullet.life <= HAIR;
	}
}

// What stands beside it in the group may lie below the node that has the machine, but only as far up as its body goes.
SCMachine *machine_for(Node *touched, const Node *thing, const Node *top) {
	bool is_past_the_thing = false;
	for (Node *at = touched; at != nullptr && Object::cast_to<Viewport>(at) == nullptr; at = at->get_parent()) {
		if (at == top && at != touched && at != thing) {
			return nullptr;
		}
		if (SCMachine *machine = SCMachine::machine_of(at)) {
			return machine;
		}
		is_past_the_thing = is_past_the_thing || at == thing;
		const bool is_area = Object::cast_to<Area2D>(at) != nullptr || Object::cast_to<Area3D>(at) != nullptr;
		const bool is_solid = !is_area && (Object::cast_to<CollisionObject2D>(at) != nullptr || Object::cast_to<CollisionObject3D>(at) != nullptr);
		if (is_past_the_thing && is_solid) {
			return nullptr;
		}
	}
	return nullptr;
}

// Everything is found by id, as what was told before may have freed any of it.
void tell(const Hit &hit) {
	Node *bullet = node_by(hit.bullet);
	Node *touched = node_by(hit.collider);
	if (bullet == nullptr || touched == nullptr || bullet->is_queued_for_deletion()) {
		return;
	}
	if (Node *box = node_by(hit.hurt_box)) {
		for (const StringName &property : { names().hurt_event, names().died_event }) {
			const Variant event = box->get(property);
			if (event.get_type() == Variant::STRING_NAME) {
				SCMachineBase::note_sender(event, bullet);
			}
		}
		box->call(names().take_hit, hit.damage, bullet, 1.0);
		return;
	}
	SCMachine *machine = hit.event.is_empty() ? nullptr : machine_for(touched, node_by(hit.thing), bullet->get_parent());
	if (machine != nullptr) {
		SCMachineBase::note_sender(hit.event, bullet);
		machine->send_event(hit.event, hit.damage);
	}
}

void tell_of_hits(Sky &sky) {
	// One is looked at by its place in the list, which a step within a step does not touch.
	for (uint32_t i = 0; i < sky.hits.size(); i++) {
		const Hit hit = sky.hits[i];
		tell(hit);
	}
	sky.hits.clear();
}

void let_go_of_spent(Sky &sky) {
	for (Flight *flight : sky.flights) {
		for (uint32_t i = flight->bullets.size(); i-- > 0;) {
			const Bullet &bullet = flight->bullets[i];
			if (!bullet.is_spent && !bullet.is_gone) {
				continue;
			}
			Node *node = node_by(bullet.node);
			if (node != nullptr && !bullet.is_gone && !node->is_queued_for_deletion()) {
				node->queue_free();
			} else if (node != nullptr && !node->is_inside_tree()) {
				bullet_sweeps::give_back_to_physics(node);
			}
			flight->bullets.remove_at_unordered(i);
			sky.in_flight--;
		}
	}
}

void take_in_newcomers(Sky &sky) {
	for (Newcomer &newcomer : sky.newcomers) {
		sky.flights[newcomer.flight]->bullets.push_back(std::move(newcomer.bullet));
	}
	sky.newcomers.clear();
	for (uint32_t i = sky.flights.size(); i-- > 0;) {
		if (sky.flights[i]->bullets.is_empty()) {
			memdelete(sky.flights[i]);
			sky.flights.remove_at_unordered(i);
		}
	}
}

void fly(Sky &sky, Flight &flight, double delta) {
	const Node *parent = node_by(flight.parent);
	if (parent == nullptr) {
		for (Bullet &bullet : flight.bullets) {
			bullet.seconds = 0.0;
			bullet.is_gone = engine_calls::find(bullet.node) == nullptr || bullet.has_arrived;
		}
		return;
	}
	if (!parent->is_inside_tree()) {
		return;
	}
	wind_up(sky, flight, parent, delta);
	if (!bullet_sweeps::fly(flight, parent, sky.hits)) {
		return;
	}
	move_nodes(sky, flight, is_the_world(parent));
}

Variant step(const Array &arguments) {
	Sky &sky = shared();
	const Variant seconds = arguments.is_empty() ? Variant() : arguments[0];
	if (sky.is_moving || seconds.get_type() != Variant::FLOAT || !(double(seconds) >= 0.0) || !sky.prepare()) {
		return sky.in_flight;
	}
	sky.is_moving = true;
	sky.clock++;
	// What joins meanwhile may bring a flight of its own.
	const uint32_t flights = sky.flights.size();
	for (uint32_t i = 0; i < flights; i++) {
		fly(sky, *sky.flights[i], seconds);
	}
	tell_of_hits(sky);
	let_go_of_spent(sky);
	sky.is_moving = false;
	take_in_newcomers(sky);
	return sky.in_flight;
}

Bullet *flying(Sky &sky, ObjectID id, Flight *&of_flight) {
	for (Flight *flight : sky.flights) {
		for (Bullet &bullet : flight->bullets) {
			if (bullet.node == id && !bullet.is_gone) {
				of_flight = flight;
				return &bullet;
			}
		}
	}
	return nullptr;
}

// A bullet, its new way, who it now belongs to and what it hits. True when it flies.
Variant redirect(const Array &arguments) {
	Sky &sky = shared();
	Node *node = arguments.size() == 4 ? Object::cast_to<Node>(arguments[0].get_validated_object()) : nullptr;
	Flight *flight = nullptr;
	Bullet *bullet = node != nullptr && !node->is_queued_for_deletion() ? flying(sky, ObjectID(node->get_instance_id()), flight) : nullptr;
	if (bullet == nullptr) {
		return false;
	}
	Vector2 way = places::as_vector2(arguments[1]);
	if (arguments[1].get_type() == Variant::VECTOR3) {
		const Vector3 in_3d = arguments[1];
		way = Vector2(in_3d.x, in_3d.z);
	}
	if (way.is_zero_approx() || !way.is_finite()) {
		return false;
	}
	Bullet turned = *bullet;
	turned.way = way.normalized();
	turned.is_spent = false;
	turned.has_turned = false;
	turned.seconds = 0.0;
	turned.bounced_off = ObjectID();
	turned.passed.clear();
	const Node *shooter = Object::cast_to<Node>(arguments[2].get_validated_object());
	if (shooter != nullptr) {
		turned.shooter = ObjectID(shooter->get_instance_id());
	}
	const StringName group = arguments[3];
	bullet->is_gone = true;
	bullet->is_spent = false;
	Flight wanted = *flight;
	wanted.bullets.clear();
	if (!group.is_empty()) {
		wanted.hits_group = group;
	}
	const uint32_t joined = flight_like(sky, wanted, node);
	join(sky, joined, std::move(turned));
	if (!sky.is_moving) {
		let_go_of_spent(sky);
	}
	turn(node, way.normalized());
	return true;
}

} // namespace

int64_t count() {
	return shared().in_flight;
}

void put(Node *bullet, const Node *parent, const Vector3 &place, const Vector2 &way) {
	if (Node2D *node_2d = Object::cast_to<Node2D>(bullet)) {
		const CanvasItem *above = node_2d->is_set_as_top_level() ? nullptr : Object::cast_to<CanvasItem>(parent);
		const Transform2D world = above != nullptr ? spaces::world_of(above) : Transform2D();
		const Transform2D turned(way.angle(), node_2d->get_scale(), 0.0f, Vector2(place.x, place.y));
		node_2d->set_transform(spaces::has_a_way_back(world) ? world.affine_inverse() * turned : turned);
	} else if (Node3D *node_3d = Object::cast_to<Node3D>(bullet)) {
		const Node3D *above = node_3d->is_set_as_top_level() ? nullptr : Object::cast_to<Node3D>(parent);
		const Transform3D world = above != nullptr ? spaces::world_of(above) : Transform3D();
		const Transform3D turned(bullet_sweeps::looking_along(way) * Basis::from_scale(node_3d->get_scale()), place);
		node_3d->set_transform(spaces::has_a_way_back(world.basis) ? world.affine_inverse() * turned : turned);
	}
}

void launch(Node *bullet, const Node *parent, const Vector3 &place, const Vector2 &way, const Order &order) {
	Sky &sky = shared();
	Flight wanted;
	wanted.side = spots::side_of(bullet);
	wanted.parent = ObjectID(parent->get_instance_id());
	wanted.scene = order.scene;
	wanted.hits_group = order.hits_group;
	wanted.hit_event = order.hit_event;
	wanted.damage = order.damage;
	wanted.speed = order.speed;
	wanted.homing = order.homing;
	Bullet fired;
	fired.node = ObjectID(bullet->get_instance_id());
	fired.shooter = order.shooter;
	fired.place = place;
	fired.way = way;
	fired.life = order.lifetime;
	fired.bounces = order.bounces;
	fired.pierce = order.pierce;
	join(sky, flight_like(sky, wanted, bullet), std::move(fired));
	if (bullet->is_node_ready()) {
		bullet_sweeps::take_out_of_physics(bullet);
	} else {
		bullet->connect(names().ready, NodeCall::make("Bullet Pattern: in the scene", bullet, &bullet_sweeps::take_out_of_physics), Object::CONNECT_ONE_SHOT);
	}
}

void add_helpers() {
	SCNativeActions::add_helper("bullets_step", &step);
	SCNativeActions::add_helper("bullets_redirect", &redirect);
}

} // namespace bullet_flight

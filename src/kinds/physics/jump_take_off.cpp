#include "kinds/physics/jump_take_off.hpp"

#include "character/body_notes.hpp"
#include "character/body_sides.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace take_offs {

namespace {

// So many physics frames after the jump somebody has moved it, or nobody will.
constexpr int64_t MOST_FRAMES = 2;
// The share of its speed by which a body may differ from what is expected of it.
constexpr double SLACK = 0.001;

void look_at_all();

struct Table {
	StringName physics_frame = "physics_frame";
	Callable look = callable_mp_static(&look_at_all);
	// On the body: the physics frame of its last jump.
	StringName jumped_in = "quillstead_jumped_in";
	mutable LocalVector<TakeOff> all;
};

const Table &table() {
	return NativeNames::of<Table>();
}

bool is_about(double rising, double expected, const TakeOff &take_off) {
	return Math::abs(rising - expected) <= take_off.speed * SLACK;
}

// Makes up for the first step, which went without gravity from a floor and with it in the air. A body that does not rise as it
// should by then has met something else.
template <class Body>
void even_out(Body *body, const TakeOff &take_off, double rising) {
	const double left = take_off.height - rising * take_off.delta;
	const double speed = jump_arc::speed_in_steps(left, rising, take_off.pull, take_off.delta);
	body->set_velocity(body->get_velocity() + body->get_up_direction() * real_t(speed - rising));
}

// True when there is nothing more to wait for.
template <class Body>
bool look_at(Body *body, const TakeOff &take_off) {
	if (!body->is_inside_tree()) {
		return true;
	}
	if (body->get_tree()->is_paused()) {
		return false;
	}
	const bool may_wait = int64_t(Engine::get_singleton()->get_physics_frames()) - take_off.frame < MOST_FRAMES;
	const double rising = double(body->get_velocity().dot(body->get_up_direction()));
	if (take_off.from_the_floor && body->is_on_floor()) {
		return !may_wait;
	}
	body_notes::forget_floor(body);
	const double after_one_step = take_off.from_the_floor ? take_off.speed : take_off.speed - take_off.pull.at(take_off.speed) * take_off.delta;
	if (!is_about(rising, after_one_step, take_off)) {
		return !is_about(rising, take_off.speed, take_off) || !may_wait;
	}
	if (take_off.falls) {
		even_out(body, take_off, rising);
	}
	return true;
}

bool is_over(const TakeOff &take_off) {
	bool over = true;
	bodies::visit(Object::cast_to<Node>(ObjectDB::get_instance(take_off.body)), [&](auto *body) { over = look_at(body, take_off); });
	return over;
}

void look_at_all() {
	LocalVector<TakeOff> &all = table().all;
	for (uint32_t i = all.size(); i > 0; i--) {
		if (is_over(all[i - 1])) {
			all.remove_at_unordered(i - 1);
		}
	}
	SceneTree *tree = Object::cast_to<SceneTree>(Engine::get_singleton()->get_main_loop());
	if (all.is_empty() && tree != nullptr && tree->is_connected(table().physics_frame, table().look)) {
		tree->disconnect(table().physics_frame, table().look);
	}
}

} // namespace

void note(Node *body, const TakeOff &take_off) {
	body->set_meta(table().jumped_in, take_off.frame);
	if (!body->is_inside_tree()) {
		return;
	}
	SceneTree *tree = body->get_tree();
	if (!tree->is_connected(table().physics_frame, table().look)) {
		tree->connect(table().physics_frame, table().look);
	}
	LocalVector<TakeOff> &all = table().all;
	for (TakeOff &other : all) {
		if (other.body == take_off.body) {
			other = take_off;
			return;
		}
	}
	all.push_back(take_off);
}

bool is_under_way(const Node *body) {
	const ObjectID id = ObjectID(body->get_instance_id());
	for (const TakeOff &take_off : table().all) {
		if (take_off.body == id) {
			return true;
		}
	}
	return false;
}

bool was_lately(const Node *body) {
	const Engine *engine = Engine::get_singleton();
	const StringName &key = table().jumped_in;
	return body->has_meta(key) && int64_t(engine->get_physics_frames()) - int64_t(body->get_meta(key)) <= engine->get_physics_ticks_per_second();
}

} // namespace take_offs

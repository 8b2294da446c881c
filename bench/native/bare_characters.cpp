#include "bare_characters.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/physics_direct_space_state2d.hpp>
#include <godot_cpp/classes/physics_direct_space_state3d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/world2d.hpp>
#include <godot_cpp/classes/world3d.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>

using namespace godot;

namespace {

constexpr real_t GRAVITY = 9.8f;
// What a Perception looks for in its way.
constexpr uint32_t WALLS = 1;

struct Keys {
	StringName side_on = "quillstead_side_on";
	StringName corners = "quillstead_corners";
	StringName hangs_at_top = "quillstead_hangs_at_top";
	StringName walk_gravity = "quillstead_walk_gravity";
	StringName gravity_scale = "quillstead_gravity_scale";
	StringName cut_short = "quillstead_cut_short";
	StringName steps_up = "quillstead_steps_up";
	StringName push = "quillstead_push";
};

Keys *keys = nullptr;

bool may_fall(const CharacterBody2D *body) {
	return body->get_motion_mode() != CharacterBody2D::MOTION_MODE_FLOATING;
}
bool may_fall(const CharacterBody3D *) {
	return true;
}

Vector2 toward(const Vector2 &now, double speed) {
	return Vector2(real_t(speed), now.y);
}
Vector3 toward(const Vector3 &now, double speed) {
	return Vector3(real_t(speed), now.y, 0.0f);
}

int64_t left_word(const CharacterBody2D *body) {
	return body->has_meta(keys->corners);
}
int64_t left_word(const CharacterBody3D *body) {
	return body->has_meta(keys->side_on);
}

int64_t heading(const CharacterBody2D *body) {
	return body->get_velocity().x > 0.0f;
}
int64_t heading(const CharacterBody3D *) {
	return 0;
}

int64_t corners(const CharacterBody2D *body) {
	return int64_t(body->has_meta(keys->side_on)) + int64_t(body->has_meta(keys->corners));
}
int64_t corners(const CharacterBody3D *body) {
	return body->has_meta(keys->side_on);
}

template <class Body>
int64_t walk(Body *body, double speed, double delta) {
	int64_t found = 0;
	// Whether it is smoothed.
	found += body->is_inside_tree() && body->get_tree()->is_physics_interpolation_enabled();
	found += body->get_physics_interpolation_mode();
	// What it wants.
	found += may_fall(body);
	body->set_velocity(toward(body->get_velocity(), speed));
	found += may_fall(body);
	found += left_word(body);
	found += body->has_meta(keys->hangs_at_top);
	found += body->has_meta(keys->walk_gravity);
	// The step.
	found += may_fall(body);
	found += int64_t(Engine::get_singleton()->get_physics_frames());
	found += body->is_inside_tree();
	found += body->is_on_floor();
	found += heading(body);
	found += body->has_meta(keys->cut_short);
	auto velocity = body->get_velocity();
	const auto up = body->get_up_direction();
	if (!body->is_on_floor()) {
		velocity -= up * (body->has_meta(keys->gravity_scale) ? 0.0f : GRAVITY * real_t(delta));
		body->set_velocity(velocity);
	}
	found += body->get_child_count();
	found += body->has_meta(keys->steps_up);
	found += body->has_meta(keys->push);
	found += corners(body);
	found += body->move_and_slide();
	found += body->get_motion_mode();
	return found;
}

template <class Act>
void visit(uint64_t id, Act act) {
	Object *object = ObjectDB::get_instance(id);
	if (auto *body_2d = Object::cast_to<CharacterBody2D>(object)) {
		act(body_2d);
	} else if (auto *body_3d = Object::cast_to<CharacterBody3D>(object)) {
		act(body_3d);
	}
}

} // namespace

void BenchBareCharacters::add(LocalVector<uint64_t> &list, Node *body) {
	ERR_FAIL_NULL(body);
	if (keys == nullptr) {
		keys = memnew(Keys);
		ray_2d.instantiate();
		ray_3d.instantiate();
		ray_2d->set_collision_mask(WALLS);
		ray_3d->set_collision_mask(WALLS);
	}
	list.push_back(body->get_instance_id());
	set_physics_process(true);
}

void BenchBareCharacters::add_walker(Node *body) {
	add(walkers, body);
}

void BenchBareCharacters::add_slider(Node *body) {
	add(sliders, body);
}

void BenchBareCharacters::cast_rays(int64_t a_step, Node *at) {
	ERR_FAIL_NULL(at);
	rays = a_step;
	target = at->get_instance_id();
}

void BenchBareCharacters::clear() {
	walkers.clear();
	sliders.clear();
	rays = 0;
	next_to_look = 0;
	ray_2d.unref();
	ray_3d.unref();
	if (keys != nullptr) {
		memdelete(keys);
		keys = nullptr;
	}
	set_physics_process(false);
}

void BenchBareCharacters::_physics_process(double delta) {
	for (const uint64_t id : walkers) {
		visit(id, [&](auto *body) { found += walk(body, wanted_speed, delta); });
	}
	for (const uint64_t id : sliders) {
		visit(id, [&](auto *body) { found += body->move_and_slide(); });
	}
	for (int64_t i = 0; i < rays && !sliders.is_empty(); i++) {
		next_to_look = next_to_look + 1 < sliders.size() ? next_to_look + 1 : 0;
		cast_from(sliders[next_to_look]);
	}
}

void BenchBareCharacters::cast_from(uint64_t id) {
	Object *body = ObjectDB::get_instance(id);
	Object *to = ObjectDB::get_instance(target);
	if (const Node2D *from_2d = Object::cast_to<Node2D>(body)) {
		if (const Node2D *to_2d = Object::cast_to<Node2D>(to)) {
			ray_2d->set_from(from_2d->get_global_position());
			ray_2d->set_to(to_2d->get_global_position());
			found += from_2d->get_world_2d()->get_direct_space_state()->intersect_ray(ray_2d).size();
		}
	} else if (const Node3D *from_3d = Object::cast_to<Node3D>(body)) {
		if (const Node3D *to_3d = Object::cast_to<Node3D>(to)) {
			ray_3d->set_from(from_3d->get_global_position());
			ray_3d->set_to(to_3d->get_global_position());
			found += from_3d->get_world_3d()->get_direct_space_state()->intersect_ray(ray_3d).size();
		}
	}
}

void BenchBareCharacters::_bind_methods() {
	ClassDB::bind_method(D_METHOD("add_walker", "body"), &BenchBareCharacters::add_walker);
	ClassDB::bind_method(D_METHOD("add_slider", "body"), &BenchBareCharacters::add_slider);
	ClassDB::bind_method(D_METHOD("cast_rays", "a_step", "target"), &BenchBareCharacters::cast_rays);
	ClassDB::bind_method(D_METHOD("set_speed", "speed"), &BenchBareCharacters::set_speed);
	ClassDB::bind_method(D_METHOD("clear"), &BenchBareCharacters::clear);
}

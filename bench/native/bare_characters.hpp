#pragma once

// The yardsticks of whoever walks character bodies about: a loop over bodies that makes the engine calls that a step cannot do
// without, and nothing else.

#include <godot_cpp/classes/character_body2d.hpp>
#include <godot_cpp/classes/character_body3d.hpp>
#include <godot_cpp/classes/physics_ray_query_parameters2d.hpp>
#include <godot_cpp/classes/physics_ray_query_parameters3d.hpp>
#include <godot_cpp/templates/local_vector.hpp>

class BenchBareCharacters : public godot::Node {
	GDCLASS(BenchBareCharacters, godot::Node)

public:
	// With every call of an ordinary step of Move Character: the body's look-up, the checks of its smoothing, velocity, floor,
	// metadata, the children among which an agent might be, and the slide.
	void add_walker(godot::Node *body);
	// The slide alone.
	void add_slider(godot::Node *body);
	// So many rays in each step, from one body after the other to the target.
	void cast_rays(int64_t a_step, godot::Node *target);
	void set_speed(double speed) { wanted_speed = speed; }
	void clear();

	void _physics_process(double delta) override;

protected:
	static void _bind_methods();

private:
	void add(godot::LocalVector<uint64_t> &list, godot::Node *body);
	void cast_from(uint64_t id);

	godot::LocalVector<uint64_t> walkers;
	godot::LocalVector<uint64_t> sliders;
	godot::Ref<godot::PhysicsRayQueryParameters2D> ray_2d;
	godot::Ref<godot::PhysicsRayQueryParameters3D> ray_3d;
	int64_t rays = 0;
	uint32_t next_to_look = 0;
	uint64_t target = 0;
	double wanted_speed = 1.0;
	// What was found, so that no compiler thinks a question is for nothing.
	int64_t found = 0;
};

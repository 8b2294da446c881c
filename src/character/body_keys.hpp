#pragma once

// The metadata by which actions that know nothing of each other work on one body. It lies on the body, or on its navigation agent,
// and outlives the state that wrote it.

#include "machine/native_names.hpp"

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

struct BodyKeys {
	// True for a body that is looked at from the side: it flips where others turn.
	StringName side_on = "quillstead_side_on";
	// How many pixels, or metres, it gives way sideways when its head meets the corner of a ceiling.
	StringName corners = "quillstead_corners";
	// The share of its gravity around the top of a jump.
	StringName hangs_at_top = "quillstead_hangs_at_top";
	// The gravity it walks with, before its scale.
	StringName walk_gravity = "quillstead_walk_gravity";
	StringName gravity_scale = "quillstead_gravity_scale";
	// The input that a jump is cut short by once it is let go, and the speed that the jump began with.
	StringName cut_short = "quillstead_cut_short";
	StringName cut_from = "quillstead_cut_from";
	// There while a push from outside acts on it.
	StringName push = "quillstead_push";
	// How tall a step it is helped up, and the velocity it had before it slid.
	StringName steps_up = "quillstead_steps_up";
	StringName asked_speed = "quillstead_asked_speed";
	StringName faces_left = "quillstead_faces_left";
	// On a picture below the body that is drawn facing left.
	StringName art_faces_left = "quillstead_art_faces_left";
	// On an agent: the physics frame and the goal it was last given.
	StringName aim = "quillstead_aim";
	// On an agent: how high its parent stands above the mesh.
	StringName height = "quillstead_height";
	// On a node that is moved by its position alone.
	StringName moved_by_position = "quillstead_moved_by_position";
	// The frame, the movers so far in it, the movers of the frame before, the velocity that the last of them left.
	StringName drive = "quillstead_drive";
	StringName weight_out_of_water = "quillstead_weight_out_of_water";

	static const BodyKeys &shared() { return NativeNames::of<BodyKeys>(); }
};

namespace body_keys {

// What counts as the same setting: the engine's own slack, by the first of the two.
bool is_about(double first, double second);
double number(const Object *object, const StringName &key, double otherwise);
bool truth(const Object *object, const StringName &key);
// Written only when it is another number than before; `otherwise` stands for one that is not there.
void keep_number(Object *object, const StringName &key, double value, double otherwise);
void keep_true(Object *object, const StringName &key);

} // namespace body_keys

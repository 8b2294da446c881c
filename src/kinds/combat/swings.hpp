#pragma once

// A swing in the world: which way it goes, the hit box that is put there, and the picture of the weapon in 2D. For Attack.

#include "space/sides.hpp"

#include <godot_cpp/classes/sprite2d.hpp>
#include <godot_cpp/classes/texture2d.hpp>
#include <godot_cpp/variant/string_name.hpp>

namespace swings {

struct Weapon {
	double damage = 0.0;
	double reach = 0.0;
	double seconds = 0.0;
	double knockback = 0.0;
	StringName hurts_group;
	Ref<Texture2D> icon;
};

// Toward `aim` if it is on the same side and within reach, to which the swinger turns at once; otherwise the way it last moved, or
// faces. Of length 1.
template <class Side>
typename Side::Vector turn_and_head(typename Side::Placed *swinger, Node *aim, double reach);

// The hit box, not yet in the scene; null when the addon's script cannot be loaded.
template <class Side>
Node *make(typename Side::Placed *swinger, const Weapon &weapon, const typename Side::Vector &heading);

// Null when there is nothing to show.
Node *make_picture(Node2D *swinger, const Weapon &weapon, const Vector2 &heading);
Node *make_picture(Node3D *swinger, const Weapon &weapon, const Vector3 &heading);
// `share` of the swing is over.
void sweep(Sprite2D *picture, double share);

// These may run a game's code.
void strike(Node *box);
// Nothing is hit any more, and it goes.
void switch_off(Node *box);
void take_away(Node *node);

} // namespace swings

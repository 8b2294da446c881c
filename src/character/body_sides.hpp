#pragma once

// What a character body is in 2D and in 3D, so that what is done alike on both sides is written once as a template.

#include <godot_cpp/classes/character_body2d.hpp>
#include <godot_cpp/classes/character_body3d.hpp>

using namespace godot;

namespace bodies {

// Calls `act` with the node as the character body that it is. False when it is none.
template <class Act>
bool visit(Node *node, Act act) {
	if (auto *body_2d = Object::cast_to<CharacterBody2D>(node)) {
		act(body_2d);
		return true;
	}
	if (auto *body_3d = Object::cast_to<CharacterBody3D>(node)) {
		act(body_3d);
		return true;
	}
	return false;
}

inline bool is_character(const Node *node) {
	return Object::cast_to<CharacterBody2D>(node) != nullptr || Object::cast_to<CharacterBody3D>(node) != nullptr;
}

// The same vector without its part along a direction of length 1.
template <class Vector>
Vector without(const Vector &vector, const Vector &along) {
	return vector - along * vector.dot(along);
}

} // namespace bodies

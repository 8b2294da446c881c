#pragma once

// Set Mouse Mode of the scene category.

#include "action/kind_table.hpp"

#include <godot_cpp/classes/texture2d.hpp>

class SCSetMouseModeAction : public SCMachineAction {
	SC_KIND(SCSetMouseModeAction, SCMachineAction)

public:
	// The first five as the engine counts them.
	SC_ENUM(Mode, VISIBLE, HIDDEN, CAPTURED, CONFINED, CONFINED_HIDDEN, AS_IT_IS)
	SC_ENUM_LABELLED(Pointer, "As It Is,A Picture,The Usual One", POINTER_AS_IT_IS, A_PICTURE, THE_USUAL_ONE)
	// The first ones of the engine's, which a game has a use for.
	SC_ENUM(Shape, ARROW, TEXT, POINTING_HAND, CROSS, WAIT, BUSY, DRAG, CAN_DROP, FORBIDDEN)

	Mode mode = VISIBLE;
	Pointer pointer = POINTER_AS_IT_IS;
	Ref<Texture2D> picture;
	Vector2 hotspot;
	Shape shape = ARROW;
	bool put_back_when_left = false;

	String summary_default() override;
};

#pragma once

// Kinds of the color category: taking colours apart, changing them, picking them.

#include "action/kind_table.hpp"

#include <godot_cpp/classes/gradient.hpp>
#include <godot_cpp/variant/color.hpp>
#include <godot_cpp/variant/packed_color_array.hpp>

class SCGetColorComponentsAction : public SCMachineAction {
	SC_KIND(SCGetColorComponentsAction, SCMachineAction)

public:
	Color color = Color(1, 1, 1, 1);
	StringName store_red_in;
	StringName store_green_in;
	StringName store_blue_in;
	StringName store_alpha_in;
	StringName store_hue_in;
	StringName store_saturation_in;
	StringName store_brightness_in;

	String summary_default() override;
};

class SCRandomColorAction : public SCMachineAction {
	SC_KIND(SCRandomColorAction, SCMachineAction)

public:
	SC_ENUM(PickFrom, A_RANGE, BETWEEN_TWO, A_LIST)

	PickFrom pick_from = A_RANGE;
	double lowest_hue = 0.0;
	double highest_hue = 1.0;
	double lowest_saturation = 0.5;
	double highest_saturation = 1.0;
	double lowest_brightness = 0.8;
	double highest_brightness = 1.0;
	double alpha = 1.0;
	Color first = Color(1, 1, 1, 1);
	Color second = Color(0, 0, 0, 1);
	PackedColorArray colors;
	bool always_another = false;
	StringName store_in;

	String summary_default() override;
};

class SCSampleGradientAction : public SCMachineAction {
	SC_KIND(SCSampleGradientAction, SCMachineAction)

public:
	Ref<Gradient> gradient;
	double number = 0.0;
	double at_the_left = 0.0;
	double at_the_right = 1.0;
	StringName store_in;

	String summary_default() override;
};

class SCSetColorComponentsAction : public SCMachineAction {
	SC_KIND(SCSetColorComponentsAction, SCMachineAction)

public:
	SC_ENUM(Part, RED, GREEN, BLUE, ALPHA, HUE, SATURATION, BRIGHTNESS)
	SC_ENUM(Operation, SET, ADD, MULTIPLY)

	StringName variable_name;
	Part part = ALPHA;
	Operation operation = SET;
	double value = 1.0;
	bool per_second = false;

	String summary_default() override;
};

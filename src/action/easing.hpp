#pragma once

// How a change over time speeds up and slows down: the shapes of the engine's tweens, as kinds offer
// them. A kind has a field of each enum, says both settings with one call of describe(), and hands a rule to both at once:
//
//	Easings::describe<&Self::curve, &Self::easing>(kind).only_if<&Self::duration>();

#include "action/checked.hpp"
#include "action/kind_table.hpp"
#include "action/shared_verbs.hpp"

struct Easings {
	// In the engine's own order, as they are handed to its tweens.
	SC_ENUM(Shape, LINEAR, SINE, QUINT, QUART, QUAD, EXPO, ELASTIC, CUBIC, CIRC, BOUNCE, BACK, SPRING)
	SC_ENUM(Easing, EASE_IN, EASE_OUT, EASE_IN_OUT, EASE_OUT_IN)

	class Handle {
		SettingHandle curve;
		SettingHandle easing;

	public:
		Handle(const SettingHandle &curve_setting, const SettingHandle &easing_setting) : curve(curve_setting), easing(easing_setting) {}
		template <auto What, auto... Values>
		Handle &only_if() {
			curve.only_if<What, Values...>();
			easing.only_if<What, Values...>();
			return *this;
		}
	};

	template <auto CurveField, auto EasingField, class T>
	static Handle describe(KindTable<T> &kind) {
		kind.template constants_of<Shape>();
		kind.template constants_of<Easing>();
		const SettingHandle curve = kind.template setting<CurveField>("curve",
				"The shape of the change (Godot's Tween transition). Linear keeps one speed all the way. Sine, Quad, Cubic and Expo speed up or slow down more "
				"and more. Elastic wobbles past the end and back, Back goes a little past and comes back, and Bounce bounces at the end.");
		const SettingHandle easing = kind.template setting<EasingField>("easing",
				"Where the change is slow (Godot's Tween ease). Ease Out is slow at the end, as a thing coming to rest, and Ease In at the start, as a thing "
				"setting off. Ease In Out is slow at both ends, and Ease Out In in the middle.");
		return Handle(curve, easing);
	}

	// Moves a property to a value and finishes the action when it is there.
	template <auto CurveField, auto EasingField>
	static void move_property(
			SCMachineBase *machine, const SCMachineAction *action, int index, Node *node, const NodePath &property, const Variant &to, double seconds) {
		verbs::tween_property(machine, index, node, property, to, seconds, of<CurveField, EasingField>(machine, action));
	}

	template <auto CurveField, auto EasingField>
	static verbs::Easing of(SCMachineBase *machine, const SCMachineAction *action) {
		verbs::Easing made;
		made.transition = Tween::TransitionType(int(checked::choice<CurveField>(machine, action, LINEAR)));
		made.ease = Tween::EaseType(int(checked::choice<EasingField>(machine, action, EASE_IN_OUT)));
		return made;
	}

	// How far along a change is after so many seconds of so many: from 0 to 1, which some shapes swing past.
	template <auto CurveField, auto EasingField>
	static double share(SCMachineBase *machine, const SCMachineAction *action, double elapsed, double duration) {
		const verbs::Easing shape = of<CurveField, EasingField>(machine, action);
		return Tween::interpolate_value(0.0, 1.0, elapsed, duration, shape.transition, shape.ease);
	}
};

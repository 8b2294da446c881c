#pragma once

// Bases for what runtimes do alike. Each calls static functions of the class that derives from it, so that a runtime holds its
// own intent and nothing else.

#include "action/shared_verbs.hpp"

// A runtime that does the same work on entering and, repeating, on every tick. The derived class has
// `static void work(SCMachineBase *, SCMachineAction *, int index, double delta)`, with a delta of 0 on entering.
template <class Derived>
class OnceOrRepeating : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		Derived::work(machine, action, index, 0.0);
		verbs::finish_unless_repeating(machine, action, index, here);
	}
	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		if (action->repeats()) {
			Derived::work(machine, action, index, delta);
		}
	}
};

// A runtime that moves one property of a node to a value, at once or over a while, and is finished when it is there. The derived
// class has `static PropertyMove plan(SCMachineBase *, SCMachineAction *, int index)`; a move without a node finishes at once.
struct PropertyMove {
	Node *node = nullptr;
	NodePath property;
	Variant to;
	double seconds = 0.0;
	verbs::Easing easing;
};

template <class Derived>
class MovesAProperty : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		const PropertyMove move = Derived::plan(machine, action, index);
		if (!here) {
			return;
		}
		if (move.node == nullptr) {
			machine->finish(index);
		} else {
			verbs::tween_property(machine, index, move.node, move.property, move.to, move.seconds, move.easing);
		}
	}
};

// A runtime that finds a node and keeps what it says of it in a variable, once or on every tick. The derived class has
// `static Variant ask(SCMachineBase *, SCMachineAction *, Wanted *node)`, and `A_WANTED` and `WHAT` for the sentences: "a Path3D",
// "the distance". An answer of nil keeps nothing.
template <class Derived, class Wanted, auto Path, auto Store>
class AsksANode : public OnceOrRepeating<Derived> {
public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		Wanted *node = verbs::node_or_warn_as<Path, Wanted>(machine, action, Derived::A_WANTED);
		if (node == nullptr) {
			return;
		}
		const StillHere here(machine);
		const Variant answer = Derived::ask(machine, action, node);
		if (here && answer.get_type() != Variant::NIL) {
			verbs::keep<Store>(machine, action, answer, Derived::WHAT);
		}
	}
};

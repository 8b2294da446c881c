#pragma once

// The yardstick of the fast lane: a loop over an array that makes the engine calls which a job cannot do without, and
// nothing else. A chase is three look-ups, two positions read and one written; a check two look-ups and a position read.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/templates/local_vector.hpp>

class BenchBareLane : public godot::Node {
	GDCLASS(BenchBareLane, godot::Node)

public:
	// All bodies of a lane are of one kind. Written out: calls the C interface itself, without the bindings.
	void open(bool in_3d, bool written_out);
	void add_chase(godot::Node *machine, godot::Node *body, godot::Node *target);
	void add_check(godot::Node *machine, godot::Node *body);
	void clear();

	void _process(double delta) override;

protected:
	static void _bind_methods();

private:
	struct Chase {
		uint64_t machine;
		uint64_t body;
		uint64_t target;
	};
	struct Check {
		uint64_t machine;
		uint64_t body;
	};

	template <class Engine>
	void run();

	bool is_in_3d = false;
	bool is_written_out = false;
	godot::LocalVector<Chase> chases;
	godot::LocalVector<Check> checks;
	// What was found, so that no compiler thinks a check is for nothing.
	int64_t near = 0;
};

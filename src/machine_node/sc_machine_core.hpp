#pragma once

// The bare skeleton of a machine: states, and events that lead from one to the next, with no actions,
// variables or states inside states. It shows what events alone cost, and has the means to measure
// what reading a property or calling a method costs beside that.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>

using namespace godot;

class SCMachineCore : public Node {
	GDCLASS(SCMachineCore, Node)

public:
	~SCMachineCore() override;

	void set_design(const Ref<Resource> &new_design);
	Ref<Resource> get_design() const { return design; }
	void send_event(const StringName &event);
	static void broadcast_everywhere(const StringName &event);
	StringName get_current_state() const;
	int64_t get_changes() const { return changes; }

	// How long one of them takes on average, in nanoseconds.
	static double time_gets(Object *object, const StringName &property, int64_t times);
	static double time_calls(Object *object, const StringName &method, int64_t times);

	static void free_shared();

protected:
	static void _bind_methods();
	void _notification(int what);

private:
	static constexpr int NOWHERE = -1;

	// What a design comes down to.
	struct Skeleton {
		// The names of the states.
		LocalVector<StringName> rows;
		// Event to where it leads, by row.
		HashMap<StringName, LocalVector<int>> ways;
		int start_row = NOWHERE;

		explicit Skeleton(const Ref<Resource> &design);
	};

	void join();
	void leave();
	bool is_row(int row) const { return row >= 0 && row < int(skeleton.rows.size()); }

	Ref<Resource> design;
	Skeleton skeleton{ Ref<Resource>() };
	int current_row = NOWHERE;
	int64_t changes = 0;
	// The id it stands in the registry by, 0 while it does not.
	uint64_t registered_as = 0;
};

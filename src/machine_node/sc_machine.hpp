#pragma once

// The node a game maker adds under the thing it drives. It owns what is edited in the inspector, turns
// that into a design and starting values, starts the machine and lets it go with the scene. Running is
// the base's business; the work here is split by subject over machine_node/.

#include "design/sc_machine_template.hpp"
#include "machine/on_first_use.hpp"
#include "machine_node/sc_machine_base.hpp"
#include "settings/class_table.hpp"

#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/hash_set.hpp>
#include <godot_cpp/variant/node_path.hpp>
#include <godot_cpp/variant/typed_dictionary.hpp>

using namespace godot;

class SCMachine : public SCMachineBase {
	GDCLASS(SCMachine, SCMachineBase)
	SC_FIELDS

public:
	// How many states an inline design may pass through in one run of moves; a template says its own.
	static constexpr int LOOP_INCREMENT_LIMIT = 50;

	Ref<SCMachineTemplate> machine_template;
	NodePath target_path;
	bool autostart = true;
	Ref<SCMachineState> initial_state;
	OnFirstUse<TypedDictionary<StringName, Variant>> handed_values;
	OnFirstUse<TypedDictionary<StringName, Variant>> starting_values;

	void set_machine_template(const Ref<SCMachineTemplate> &given);
	Ref<SCMachineTemplate> get_machine_template() const { return machine_template; }
	void set_states(const TypedArray<SCMachineState> &list) { states = list; }
	TypedArray<SCMachineState> get_states() const;
	void set_variables(const TypedArray<SCMachineVariable> &list) { variables = list; }
	TypedArray<SCMachineVariable> get_variables() const;
	// Bound without their types, as the engine prints an error for "Variant" among them as it compiles a typed script.
	void set_handed_values(const Dictionary &given) { handed_values = TypedDictionary<StringName, Variant>(given); }
	Dictionary get_handed_values() const { return handed_values; }
	void set_starting_values(const Dictionary &given) { starting_values = TypedDictionary<StringName, Variant>(given); }
	Dictionary get_starting_values() const { return starting_values; }
	void set_physics_tick(bool on);
	bool get_physics_tick() const { return physics_tick; }
	void set_debug_log(bool on);
	bool get_debug_log() const { return debug_log; }
	void set_target(Node *node);
	// From a script, which may still hold one that has been freed.
	void take_target(const Variant &given);
	void set_values(const Dictionary &values);
	Dictionary get_values() const;

	// The scene tree's warning sign.
	PackedStringArray _get_configuration_warnings() const override;

	// starting.cpp
	void start();
	// Starts in the states, with the values and the running times that `written_down` gave.
	void start_from(const Dictionary &record);
	Dictionary written_down();
	TypedArray<SCMachineState> all_states() const;
	void register_globals(const Array &design);

	// scene_life.cpp: how a machine joins a scene and leaves it.
	bool is_switched_off() const;
	// Whether a child can be added at once. While nodes come back into the tree, or are switched on again, the engine refuses.
	static bool takes_children_now(const Node *parent);
	// Moves a node elsewhere in the tree without its machines noticing.
	static void move_node(Node *node, Node *parent, bool keep_global_transform = true);
	void let_go();
	void resume();
	void join_the_scene();
	void leave_the_scene();
	// The library goes while the engine stays, as when an editor reloads it.
	static void stop_all_before_unloading();
	void on_stopped();
	void after_step(double step);

	// lookups.cpp
	Node *target_node() const override;
	Node *node_at(const NodePath &path) override;
	bool offers(const StringName &) const override { return true; }
	static TypedArray<SCMachine> machines_in_the_scene();
	static int machines_running();
	static SCMachine *machine_of(Node *node);
	static SCMachine *machine_of_or_above(Node *node);
	void broadcast_event(const StringName &group, const StringName &event_name, const Variant &data = Variant());
	static bool is_global_event(const StringName &event_name);

	// avoidance.cpp. An engine error names its function and parameters as they are spelled here.
	void _ask_the_agent(Node *p_agent, Node *p_body);
	void on_velocity_computed(const Variant &safe, Node *agent, Node *body);

	// system_events.cpp: signals of the target that the design waits for as events.
	void connect_system_events();
	void disconnect_system_events();
	bool listen_to_system_event(const StringName &wanted);
	bool hear(Object *source, const StringName &signal_name, const Callable &handler);
	static bool make_pickable(Node *node);
	void on_visibility_changed(const StringName &wanted);
	void on_mouse_button(Object *event, const StringName &wanted);

	// Values: the work is done in machine_node/values_setup.
	bool holds_whole(const StringName &variable_name);
	void learn_limits();
	void start_attributes();
	void note_scene_start();
	static Dictionary global_values();

	// The debugger: the work is done in machine/debugger_channel.
	void report_actions();
	void report_values();

protected:
	static void _bind_methods();
	void _validate_property(PropertyInfo &property) const;
	void _notification(int what);

private:
	struct KnownNode {
		ObjectID id;
		ObjectID parent;
		StringName name;
	};

	struct AskedVelocity {
		uint64_t body = 0;
		Callable answered;
		Variant velocity;
	};

	AskedVelocity &asked_of(uint64_t agent_id, Node *agent, Node *body);

	static void bind_scene_life();
	static void bind_values();
	static void bind_system_events();
	static void bind_debugging();

	Array get_system_connections() const { return system_connections.get(); }
	Dictionary get_limits() const;
	Dictionary get_limited_by() const;
	Dictionary get_shares() const;

	// starting.cpp
	void bind_shared_data();
	void find_target();
	Dictionary claim_carried_record();
	void take_in_values(const Dictionary &record);

	// scene_life.cpp
	void become_ready();
	void leave_tree();
	void come_back();
	void start_or_hold();
	void warm_up_once();
	static void collect_moving(Node *moving, Node *at, LocalVector<ObjectID> &machines);

	void warn_never_sent(const StringName &wanted);
	void tell_of_waiting_template();

	// Made when they are asked for, while they are copies of a template's lists.
	mutable OnFirstUse<TypedArray<SCMachineState>> states;
	mutable OnFirstUse<TypedArray<SCMachineVariable>> variables;
	// What the machine was last started with, null without a template.
	Held<TemplateReading> started_with;
	// It was given another while it ran, and has not started since.
	bool template_waits = false;
	bool physics_tick = false;
	bool debug_log = false;
	ObjectID target_id;
	// Each a list of source, signal name and callable.
	OnFirstUse<Array> system_connections;
	// The mouse events whose button went down on the target and has not come up there since.
	HashSet<StringName> presses;
	HashMap<NodePath, KnownNode> known_nodes;
	// What each navigation agent was last asked for, by its id.
	HashMap<uint64_t, AskedVelocity> asked_velocities;

	// Out of the tree, or back in it and not ready yet.
	bool was_let_go = false;
	bool being_moved = false;
	// Would have started, and does once its node is enabled.
	bool start_held = false;
	// Asked to start where its target could not be found, and does once it is ready.
	bool start_wanted = false;
	// Until the start under way has taken it.
	const Dictionary *starting_from = nullptr;
	// Goes up with every start and stop, so that a start under way notices another.
	uint32_t start_count = 0;
};

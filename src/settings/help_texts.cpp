#include "settings/help_texts.hpp"

#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/object.hpp>

using namespace godot;

namespace {

constexpr char MACHINE[] = "SCMachine";
constexpr char BASE[] = "SCMachineBase";
constexpr char ACTION[] = "SCMachineAction";
constexpr char CONDITION[] = "SCMachineCondition";
constexpr char LANE[] = "SCFastLane";
constexpr char CORE[] = "SCMachineCore";
constexpr char TERRAIN[] = "SCTerrainWork";
constexpr char TEMPLATE[] = "SCMachineTemplate";
constexpr char STATE[] = "SCMachineState";
constexpr char PARALLEL[] = "SCMachineParallelState";
constexpr char TRANSITION[] = "SCMachineTransition";
constexpr char VARIABLE[] = "SCMachineVariable";
constexpr char EVENT[] = "SCMachineEvent";

constexpr HelpText CLASSES[] = {
	{ MACHINE, "",
			"Put it under the node it is to drive and press play. A script sends it events with [method SCMachineBase.send_event], reads and writes its "
			"variables with [method SCMachineBase.get_value] and [method SCMachineBase.set_value], and hears of its states from [signal "
			"state_changed].\n[codeblock]\n@onready var door: SCMachine = $Door/Machine\n\nfunc ring() -> "
			"void:\n\tdoor.send_event(&\"called\")\n\tprint(door.get_value(&\"times_opened\"))\n[/codeblock]" },
	{ ACTION, "",
			"An action of your own is a script that extends this class or one of the ready-made kinds. With a [code]class_name[/code] it is listed under Add "
			"Action. Its exported variables are its settings. One resource serves every machine that runs its state, so it keeps nothing between calls: what a "
			"machine has to remember goes into [method SCMachineBase.slot].\n[codeblock]\nclass_name FlipAction\nextends SCMachineAction\n\n@export var "
			"seconds: float = 0.3\n\nfunc _enter(m: SCMachine, index: int) -> void:\n\tvar tween := m.create_tween()\n\ttween.tween_property(m.target, "
			"^\"rotation\", PI, seconds).as_relative()\n\tm.finish_with_tween(index, tween)\n[/codeblock]" },
	{ CONDITION, "",
			"A condition of your own is a script that extends this class. With a [code]class_name[/code] it is listed under Add Condition of a Check. Its "
			"exported variables are its settings. It answers in [method _check], and keeps what it has to remember in the slot it is handed. Turning the "
			"answer round is not its business.\n[codeblock]\nclass_name IsDarkCondition\nextends SCMachineCondition\n\n@export var darker_than: float = "
			"0.2\n\nfunc _check(m: SCMachine, slot: Dictionary) -> bool:\n\treturn m.get_value(&\"light\", 1.0) < darker_than\n\nfunc _summary() -> "
			"String:\n\treturn \"It is darker than %s\" % darker_than\n[/codeblock]" },
	{ TEMPLATE, "",
			"Save it as a file and put it under Template of any number of machines. None of them changes it: each has its own values and its own place in "
			"it." },
	{ LANE, "",
			"Runs one simple job for each of many machines in one loop, which is much cheaper than an action each. Ready-made kinds use it by themselves." },
	{ CORE, "", "The part that runs a design without a scene. Add an [SCMachine] to a scene instead." },
	{ BASE, "", "What an [SCMachine] can do, apart from what it does with the scene around it." },
	{ TERRAIN, "",
			"The work of a terrain tool that would take too long in a script. It plants many things on a grid of heights, packs them for MultiMeshes, and "
			"makes what a body bumps into. It touches no node and no resource, so it may be called from any thread, and the same numbers give the same "
			"forest on every machine.\n[codeblock]\nvar trees := SCTerrainWork.place_things(heights, 129, 2.0, 0.02, 7, 10.0, 1.5, 0.6, true)\nvar pieces "
			":= SCTerrainWork.pack_things(trees, 1.0, -0.1, Color.WHITE, 0.7, 0.3, PackedColorArray(), 64.0)\nfor piece: Vector2i in pieces:\n\tvar "
			"buffer: PackedFloat32Array = pieces[piece]\n\tvar trees_here := MultiMesh.new()\n\ttrees_here.transform_format = "
			"MultiMesh.TRANSFORM_3D\n\ttrees_here.use_colors = true\n\ttrees_here.instance_count = buffer.size() / 16\n\ttrees_here.buffer = "
			"buffer\n[/codeblock]" },
};

constexpr HelpText OPERATIONS[] = {
	{ MACHINE, "start", "Starts the machine in its initial state, again from the beginning when it runs already." },
	{ MACHINE, "all_states", "Every state of the machine, those inside others too." },
	{ MACHINE, "move_node", "Gives a node another parent while the machines that work on it go on as if nothing had happened." },
	{ MACHINE, "node_at", "The node at a path seen from this machine, remembered until it goes. Null when there is none." },
	{ MACHINE, "machines_in_the_scene", "Every machine that is in the scene, whether it runs or not." },
	{ MACHINE, "machines_running", "How many machines run at this moment." },
	{ MACHINE, "machine_of", "The machine of a node: itself, its child called Machine, or its first child that is one. Null when it has none." },
	{ MACHINE, "machine_of_or_above", "The machine of a node, else that of the nearest node above that has one." },
	{ MACHINE, "broadcast_event", "Sends an event to the machine of every node in a group. One declared as global goes to every machine instead." },
	{ MACHINE, "is_global_event", "Whether some running machine declares this event as global." },
	{ MACHINE, "holds_whole", "Whether a variable was declared with a whole number, so that what is put into it is rounded." },
	{ MACHINE, "same_kind", "Whether one value may take the place of another in a variable." },
	{ MACHINE, "is_global_value", "Whether some machine declares this variable as global." },
	{ MACHINE, "global_value", "What a global variable holds, or the fallback when there is none of that name." },
	{ MACHINE, "set_global_value", "Gives a global variable a value, and tells every machine that watches it." },
	{ MACHINE, "global_names", "The names of all global variables." },
	{ MACHINE, "put_globals_back", "Gives global variables the values they started with, but those that are named keep theirs." },

	{ BASE, "stop", "Stops the machine: its states are left, and it waits to be started again." },
	{ BASE, "is_running", "Whether it has been started and not stopped since." },
	{ BASE, "find_state", "The state of this name, null when there is none." },
	{ BASE, "active_chain", "The states it is in, from the outermost to the innermost. Of states side by side it follows the first." },
	{ BASE, "active_states", "Every state it is in, those side by side too, outermost first." },
	{ BASE, "is_in_state", "Whether it is in this state, or in one inside it." },
	{ BASE, "go_to_state", "Goes to a state of its own at once, whatever its transitions say." },
	{ BASE, "restart_state", "Leaves a state and enters it again. Its actions begin anew." },
	{ BASE, "go_to", "Goes to the state of this name at once. False when it has none." },
	{ BASE, "running_state", "The state whose action is being called, else the innermost one." },
	{ BASE, "still_here",
			"Whether the state whose action is being called is still active. An action asks this after it has called anything that may have left the state." },
	{ BASE, "live_rows", "What the debugger shows: the active states with their actions." },
	{ BASE, "slot", "What this machine remembers for an action of the state, by the action's place in its list. It is empty each time the state is entered." },
	{ BASE, "condition_slot", "What this machine remembers for the condition being asked." },
	{ BASE, "ask", "Asks a condition and answers what it says, turned round where its Invert is on." },
	{ BASE, "ask_compiled", "Asks only the compiled half of a condition. False when it has none." },
	{ BASE, "progress_made", "Says that a ring of states gets on, so that it is not stopped as one that goes round for ever." },
	{ BASE, "finish", "Marks an action as finished, by its place in the state's list. When all are, the state is, and FINISHED is sent." },
	{ BASE, "finisher", "A callable that finishes an action, to be connected to a signal. It does nothing once the state has been left." },
	{ BASE, "is_finished", "Whether an action of the state has finished." },
	{ BASE, "actions_done", "Whether every action of the state has finished." },
	{ BASE, "actions_done_except", "Whether every action of the state but this one has finished." },
	{ BASE, "state_time", "Seconds since the state was entered, without the time its machine spent outside the tree or held still." },
	{ BASE, "sub_state_finished", "Whether the states inside the state have come to their end." },
	{ BASE, "previous_state", "The state it was in before, null at the start." },
	{ BASE, "last_event", "The event that led to the state. Empty when something else did." },
	{ BASE, "native_action", "Calls the compiled half of a ready-made kind, for its script." },
	{ BASE, "native_helper", "Calls one of the library's helpers by its name, for its scripts." },
	{ BASE, "send_event", "Sends the machine an event, with a value if you like. One declared as global is heard by every machine." },
	{ BASE, "send_event_from_signal", "The same for a function that answers a signal: within a physics step it waits until the step is over." },
	{ BASE, "broadcast_everywhere", "Sends an event to every machine that listens for it." },
	{ BASE, "core_is_global_event", "Whether this event is declared as global." },
	{ BASE, "set_quest_events", "Says which events the quests listen for." },
	{ BASE, "event_data", "The value that came with this event, when it is the one that led here. Null otherwise." },
	{ BASE, "last_event_data", "The value that came with the last event, null when there was none." },
	{ BASE, "last_event_sender", "The machine that sent the last event, null when a script did or when it is gone." },
	{ BASE, "note_sender", "Notes which machine sends an event, so that those who hear it can ask." },
	{ BASE, "sender_of", "The machine that was noted as the sender of an event." },
	{ BASE, "add_forwarder", "Hands every event to a callable first. When it answers true the event goes no further." },
	{ BASE, "remove_forwarder", "Ends what [method add_forwarder] began." },
	{ BASE, "press_already_used", "Whether another action has taken this press of an input for itself." },
	{ BASE, "use_press", "Takes a press of an input for itself, so that no other action answers to it too." },
	{ BASE, "get_value", "What a variable holds, or the fallback when the machine has none of that name." },
	{ BASE, "has_value", "Whether the machine has a variable of this name." },
	{ BASE, "set_value", "Gives a variable a value. It is kept within its limits, and everything that watches it is told." },
	{ BASE, "limits_of", "The least and the most that a variable may hold at this moment." },
	{ BASE, "finish_after", "Finishes an action after some seconds, and calls something first if you like. In real time it does not slow down with the game." },
	{ BASE, "finish_with_tween", "Finishes an action when a tween has ended. The tween dies with the state." },
	{ BASE, "keep_tween", "Lets a tween die with the state, without finishing anything." },
	{ BASE, "cancel_timeouts", "Drops the waiting timers that would call this, and answers how many there were." },
	{ BASE, "rest_until", "Lets an action sleep until one of these signals comes. Each entry is an object and the name of a signal." },
	{ BASE, "rest_in_lane", "Lets an action sleep while its job runs in the fast lane." },
	{ BASE, "is_resting", "Whether an action sleeps until something wakes it." },
	{ BASE, "process_mode_changed", "Says that the machine, or a node above it, has been switched on or off." },
	{ BASE, "move_character",
			"Moves a character body as the Move Character action does: gravity, then one slide, with what other actions have left on the body. Set its "
			"velocity "
			"first. In one physics frame a machine moves a body once, whoever asks. [param gravity] of 0 is the project's, [param fastest_fall] of 0 no bound, "
			"in metres a second in 3D and pixels a second in 2D. True when it was moved, or handed to its navigation agent to be moved." },
	{ BASE, "core_smooth_moved_in_physics", "Has a node that is moved in the physics frame drawn smoothly in between, in a project that leaves that off." },
	{ BASE, "core_smoothing_switched_on", "Whether physics interpolation was switched on by this library and not by the project." },
	{ BASE, "core_note_step", "Notes that a body was moved in this physics frame, for a script that moves one in a way of its own." },
	{ BASE, "set_paused", "Holds the machine still, or lets it go on. Events that come meanwhile wait." },
	{ BASE, "is_paused", "Whether it is being held still." },
	{ BASE, "step_once", "Lets a machine that is held still do one frame." },
	{ BASE, "set_measuring", "Begins or ends measuring what machines cost." },
	{ BASE, "get_measuring", "Whether what machines cost is being measured." },
	{ BASE, "get_measured_usec", "Microseconds spent in machines since measuring began." },
	{ BASE, "set_measured_usec", "Sets the measured time, to count on from there." },
	{ BASE, "get_measured_physics_usec", "Microseconds spent in machines in physics steps since measuring began." },
	{ BASE, "set_measured_physics_usec", "Sets the measured time of physics steps, to count on from there." },

	{ ACTION, "_enter", "Called as the action begins: when its state is entered, or when its turn comes after the action it waits for." },
	{ ACTION, "_update", "Called every frame, or every Update Interval, until the action has finished." },
	{ ACTION, "_exit", "Called as the state is left, whether the action has finished or not. One that never began is not called." },
	{ ACTION, "_summary", "What the action does, as a sentence with its settings in it." },
	{ ACTION, "_wants_physics", "True when it is to be called in the physics step, as what moves bodies is." },
	{ ACTION, "_uses_run_mode", "False for an action that takes time of its own. Run Mode is not shown then." },
	{ ACTION, "_finishes_as_it_starts", "True when the action is done as soon as [method _enter] has returned." },
	{ ACTION, "_works_after_finishing", "True when it goes on being updated once it has finished." },
	{ ACTION, "_needs_every_tick", "False when a longer wait between two updates does no harm." },
	{ ACTION, "_holds_its_state", "For an action that never finishes: words on what to do about that. Empty otherwise." },
	{ ACTION, "_repeats", "True when it does its work over and over." },
	{ ACTION, "_variables_to_watch", "The variables whose change wakes it while it rests." },
	{ ACTION, "_variables_read", "The variables it reads, for the check of a design. They are found by the names of its settings otherwise." },
	{ ACTION, "_variables_written", "The variables it writes, for the check of a design. They are found by the names of its settings otherwise." },
	{ ACTION, "_events_sent", "The events it sends, for the check of a design. They are found by the names of its settings otherwise." },
	{ ACTION, "_optional_names", "The settings that may stay empty without its summary lacking something." },
	{ ACTION, "_suit_2d", "Gives a fresh action the values that make sense in 2D." },
	{ ACTION, "_read_variables", "Reads the settings that come from variables, before each call of the action." },
	{ ACTION, "_live_words", "What the debugger shows beside the action while the game runs." },
	{ ACTION, "is_typed_in", "Whether a setting holds what was typed in, not what a variable holds." },
	{ ACTION, "shown_summary", "The summary as it is shown: settings that come from variables by their names in brackets." },
	{ ACTION, "variables_used", "Every variable that the action and its condition have to do with." },
	{ ACTION, "validate_setting", "Puts the inspector's rules on a description of a setting. Call it from a [code]_validate_property[/code] of your own." },
	{ ACTION, "has_enter", "Whether it does anything as it is entered." },
	{ ACTION, "has_update", "Whether it does anything while it is active." },
	{ ACTION, "has_exit", "Whether it does anything as it is left." },
	{ ACTION, "position_of", "Where a node is, in 2D or in 3D. Null for one that has no place." },
	{ ACTION, "is_2d", "Whether a node lives in 2D." },
	{ ACTION, "distance_between", "How far two nodes are from each other." },
	{ ACTION, "as_vector3", "A value as a Vector3. One from 2D gets a z of zero." },
	{ ACTION, "as_vector2", "A value as a Vector2. One from 3D loses its z." },
	{ ACTION, "number_of", "A number that is typed in, or read from a variable where one is named." },
	{ ACTION, "value_of", "A value that is typed in, or read from a variable where one is named." },
	{ ACTION, "node_of", "The node at a path seen from the machine. An empty path is the node it works on." },
	{ ACTION, "as_number", "A value as a number: zero for what is none." },
	{ ACTION, "as_truth", "A value as true or false." },
	{ ACTION, "same_value", "Whether two values are equal, numbers of either kind and texts of either kind alike." },
	{ ACTION, "number", "A number in words, without needless decimals." },
	{ ACTION, "doc_of", "The text for a setting of a class, or for the class itself." },
	{ ACTION, "is_plumbing", "Whether a property is one of those that every resource has and no list of settings shows." },
	{ ACTION, "hide_from_panels", "Takes a described setting out of the inspector." },
	{ ACTION, "show_as_any_type", "Lets a described setting take a value of any type." },
	{ ACTION, "shown_on_2d", "Whether what an object belongs to works on something in 2D." },
	{ ACTION, "set_shown_on_2d", "Says whether the editor edits something in 2D: 1 if so, 0 if not, -1 when it is not known." },
	{ ACTION, "get_shown_on_2d", "What [method set_shown_on_2d] was last told." },
	{ ACTION, "shown_on_2d_known", "Whether the editor has said what it edits." },
	{ ACTION, "kind_of", "What tells one kind from another: the script of an object, else its class." },
	{ ACTION, "kind_name", "The name of an object's kind." },
	{ ACTION, "can_be_read_from_a_variable", "The settings of a kind that can be read from a variable, by its script or its class." },
	{ ACTION, "can_be_read_from_a_variable_of", "The settings of an object that can be read from a variable." },
	{ ACTION, "twin_settings", "The settings under Read From Variables of a kind, described." },
	{ ACTION, "twin_settings_of", "The settings under Read From Variables of an object, described." },
	{ ACTION, "setting_behind", "The setting of a kind that is read from the variable named in this one." },
	{ ACTION, "setting_behind_of", "The setting of an object that is read from the variable named in this one." },
	{ ACTION, "variables_behind", "Which settings of an object are read from a variable, and from which." },
	{ ACTION, "read_variables_into", "Puts the values of variables into the settings that are read from them." },
	{ ACTION, "holds_any_type", "In the editor: whether a setting of a kind takes a value of any type." },
	{ ACTION, "naming_settings", "The settings of an object that name something: variables it reads, variables it writes, events, lists of events." },
	{ ACTION, "shown_settings", "Those of some settings that are shown at this moment and hold something." },
	{ ACTION, "names_held_in", "The names that some settings hold, each once." },
	{ ACTION, "keep_whole", "Rounds an answer where the variable that is to hold it was declared with a whole number." },
	{ ACTION, "item_in", "The item that a variable holds, null when it holds none." },
	{ ACTION, "path_to", "The path from a machine to a node." },
	{ ACTION, "can_fit", "Whether a value can be put where another was typed in." },
	{ ACTION, "fitted_to", "A value made to fit where another was typed in." },
	{ ACTION, "kind_in_words", "What kind a value is, in words." },
	{ ACTION, "is_list", "Whether a value is a list of any kind." },
	{ ACTION, "set_position_of", "Puts a node at a place." },
	{ ACTION, "has_a_place", "Whether a node is somewhere, in 2D or in 3D." },
	{ ACTION, "no_place_words", "The sentence for a node that has no place." },
	{ ACTION, "pixels_per_metre", "How many pixels in 2D stand for a metre in 3D." },
	{ ACTION, "starts_in_2d", "What settings start with in 2D, by class and setting." },
	{ ACTION, "suit_settings_2d", "Gives the settings of an object the values that they start with in 2D." },
	{ ACTION, "the_machines_own", "The settings that every action has, which no variable has a say in." },
	{ ACTION, "no_node", "The path that stands for no node at all." },
	{ ACTION, "not_picked", "The words for what has not been picked yet." },
	{ ACTION, "shown_line", "The summary of an object as it is shown." },
	{ ACTION, "has_a_hole", "Whether a summary lacks something that has not been picked." },
	{ ACTION, "summary_with_variables", "A summary with the names of variables in the place of what is typed in." },
	{ ACTION, "shown_as", "A value written in a form, such as with two decimals." },
	{ ACTION, "text_of", "A value as a text for players." },
	{ ACTION, "fill_in", "A line with the values of variables in the place of their names in braces." },
	{ ACTION, "names_in", "The names in braces in a line." },
	{ ACTION, "name_in_line", "A node's path as a summary names it." },
	{ ACTION, "property_in_line", "A property's path as a summary names it." },

	{ CONDITION, "_check", "Answers yes or no. The slot is where it remembers what it has to between two calls, one for each machine." },
	{ CONDITION, "_summary", "What is asked, as a sentence with its settings in it." },
	{ CONDITION, "_wants_physics", "True when it is to be asked in the physics step." },
	{ CONDITION, "_rest_signals",
			"The signals after which the answer may be another, each as an object and the name of a signal. A Check sleeps until one comes." },
	{ CONDITION, "_depends_only_on_variables", "True when nothing but a change of a variable can change the answer." },
	{ CONDITION, "_variables_read", "The variables it reads, for the check of a design. They are found by the names of its settings otherwise." },
	{ CONDITION, "_variables_written", "The variables it writes, for the check of a design. They are found by the names of its settings otherwise." },
	{ CONDITION, "read_variables", "Reads the settings that come from variables, before it is asked." },
	{ CONDITION, "evaluate", "Asks it the way a Check does, turned round where Invert is on." },
	{ CONDITION, "shown_summary", "The summary as it is shown: settings that come from variables by their names in brackets." },
	{ CONDITION, "validate_setting",
			"Hides a typed-in setting while the variable beside it is named. Call it from a [code]_validate_property[/code] of your own." },

	{ LANE, "add_distance_check", "Adds a job that sends an event when something comes within a distance, and another when nothing is any more." },
	{ LANE, "add_chase", "Adds a job that goes after whatever a variable holds." },
	{ LANE, "add_wander", "Adds a job that walks to random places around its home." },
	{ LANE, "remove", "Takes a job out." },
	{ LANE, "job_count", "How many jobs there are." },
	{ LANE, "step_machine", "Runs the jobs of one machine by a step." },

	{ CORE, "send_event", "Sends it an event." },
	{ CORE, "broadcast_everywhere", "Sends an event to every one that listens for it." },
	{ CORE, "get_current_state", "The name of the state it is in." },
	{ CORE, "get_changes", "How often it has changed state." },
	{ CORE, "time_gets", "Measures what reading a property costs." },
	{ CORE, "time_calls", "Measures what calling a method costs." },

	{ TERRAIN, "place_things",
			"Plants things on a square of ground. [param ground] holds its heights row by row, [param side] of them in a row and [param step] metres "
			"apart, with the middle of the square at 0. [param per_m2] is how many are wanted on a square metre. None stands within [param keep] metres of "
			"the middle, lower than [param lowest], or where the ground rises by more than [param steepest] metres a metre. [param clustered] gathers most "
			"of them in clumps. For each thing the answer holds six numbers: x, height, z, scale (0.75 to 1.35), turn (0 to a whole one, in radians) and "
			"shade (0 to 1). The same [param seed] plants the same things." },
	{ TERRAIN, "pack_things",
			"Packs what [method place_things] planted for MultiMeshes with colors, one for each piece of ground that is [param piece] metres wide: the "
			"answer leads from the piece, counted from the middle, to its buffer. [param scale_by] makes all of them bigger, and [param sink] moves them "
			"up by that share of their size, or into the ground below 0. The color is [param colour] times [param dimmest] and up to [param spread] more, "
			"by the shade; with [param dimmest] below 0 it is one of [param palette] instead, where that holds any. The shade itself is the alpha." },
	{ TERRAIN, "solid_faces",
			"The triangles that bodies bump into, for a ConcavePolygonShape3D: a trunk for each thing, [param trunk_radius] wide from its middle and "
			"[param trunk_height] tall, or with a radius of 0 a boulder of [param boulder_size] metres times its scale." },

	{ TEMPLATE, "global_event_names", "The events it declares as global." },
	{ TEMPLATE, "event_named", "The event it declares under this name, null when there is none." },
	{ TEMPLATE, "all_states", "Every state, those inside others too." },
	{ TEMPLATE, "parent_of", "The state that a state lies in, null for one at the top." },
	{ TEMPLATE, "parallel_state_of", "The set of states side by side that a state belongs to, null when it is in none." },
	{ TEMPLATE, "missing_state_names", "The names that transitions lead to and no state has." },
	{ TEMPLATE, "findings_in",
			"Looks through a template or a machine and tells what would keep it from doing what it looks like: names that lead nowhere, states that nothing "
			"leads to, variables that are not there." },

	{ STATE, "contains", "Whether a state is this one or lies anywhere inside it." },
	{ STATE, "first_sub_state", "The state inside it that is entered first, null when there is none." },
	{ STATE, "inner_starts", "The states inside it that are entered with it: one for each set of states side by side." },
	{ STATE, "inner_slot_of", "Which of its sets of states a state lies in, counted from 0. -1 when it lies in none." },
	{ PARALLEL, "first_state", "The state that is entered first, null when there is none." },
	{ PARALLEL, "contains", "Whether a state lies in this set." },
	{ TRANSITION, "finished_event", "The event that is sent when every action of a state has finished." },
	{ "SCMoveCharacterAction", "feels",
			"The ready feels: for each value of Feel an array of five numbers, how many times faster it falls than it rises, its share of gravity at the top, "
			"and "
			"its acceleration, its acceleration in the air and its fastest fall as multiples of the speed." },
	{ "SCMoveCharacterAction", "the_top_lasts", "The share of a second's gravity below which a vertical speed counts as being around the top of a jump." },
	{ "SCModifyStatAction", "run_out_later", "Takes a change of a machine's stat away after so many seconds. A time that runs already starts again." },
	{ "SCModifyStatAction", "running_out", "The changes of a machine's stats that run out, each as an array of the stat, the source and the seconds left." },
	{ "SCModifyStatAction", "forget_time", "Lets a change of a machine's stat stay that was to run out. Without a stat, those of every stat." },
	{ "SCModifyStatAction", "forget_timers", "Lets every change of a machine's stats stay that was to run out." },
	{ "SCDropLootAction", "numbers_of", "The numbers of an item that a copy may have others of, for a file that it is saved in." },
	{ "SCDropLootAction", "with_numbers", "A copy of an item with numbers of its own, as [method numbers_of] gave them." },
	{ VARIABLE, "is_number", "Whether it starts with a number, whole or not." },
	{ VARIABLE, "holds_node", "Whether it is to hold a node: it starts with nothing and is not for a resource." },
	{ VARIABLE, "starting_value_for", "What it starts with in a machine." },
	{ EVENT, "value_label", "What its value is called, or what kind it is." },
	{ EVENT, "kind_of_carries", "The kind of variable that can take the value of such an event." },
};

constexpr HelpText SIGNALS[] = {
	{ MACHINE, "state_changed",
			"The machine has entered a state. It comes before that state's actions begin. First the state it was in, which is null at the start, then the one "
			"it is in now." },
	{ MACHINE, "event_sent", "The machine was sent an event, whether it does anything about it or not. With it comes its value." },
	{ MACHINE, "state_finished", "Every action of a state has finished." },
	{ CORE, "state_changed", "It has entered another state." },
};

constexpr HelpText CONSTANTS[] = {
	{ MACHINE, "LOOP_INCREMENT_LIMIT", "How many states a machine without a template may enter in one run of moves." },
	{ BASE, "NOTHING", "It goes on when its node is carried out of the scene." },
	{ BASE, "STOP", "It stops when its node is carried out of the scene." },
	{ BASE, "START", "It starts anew when its node is carried out of the scene." },
};

// Of every kind that asks a character's senses.
constexpr HelpText SENSES[] = {
	{ "", "dealing_with",
			"The node that the action at this place of the state deals with: what its variable holds, or what the character's senses have found." },
	{ "", "warn_dealing_with", "Tells the game maker, once, when the action at this place of the state can never have anything to deal with." },
};

// What a condition offers its scripts as an action does.
constexpr const char *FORWARDED[] = { "position_of", "is_2d", "distance_between", "as_vector3", "as_vector2", "number_of", "value_of", "node_of", "as_number",
	"as_truth", "same_value", "number" };

template <size_t Count>
LocalVector<help_texts::Line> lines_of(const HelpText (&texts)[Count], const StringName &class_name) {
	LocalVector<help_texts::Line> lines;
	for (const HelpText &text : texts) {
		if (class_name == StringName(text.class_name)) {
			lines.push_back({ text.member, text.text });
		}
	}
	return lines;
}

} // namespace

LocalVector<StringName> help_texts::classes_without_settings() {
	LocalVector<StringName> classes;
	for (const char *name : { BASE, LANE, CORE, TERRAIN }) {
		classes.push_back(name);
	}
	return classes;
}

String help_texts::description_of(const StringName &class_name) {
	const LocalVector<Line> lines = lines_of(CLASSES, class_name);
	return lines.is_empty() ? String() : lines[0].text;
}

LocalVector<help_texts::Line> help_texts::operations_of(const StringName &class_name) {
	LocalVector<Line> lines;
	for (const Line &line : lines_of(OPERATIONS, class_name)) {
		lines.push_back(line);
		if (line.member.begins_with("_")) {
			const String name = line.member.substr(1);
			lines.push_back({ name, vformat("%s It is the script's [method _%s], or [method %s_default] without one.", line.text, name, name) });
			lines.push_back({ name + String("_default"), vformat("What [method %s] does without a script's [method _%s].", name, name) });
		}
	}
	if (class_name == StringName(CONDITION)) {
		for (const Line &line : lines_of(OPERATIONS, ACTION)) {
			for (const char *name : FORWARDED) {
				if (line.member == name) {
					lines.push_back(line);
				}
			}
		}
	}
	for (const HelpText &text : SENSES) {
		if (ClassDB::class_has_method(class_name, text.member, true)) {
			lines.push_back({ text.member, text.text });
		}
	}
	return lines;
}

LocalVector<help_texts::Line> help_texts::signals_of(const StringName &class_name) {
	return lines_of(SIGNALS, class_name);
}

LocalVector<help_texts::Line> help_texts::constants_of(const StringName &class_name) {
	return lines_of(CONSTANTS, class_name);
}

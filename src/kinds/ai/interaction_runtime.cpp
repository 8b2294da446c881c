// The compiled runtime of Interaction: which thing is in reach, what the player reads of it, and the press.

#include "action/add_kind.hpp"
#include "action/input_words.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "fast_lane/spots.hpp"
#include "kinds/ai/interaction.hpp"
#include "kinds/ai/interaction_prompt.hpp"
#include "machine/machine_run.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/classes/canvas_item.hpp>
#include <godot_cpp/classes/label.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/variant/packed_int64_array.hpp>
#include <godot_cpp/variant/typed_array.hpp>

namespace {

using Kind = SCInteractionAction;

struct Names {
	// In the slot: who is in the group, by id, and the group they were read from.
	StringName members = "members";
	StringName group = "group";
	// The thing on offer, 0 for none.
	StringName offered = "offered";
	// Things without a machine that were told of.
	StringName told = "told";
	// The Label that is used, 0 for none, and the path it was looked up by.
	StringName label = "label";
	StringName path = "path";
	// What the text was made of.
	StringName words = "words";
	StringName device = "device";
	StringName input = "input";

	StringName prompt = "prompt";
	StringName gamepad = "gamepad";
	StringName devices_script = "quillstead_devices";
	StringName last_used = "last_used";
	StringName input_script = "quillstead_input";
	StringName key_name = "key_name";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// As the input script counts them.
enum WhichKeys {
	ALL_KEYS,
	KEYBOARD_AND_MOUSE,
	GAMEPAD,
};

String key_name(const StringName &input, WhichKeys which) {
	const Ref<Script> script = CompanionScripts::script(names().input_script);
	return script.is_valid() ? String(script->call(names().key_name, input, int64_t(which))) : String();
}

// What is printed on what the player holds; on the other device when the input is on that alone.
String key_on(const StringName &device, const StringName &input) {
	const String key = key_name(input, device == names().gamepad ? GAMEPAD : KEYBOARD_AND_MOUSE);
	return key.is_empty() ? key_name(input, ALL_KEYS) : key;
}

StringName device_in_use(SceneTree *tree) {
	const Ref<Script> script = CompanionScripts::script(names().devices_script);
	return script.is_valid() ? StringName(script->call(names().last_used, tree)) : StringName();
}

Node *node_by(const Variant &id) {
	return Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(int64_t(id))));
}

// As the machine itself decides: the state must be in the design, and not run in another branch.
bool leads_on(MachineRun &run, const RunRow *row, const StringName &to_state) {
	const Ref<Resource> target = run.find_state(to_state);
	return target.is_valid() && (target == row->state || run.row_in(target.ptr()) == nullptr);
}

bool would_take(SCMachineBase *machine, const StringName &event) {
	MachineRun &run = machine->run();
	if (!run.is_running() || run.is_leaving()) {
		return false;
	}
	const MachineRun::Busy keep(run);
	// By number: a state that is a script's own may do anything as it is read.
	for (uint32_t i = 0; i < run.live_rows().size(); i++) {
		RunRow *row = run.live_rows()[i];
		if (!row->live) {
			continue;
		}
		for (const TransitionRow &transition : CompiledDesign::plan_of(row->state.ptr(), row->compiled, row->plan)->rows) {
			if (transition.event == event && leads_on(run, row, transition.to_state)) {
				return true;
			}
		}
	}
	return false;
}

// One update. Settings are read before anything that may run a game's code.
class Frame {
	SCMachineBase *machine;
	Kind *kind;
	int index;
	StillHere here;
	Dictionary slot;

	StringName group;
	StringName input;
	StringName event;
	String words;
	NodePath path;
	StringName variable;
	double reach;

public:
	Frame(SCMachineBase *of_machine, Kind *of_kind, int of_index) :
			machine(of_machine), kind(of_kind), index(of_index), here(of_machine), slot(of_machine->slot(of_index)), group(of_kind->usable_group),
			input(of_kind->input_action), event(of_kind->used_event), words(of_kind->prompt), path(of_kind->prompt_path), variable(of_kind->store_in),
			reach(of_kind->reach) {}

	void take() {
		const Node *player = machine->target_node();
		settle_label();
		if (!here) {
			return;
		}
		const ObjectID found = can_look(player) ? nearest(player) : ObjectID();
		if (!here) {
			return;
		}
		offer(found);
		if (!here) {
			return;
		}
		show(found);
		if (here && found.is_valid() && is_pressed()) {
			use(found);
		}
	}

private:
	void wrong(Kind::Wrong what) { verbs::say<&Kind::warn_interaction>(kind, machine, index, int64_t(what)); }

	bool can_look(const Node *player) {
		if (group.is_empty()) {
			wrong(Kind::NO_GROUP);
			return false;
		}
		if (spots::side_of(player) == spots::NOWHERE) {
			wrong(Kind::NO_PLACE);
			return false;
		}
		return player->is_inside_tree();
	}

	ObjectID nearest(const Node *player) {
		SceneTree *tree = player->get_tree();
		const uint64_t player_id = player->get_instance_id();
		ObjectID found;
		const bool same_group = StringName(slot.get(names().group, StringName())) == group;
		PackedInt64Array members = slot.get(names().members, Variant());
		if (!same_group || int64_t(tree->get_node_count_in_group(group)) != members.size() || !look_through(members, player, found)) {
			// A warning on the way may have run a game's code.
			player = Object::cast_to<Node>(ObjectDB::get_instance(player_id));
			if (!here || player == nullptr || !player->is_inside_tree()) {
				return ObjectID();
			}
			members = read_members(player->get_tree());
			look_through(members, player, found);
		}
		return found;
	}

	PackedInt64Array read_members(SceneTree *tree) {
		const TypedArray<Node> nodes = tree->get_nodes_in_group(group);
		PackedInt64Array members;
		members.resize(nodes.size());
		for (int64_t i = 0; i < nodes.size(); i++) {
			members.set(i, int64_t(Object::cast_to<Node>(nodes[i].get_validated_object())->get_instance_id()));
		}
		slot[names().members] = members;
		slot[names().group] = group;
		return members;
	}

	// False when one of them has left the group. Together with their number, that says whether the list is still right, and the
	// engine need not make one in every frame.
	bool look_through(const PackedInt64Array &members, const Node *player, ObjectID &found) {
		found = ObjectID();
		const spots::Side side = spots::side_of(player);
		Vector3 from;
		if (!spots::read(player, side, from)) {
			return true;
		}
		double limit = reach >= 0.0 ? reach * reach : -1.0;
		const int64_t *ids = members.ptr();
		for (int64_t i = 0; i < members.size(); i++) {
			Node *thing = Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(ids[i])));
			if (thing == nullptr || !thing->is_inside_tree() || !thing->is_in_group(group)) {
				return false;
			}
			Vector3 spot;
			if (thing == player || spots::side_of(thing) != side || !spots::read(thing, side, spot)) {
				continue;
			}
			const double apart = spots::apart_squared(from, spot, side, false);
			// The first of several that are equally far.
			const bool is_nearer = found.is_valid() ? apart < limit : apart <= limit;
			if (is_nearer && takes_it(thing)) {
				found = ObjectID(uint64_t(ids[i]));
				limit = apart;
			}
			if (!here) {
				return true;
			}
		}
		return true;
	}

	bool takes_it(Node *thing) {
		SCMachine *its = SCMachine::machine_of(thing);
		if (its == nullptr) {
			tell_no_machine(thing);
			return false;
		}
		return would_take(its, event);
	}

	void tell_no_machine(Node *thing) {
		Dictionary told = slot.get(names().told, Variant());
		const int64_t id = int64_t(thing->get_instance_id());
		if (!told.has(id)) {
			told[id] = true;
			slot[names().told] = told;
			verbs::say<&Kind::warn_no_machine>(kind, machine, index, thing);
		}
	}

	// Tells the variable of another thing, or of none.
	void offer(const ObjectID &found) {
		const int64_t id = int64_t(uint64_t(found));
		const Variant before = slot.get(names().offered, Variant());
		if (before.get_type() == Variant::INT && int64_t(before) == id) {
			return;
		}
		forget_text();
		slot[names().offered] = id;
		if (!here || variable.is_empty()) {
			return;
		}
		if (Node *thing = node_by(id)) {
			verbs::keep(machine, kind, variable, thing, verbs::name_of<&Kind::store_in>(), "the thing in reach");
		} else {
			verbs::let_go(machine, variable);
		}
	}

	// The Label at Prompt Path, hidden until there is something to show.
	void settle_label() {
		const Variant before = slot.get(names().path, Variant());
		const bool is_new = before.get_type() != Variant::NODE_PATH || NodePath(before) != path;
		if (!is_new && (path.is_empty() || node_by(slot.get(names().label, 0)) != nullptr)) {
			return;
		}
		forget_text();
		slot[names().path] = path;
		if (path.is_empty()) {
			return;
		}
		Label *label = Object::cast_to<Label>(machine->node_at(path));
		if (label != nullptr) {
			slot[names().label] = int64_t(label->get_instance_id());
			label->set_visible(false);
		} else if (is_new) {
			wrong(Kind::NO_LABEL);
		}
	}

	// Takes away what is shown, so that it is made anew.
	void forget_text() {
		take_away_text(machine, slot);
		slot.erase(names().device);
	}

	String words_for(Node *thing) const {
		const SCMachine *its = SCMachine::machine_of(thing);
		const Variant own = its != nullptr ? its->get_value(names().prompt) : Variant();
		return own.get_type() == Variant::STRING || own.get_type() == Variant::STRING_NAME ? String(own) : words;
	}

	void show(const ObjectID &found) {
		Node *thing = found.is_valid() ? node_by(int64_t(uint64_t(found))) : nullptr;
		if (thing == nullptr || !thing->is_inside_tree()) {
			return;
		}
		Node *label = node_by(slot.get(names().label, 0));
		if (label == nullptr && !path.is_empty()) {
			return;
		}
		const String said = words_for(thing);
		const StringName device = device_in_use(thing->get_tree());
		const Variant shown_for = slot.get(names().device, Variant());
		if (label != nullptr && shown_for.get_type() == Variant::STRING_NAME && StringName(shown_for) == device &&
				StringName(slot.get(names().input, StringName())) == input && String(slot.get(names().words, String())) == said) {
			return;
		}
		const String text = vformat("%s %s", key_on(device, input), said).strip_edges();
		slot[names().device] = device;
		slot[names().input] = input;
		slot[names().words] = said;
		if (label == nullptr) {
			label = interaction_prompt::float_over(thing, text);
			if (!here) {
				// The state was left before it was known.
				if (label != nullptr) {
					label->queue_free();
				}
				return;
			}
			slot[names().label] = label != nullptr ? int64_t(label->get_instance_id()) : 0;
			return;
		}
		interaction_prompt::set_text(label, text);
		if (path.is_empty()) {
			interaction_prompt::place_over(label, thing);
		} else if (CanvasItem *item = Object::cast_to<CanvasItem>(label)) {
			item->set_visible(true);
		}
	}

	bool is_pressed() const { return input_words::just_pressed(input) && !machine->press_already_used(input); }

	void use(const ObjectID &found) {
		SCMachine *its = SCMachine::machine_of(node_by(int64_t(uint64_t(found))));
		if (its != nullptr && !event.is_empty()) {
			machine->use_press(input);
			const Variant user = machine->target_node();
			SCMachineBase::note_sender(event, machine);
			its->send_event(event, user);
			// Held still by what came of it, as by a dialogue, it would leave its words standing.
			if (here && !machine->can_process()) {
				forget_text();
			}
		}
	}

public:
	// A Label of the game is hidden, and one over a thing goes.
	static void take_away_text(SCMachineBase *machine, Dictionary from) {
		Node *label = node_by(from.get(names().label, 0));
		if (label == nullptr) {
			return;
		}
		if (NodePath(from.get(names().path, NodePath())).is_empty()) {
			from.erase(names().label);
			interaction_prompt::take_away(label, machine);
		} else if (CanvasItem *item = Object::cast_to<CanvasItem>(label)) {
			item->set_visible(false);
		}
	}
};

class Interaction : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		Dictionary slot = machine->slot(index);
		slot.clear();
		// Asked about before the first press, so that the engine listens to it.
		const StringName input = setting_of<&Kind::input_action>(action);
		if (input_words::action_for(input).is_empty()) {
			verbs::warn(machine, action,
					vformat("nothing is called \"%s\", so nothing can be used. Pick an input under Input Action, or add it to the Input Map.", input));
		} else if (setting_of<&Kind::used_event>(action).is_empty()) {
			verbs::warn(machine, action, "it has no event to send, so nothing can be used. Type one under Used Event.");
		}
		if (here) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		if (Kind *kind = as_kind<Kind>(action)) {
			Frame(machine, kind, index).take();
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { Frame::take_away_text(machine, machine->slot(index)); }
};

const AddKinds added = {
	add_kind<SCInteractionAction, Interaction>(),
};

} // namespace

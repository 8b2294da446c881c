#include "machine/compiled_design.hpp"

#include "action/sc_action.hpp"
#include "action/sc_native_actions.hpp"
#include "design/sc_machine_state.hpp"
#include "design/sc_machine_transition.hpp"
#include "machine/names.hpp"
#include "machine/script_methods.hpp"

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/templates/hash_set.hpp>

#include <atomic>
#include <mutex>
#include <thread>
#include <utility>

namespace {

template <class Record>
class RecordTable {
	HashMap<uint64_t, Record *> current;
	HashMap<uint64_t, LocalVector<Record *>> retired;

	void retire(uint64_t state_id, Record *record) {
		record->retired = true;
		retired[state_id].push_back(record);
	}

public:
	~RecordTable() {
		for (const KeyValue<uint64_t, Record *> &entry : current) {
			memdelete(entry.value);
		}
		for (const KeyValue<uint64_t, LocalVector<Record *>> &entry : retired) {
			for (Record *record : entry.value) {
				memdelete(record);
			}
		}
	}

	// The whole staleness test: another element makes the record stale, an edited one does not.
	const Record *fresh(uint64_t state_id, const Array &source) {
		Record **found = current.getptr(state_id);
		if (found == nullptr) {
			return nullptr;
		}
		Record *record = *found;
		if (record->source.holds(source)) {
			return record;
		}
		retire(state_id, record);
		current.erase(state_id);
		return nullptr;
	}

	const Record *keep(uint64_t state_id, Record *record, const Array &source) {
		record->source.take(source);
		// Compiling asks actions about themselves, and one of them may have come back here.
		if (Record **found = current.getptr(state_id)) {
			retire(state_id, *found);
		}
		current.insert(state_id, record);
		return record;
	}

	void forget(uint64_t state_id) {
		if (Record **found = current.getptr(state_id)) {
			Record *record = *found;
			current.erase(state_id);
			memdelete(record);
		}
		if (LocalVector<Record *> *found = retired.getptr(state_id)) {
			const LocalVector<Record *> records(*found);
			retired.erase(state_id);
			for (Record *record : records) {
				memdelete(record);
			}
		}
	}
};

struct Tables {
	const std::thread::id thread = std::this_thread::get_id();
	RecordTable<StatePlan> plans;
	RecordTable<ActionTable> actions;
	// States that are not the compiled class, which says so when it goes: these are asked after.
	HashSet<uint64_t> foreign_states;

	void forget(uint64_t state_id) {
		plans.forget(state_id);
		actions.forget(state_id);
	}

	void note_foreign(uint64_t state_id) {
		if (foreign_states.has(state_id)) {
			return;
		}
		LocalVector<uint64_t> gone;
		for (const uint64_t known : foreign_states) {
			if (ObjectDB::get_instance(known) == nullptr) {
				gone.push_back(known);
			}
		}
		for (const uint64_t known : gone) {
			foreign_states.erase(known);
			forget(known);
		}
		foreign_states.insert(state_id);
	}
};

std::atomic<Tables *> tables = nullptr;

// The tables belong to the thread that the machines run on. A loader's thread may free a state as well: its records go when
// that thread next has to do with the tables.
std::mutex freed_lock;
LocalVector<uint64_t> *freed_elsewhere = nullptr;

void note_freed_elsewhere(uint64_t state_id) {
	const std::lock_guard<std::mutex> held(freed_lock);
	if (freed_elsewhere == nullptr) {
		freed_elsewhere = memnew(LocalVector<uint64_t>);
	}
	freed_elsewhere->push_back(state_id);
}

void forget_freed_elsewhere(Tables &its_tables) {
	LocalVector<uint64_t> *freed = nullptr;
	{
		const std::lock_guard<std::mutex> held(freed_lock);
		freed = std::exchange(freed_elsewhere, nullptr);
	}
	if (freed == nullptr) {
		return;
	}
	// What a record keeps may end with it, and be a state itself.
	for (const uint64_t state_id : *freed) {
		its_tables.forget(state_id);
	}
	memdelete(freed);
}

Tables &shared_tables() {
	if (tables == nullptr) {
		tables = memnew(Tables);
	}
	forget_freed_elsewhere(*tables);
	return *tables;
}

TransitionRow transition_row(const Variant &element) {
	TransitionRow row;
	Object *object = element.get_type() == Variant::OBJECT ? element.get_validated_object() : nullptr;
	if (object == nullptr) {
		return row;
	}
	if (const SCMachineTransition *transition = Object::cast_to<SCMachineTransition>(object)) {
		row.event = transition->event;
		row.to_state = transition->to_state;
		row.store_data_in = transition->store_data_in;
		return row;
	}
	const MachineNames &names = MachineNames::shared();
	row.event = object->get(names.event);
	row.to_state = object->get(names.to_state);
	row.store_data_in = object->get(names.store_data_in);
	return row;
}

StatePlan *compile_plan(const Resource *state, const SCMachineState *compiled, const Array &transitions) {
	const MachineNames &names = MachineNames::shared();
	StatePlan *plan = memnew(StatePlan);
	for (int64_t i = 0; i < transitions.size(); i++) {
		plan->rows.push_back(transition_row(transitions[i]));
		plan->has_finished = plan->has_finished || plan->rows[i].event == names.finished_event;
	}
	if (compiled != nullptr) {
		plan->end_state = compiled->is_end_state;
		plan->pause_here = compiled->pause_here;
		plan->name = compiled->state_name;
	} else {
		plan->end_state = state->get(names.is_end_state).booleanize();
		plan->pause_here = state->get(names.pause_here).booleanize();
		plan->name = state->get(names.state_name);
	}
	return plan;
}

ActionEntry action_entry(const Variant &element, PackedStringArray &watched) {
	ActionEntry entry;
	Object *object = element.get_type() == Variant::OBJECT ? element.get_validated_object() : nullptr;
	// The table keeps its actions alive by reference, so only what is counted can stand in it.
	if (Object::cast_to<RefCounted>(object) == nullptr) {
		return entry;
	}
	entry.object = object;
	entry.compiled = Object::cast_to<SCMachineAction>(object);
	entry.runtime = SCNativeActions::of_action(object);
	if (SCMachineAction *action = entry.compiled) {
		entry.disabled = &action->disabled;
		action->note_kind_alone(entry.runtime != nullptr);
		entry.wants_physics = action->wants_physics();
		entry.needs_every_tick = action->has_update() && action->needs_every_tick();
		entry.works_after_finishing = action->works_after_finishing();
		entry.has_exit = action->has_exit();
		entry.finishes_as_it_starts = entry.runtime == nullptr && action->finishes_as_it_starts();
		watched = action->variables_to_watch();
		return entry;
	}
	const MachineNames &names = MachineNames::shared();
	entry.wants_physics = object->get(names.wants_physics).booleanize();
	entry.needs_every_tick = ScriptMethods::overrides(object, names.update) && object->get(names.needs_every_tick).booleanize();
	entry.works_after_finishing = object->get(names.works_after_finishing).booleanize();
	entry.has_exit = ScriptMethods::overrides(object, names.exit);
	const Variant to_watch = object->get(names.variables_to_watch);
	if (to_watch.get_type() == Variant::PACKED_STRING_ARRAY || to_watch.get_type() == Variant::ARRAY) {
		watched = to_watch;
	}
	return entry;
}

ActionTable *compile_actions(const Array &actions) {
	ActionTable *table = memnew(ActionTable);
	table->kept = actions.duplicate();
	for (int64_t i = 0; i < table->kept.size(); i++) {
		PackedStringArray watched;
		const ActionEntry entry = action_entry(table->kept[i], watched);
		table->actions.push_back(entry);
		if (entry.has_exit) {
			table->exit_rows.push_back(int(i));
		}
		for (int64_t w = 0; w < watched.size(); w++) {
			LocalVector<int> &rows = table->watches[StringName(watched[w])];
			if (rows.is_empty() || rows[rows.size() - 1] != int(i)) {
				rows.push_back(int(i));
			}
		}
	}
	return table;
}

} // namespace

const StatePlan *CompiledDesign::plan_of(Resource *state, const SCMachineState *compiled, const StatePlan *known) {
	if (compiled != nullptr && known != nullptr && !known->retired && known->source.holds(compiled->transitions)) {
		return known;
	}
	const Array transitions = compiled != nullptr ? Array(compiled->transitions) : Array(state->get(MachineNames::shared().transitions));
	const uint64_t id = state->get_instance_id();
	if (const StatePlan *found = shared_tables().plans.fresh(id, transitions)) {
		return found;
	}
	StatePlan *plan = compile_plan(state, compiled, transitions);
	if (compiled == nullptr) {
		shared_tables().note_foreign(id);
	}
	return shared_tables().plans.keep(id, plan, transitions);
}

const ActionTable *CompiledDesign::actions_of(Resource *state, const SCMachineState *compiled, const ActionTable *known) {
	if (compiled != nullptr && known != nullptr && !known->retired && known->source.holds(compiled->actions)) {
		return known;
	}
	const Array actions = compiled != nullptr ? Array(compiled->actions) : Array(state->get(MachineNames::shared().actions));
	const uint64_t id = state->get_instance_id();
	if (const ActionTable *found = shared_tables().actions.fresh(id, actions)) {
		return found;
	}
	ActionTable *table = compile_actions(actions);
	if (compiled == nullptr) {
		shared_tables().note_foreign(id);
	}
	return shared_tables().actions.keep(id, table, actions);
}

void CompiledDesign::forget_state(uint64_t state_id) {
	Tables *its_tables = tables;
	if (its_tables == nullptr) {
		return;
	}
	if (std::this_thread::get_id() == its_tables->thread) {
		its_tables->forget(state_id);
	} else {
		note_freed_elsewhere(state_id);
	}
}

void CompiledDesign::free_shared() {
	// The last reference to a state may lie in a table, and a state that ends asks for its records here.
	Tables *former = tables;
	tables = nullptr;
	if (former != nullptr) {
		forget_freed_elsewhere(*former);
		memdelete(former);
	}
}

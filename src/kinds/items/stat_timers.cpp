#include "kinds/items/stat_timers.hpp"

#include "action/values.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/scene_tree_timer.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/variant/callable_custom.hpp>

namespace stat_timers {

namespace {

struct Key {
	StringName stat;
	String source;

	bool operator==(const Key &other) const { return stat == other.stat && source == other.source; }
	static uint32_t hash(const Key &key) { return hash_murmur3_one_32(key.source.hash(), key.stat.hash()); }
};

using Timers = HashMap<Key, Ref<SceneTreeTimer>, Key>;

struct Table {
	inline static bool is_open = false;

	HashMap<uint64_t, Timers> of_machines;

	StringName timeout = "timeout";
	StringName script = "quillstead_stats";
	StringName take_away = "take_away";

	Table() { is_open = true; }
	~Table() { is_open = false; }
};

Table &table() {
	return const_cast<Table &>(NativeNames::of<Table>());
}

Timers *timers_of(uint64_t machine_id) {
	return table().of_machines.getptr(machine_id);
}

void erase(uint64_t machine_id, const Key &key) {
	HashMap<uint64_t, Timers> &of_machines = table().of_machines;
	if (Timers *timers = of_machines.getptr(machine_id)) {
		timers->erase(key);
		if (timers->is_empty()) {
			of_machines.erase(machine_id);
		}
	}
}

// One that nothing waits for any more has no reason to go on.
void let_go(const Ref<SceneTreeTimer> &timer) {
	timer->set_time_left(0.0);
}

// The end of a timer. One that was forgotten, or has started again as another, changes nothing.
class RunsOut final : public CallableCustom {
	uint64_t machine_id;
	Key key;
	uint64_t timer_id;

	// By the table and by mine().
	static constexpr int HELD_HERE = 2;

	// Null when another has started in its place.
	Ref<SceneTreeTimer> mine() const {
		const Timers *timers = Table::is_open ? timers_of(machine_id) : nullptr;
		const Ref<SceneTreeTimer> *timer = timers != nullptr ? timers->getptr(key) : nullptr;
		return timer != nullptr && (*timer)->get_instance_id() == timer_id ? *timer : Ref<SceneTreeTimer>();
	}

	static bool same(const CallableCustom *left, const CallableCustom *right) {
		return static_cast<const RunsOut *>(left)->timer_id == static_cast<const RunsOut *>(right)->timer_id;
	}
	static bool before(const CallableCustom *left, const CallableCustom *right) {
		return static_cast<const RunsOut *>(left)->timer_id < static_cast<const RunsOut *>(right)->timer_id;
	}

public:
	RunsOut(const SCMachineBase *machine, const Key &of, const SceneTreeTimer *timer) :
			machine_id(machine->get_instance_id()), key(of), timer_id(timer->get_instance_id()) {}

	// It goes with its timer, or before it when the machine is freed.
	~RunsOut() override {
		const Ref<SceneTreeTimer> timer = mine();
		// One that only this holds is in the middle of a call from here.
		if (timer.is_valid() && timer->get_reference_count() > HELD_HERE) {
			let_go(timer);
			erase(machine_id, key);
		}
	}

	uint32_t hash() const override { return uint32_t(timer_id ^ (timer_id >> 32)); }
	String get_as_text() const override { return "Modify Stat: run out"; }
	CompareEqualFunc get_compare_equal_func() const override { return &same; }
	CompareLessFunc get_compare_less_func() const override { return &before; }
	bool is_valid() const override { return true; }
	ObjectID get_object() const override { return ObjectID(machine_id); }

	void call(const Variant **, int, Variant &answer, GDExtensionCallError &error) const override {
		error.error = GDEXTENSION_CALL_OK;
		answer = Variant();
		auto *machine = Object::cast_to<SCMachineBase>(ObjectDB::get_instance(machine_id));
		if (machine == nullptr || mine().is_null()) {
			return;
		}
		// Kept here, as this may go with its timer.
		const Key ended = key;
		erase(machine_id, ended);
		CompanionScripts::call(table().script, table().take_away, Array::make(machine, ended.stat, ended.source));
	}
};

} // namespace

void run_out_later(SCMachineBase *machine, const StringName &stat, const String &source, double seconds) {
	if (machine == nullptr) {
		values::report_null("run_out_later", "p_machine");
		return;
	}
	SceneTree *tree = machine->is_inside_tree() ? machine->get_tree() : nullptr;
	if (tree == nullptr) {
		values::report_null("run_out_later", "tree");
		return;
	}
	// A time that is no number would never be over.
	const double wait = seconds > 0.0 ? seconds : 0.0;
	const uint64_t machine_id = machine->get_instance_id();
	const Key key = { stat, source };
	if (const Timers *timers = timers_of(machine_id)) {
		const Ref<SceneTreeTimer> *running = timers->getptr(key);
		if (running != nullptr) {
			(*running)->set_time_left(wait);
			return;
		}
	}
	// The second argument holds it while the game is paused.
	const Ref<SceneTreeTimer> timer = tree->create_timer(wait, false);
	table().of_machines[machine_id][key] = timer;
	timer->connect(table().timeout, Callable(memnew(RunsOut(machine, key, timer.ptr()))));
}

Array running_out(SCMachineBase *machine) {
	Array rows;
	if (machine == nullptr) {
		values::report_null("running_out", "p_machine");
		return rows;
	}
	if (const Timers *timers = timers_of(machine->get_instance_id())) {
		for (const KeyValue<Key, Ref<SceneTreeTimer>> &row : *timers) {
			const double left = row.value->get_time_left();
			if (left > 0.0) {
				rows.push_back(Array::make(row.key.stat, row.key.source, left));
			}
		}
	}
	return rows;
}

void forget_time(SCMachineBase *machine, const StringName &stat, const String &source) {
	if (machine == nullptr) {
		values::report_null("forget_time", "p_machine");
		return;
	}
	const Timers *timers = timers_of(machine->get_instance_id());
	if (timers == nullptr) {
		return;
	}
	LocalVector<Key> ended;
	if (!stat.is_empty()) {
		ended.push_back({ stat, source });
	} else {
		for (const KeyValue<Key, Ref<SceneTreeTimer>> &row : *timers) {
			if (row.key.source == source) {
				ended.push_back(row.key);
			}
		}
	}
	for (const Key &key : ended) {
		if (const Ref<SceneTreeTimer> *timer = timers->getptr(key)) {
			let_go(*timer);
		}
	}
	for (const Key &key : ended) {
		erase(machine->get_instance_id(), key);
	}
}

void forget_timers(SCMachineBase *machine) {
	if (machine == nullptr) {
		values::report_null("forget_timers", "p_machine");
		return;
	}
	if (const Timers *timers = timers_of(machine->get_instance_id())) {
		for (const KeyValue<Key, Ref<SceneTreeTimer>> &row : *timers) {
			let_go(row.value);
		}
		table().of_machines.erase(machine->get_instance_id());
	}
}

} // namespace stat_timers

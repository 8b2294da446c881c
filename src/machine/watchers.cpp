// Telling actions that a variable they watch has been written.

#include "machine/companion_scripts.hpp"
#include "machine/engine_frame.hpp"
#include "machine/machine_run.hpp"
#include "machine_node/sc_machine_base.hpp"

namespace {

// A watcher that writes what it watches is told again from within; this is where that ends.
constexpr uint32_t MOST_NESTED_TELLINGS = 50;
// However they are nested, and in whichever machines: as much as one write may set off.
constexpr int64_t MOST_WATCHERS_CALLED = 100'000;

// All that one write from outside sets off, in every machine that it reaches.
class TellingUnderWay {
	static int depth;
	static int64_t watchers_called;

public:
	static uint64_t number;

	TellingUnderWay() {
		if (depth++ == 0) {
			number++;
			watchers_called = 0;
		}
	}
	~TellingUnderWay() { depth--; }
	TellingUnderWay(const TellingUnderWay &) = delete;
	TellingUnderWay &operator=(const TellingUnderWay &) = delete;

	static bool may_call(SCMachineBase *machine) {
		if (++watchers_called > MOST_WATCHERS_CALLED && machine != nullptr) {
			MakerWarnings::once_for(machine, "watchers without end",
					vformat("Machine on %s: one change of a variable set off %d more, each because of another, so the actions that wait for changes have not "
							"been told of the rest. Look for actions that write a variable which one of them waits for.",
							machine->name_in_messages(), MOST_WATCHERS_CALLED));
		}
		return watchers_called <= MOST_WATCHERS_CALLED;
	}
};

int TellingUnderWay::depth = 0;
int64_t TellingUnderWay::watchers_called = 0;
uint64_t TellingUnderWay::number = 0;

} // namespace

// Rows made after `up_to_serial` are left out; a negative one leaves out none.
void MachineRun::tell_watchers(const StringName &name, int64_t up_to_serial) {
	const TellingUnderWay under_way;
	if (values.being_told.size() >= MOST_NESTED_TELLINGS) {
		values.went_too_deep_in = TellingUnderWay::number;
		return;
	}
	// Two watchers that answer one another would be told twice as often at each depth: once the deepest has been reached, what
	// is being told already is not told again on the way back.
	if (values.went_too_deep_in == TellingUnderWay::number && values.being_told.has(name)) {
		return;
	}
	Busy keep(*this);
	const StringName kept_name = name;
	values.being_told.push_back(kept_name);
	bool something_finished = false;
	{
		ScratchLists<RunRow *>::Borrowed pass(RunScratch::shared().rows);
		for (RunRow *row : live_rows()) {
			if (row->table->watches.has(kept_name) && (up_to_serial < 0 || row->serial <= up_to_serial)) {
				pass.list.push_back(row);
			}
		}
		for (RunRow *row : pass.list) {
			if (!running) {
				break;
			}
			if (row->live) {
				// A table never changes and outlives its rows, so its list of watchers needs no copy.
				something_finished = tell_row(row, *row->table->watches.getptr(kept_name)) || something_finished;
			}
		}
	}
	values.being_told.resize(values.being_told.size() - 1);
	if (something_finished && running) {
		refresh_lanes();
	}
}

// Answers whether an action has finished by it.
bool MachineRun::tell_row(RunRow *row, const LocalVector<int> &watchers) {
	RunningAs as(*this, row);
	bool something_finished = false;
	for (const int action : watchers) {
		const bool was_finished = row->runs[action].finished;
		if (!row->runs[action].started || is_disabled(row->table->actions[action])) {
			continue;
		}
		if (!TellingUnderWay::may_call(node)) {
			return something_finished;
		}
		call_update(row, action, 0.0);
		if (!running || !row->live) {
			return something_finished;
		}
		if (was_finished || !row->runs[action].finished) {
			continue;
		}
		something_finished = true;
		start_next_actions(row, action, EngineFrame::now().in_physics ? LANE_PHYSICS : LANE_FRAME);
		if (!running || !row->live) {
			return something_finished;
		}
		check_state_finished(row);
		if (!running || !row->live) {
			return something_finished;
		}
	}
	return something_finished;
}

void MachineRun::tell_every_watcher() {
	LocalVector<StringName> names;
	for (const RunRow *row : live_rows()) {
		for (const KeyValue<StringName, LocalVector<int>> &watch : row->table->watches) {
			if (!names.has(watch.key)) {
				names.push_back(watch.key);
			}
		}
	}
	tell_watchers_of(names);
}

void MachineRun::tell_pending_watchers() {
	LocalVector<StringName> names;
	for (const StringName &name : values.pending_watchers) {
		names.push_back(name);
	}
	values.pending_watchers.clear();
	tell_watchers_of(names);
}

void MachineRun::tell_watchers_of(const LocalVector<StringName> &names) {
	Busy keep(*this);
	for (const StringName &name : names) {
		if (!running || holds_writes()) {
			return;
		}
		tell_watchers(name);
	}
}

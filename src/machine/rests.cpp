// Waiting on something else: an action that rests is off its lane until a signal wakes it, or for as
// long as the fast lane does its work.

#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine/row_records.hpp"
#include "machine/run_call.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/core/object.hpp>

bool MachineRun::may_rest(int action) const {
	return running_row != nullptr && running_row->live && node != nullptr && action >= 0 && action < running_row->action_count() &&
			!running_row->rests_at(action);
}

void MachineRun::rest_until(int action, const Array &wakers) {
	if (!may_rest(action)) {
		return;
	}
	Busy keep(*this);
	RunRow *row = running_row;
	const Callable wake = RunCall::make(RunCall::WAKE, node, row->serial, action);
	Rest rest;
	for (int64_t i = 0; i < wakers.size(); i++) {
		const Array waker = wakers[i].get_type() == Variant::ARRAY ? Array(wakers[i]) : Array();
		if (waker.size() < 2) {
			continue;
		}
		Object *source = waker[0].get_validated_object();
		const StringName signal_name = waker[1].stringify();
		if (source == nullptr || !source->has_signal(signal_name) || source->is_connected(signal_name, wake)) {
			continue;
		}
		source->connect(signal_name, wake);
		SignalRest signal;
		signal.source = ObjectID(source->get_instance_id());
		signal.signal_name = signal_name;
		signal.call = wake;
		rest.signals.push_back(signal);
	}
	// An action that nothing could wake goes on being called.
	if (rest.signals.is_empty()) {
		return;
	}
	row->rests.insert(action, rest);
	refresh_lanes();
}

void MachineRun::rest_in_lane(int action, Object *fast_lane, int64_t job) {
	if (fast_lane == nullptr || job < 0 || !may_rest(action)) {
		return;
	}
	Busy keep(*this);
	Rest rest;
	rest.job = job;
	rest.lane = ObjectID(fast_lane->get_instance_id());
	running_row->rests.insert(action, rest);
	refresh_lanes();
}

bool MachineRun::is_resting(int action) {
	const RunRow *row = running_or_last();
	return row != nullptr && row->rests_at(action);
}

// Only the rest is over: what the waking means is for the action's next update to find out.
void MachineRun::wake_resting(int64_t serial, int action) {
	RunRow *row = row_of_serial(serial);
	if (row == nullptr) {
		return;
	}
	Busy keep(*this);
	Rest rest;
	if (!row_records::take(row->rests, action, rest)) {
		return;
	}
	cancel_rest(rest);
	if (row->live && running) {
		refresh_lanes();
	}
}

void MachineRun::cancel_rest(Rest &rest) {
	for (const SignalRest &signal : rest.signals) {
		Object *source = ObjectDB::get_instance(signal.source);
		if (source != nullptr && source->is_connected(signal.signal_name, signal.call)) {
			source->disconnect(signal.signal_name, signal.call);
		}
	}
	if (rest.job < 0) {
		return;
	}
	Object *lane = ObjectDB::get_instance(rest.lane);
	const StringName &drop_job = MachineNames::shared().drop_job;
	if (lane != nullptr && lane->has_method(drop_job)) {
		lane->call(drop_job, rest.job);
	}
}

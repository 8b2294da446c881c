// What one job does in one step, kind by kind.

#include "machine/names.hpp"
#include "sc_fast_lane.hpp"
#include "sc_machine_base.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

constexpr int EXTRA_PICKS = 8;

// The last thing that a step does.
void send(Object *machine, const StringName &event) {
	if (!event.is_empty()) {
		machine->call(MachineNames::shared().send_event, event);
	}
}

void send(Object *machine, const StringName &event, Object *data) {
	if (!event.is_empty()) {
		machine->call(MachineNames::shared().send_event, event, data);
	}
}

// A job goes on only while the actions of its machine would.
bool stands_still(const Object *machine, const FastLaneJob &job) {
	if (job.machine_is_node) {
		const Node *node = static_cast<const Node *>(machine);
		if (!node->is_inside_tree() || !node->can_process()) {
			return true;
		}
	}
	return job.machine_has_values && static_cast<const SCMachineBase *>(machine)->is_paused();
}

bool is_within(const FastLaneJob &job, const Vector3 &from, spots::Side side, const Vector3 &spot) {
	// What is in 2D and what is in 3D are nowhere near each other.
	if ((job.body_side == spots::IN_2D) != (side == spots::IN_2D)) {
		return false;
	}
	const double apart = side == spots::IN_3D && job.ignore_height ? spots::flat_distance(from, spot, side) : spots::full_distance(from, spot);
	return apart <= job.distance;
}

} // namespace

void SCFastLane::run(uint32_t number, double delta, bool by_hand) {
	FastLaneJob &job = jobs[number];
	Object *machine = ObjectDB::get_instance(job.machine);
	if (machine == nullptr) {
		end(number, true);
		return;
	}
	Object *body = job.body_is_node ? ObjectDB::get_instance(job.body) : nullptr;
	if (body == nullptr) {
		end(number, false);
		return;
	}
	if (!by_hand && stands_still(machine, job)) {
		return;
	}
	switch (job.kind) {
		case FastLaneJob::DISTANCE_CHECK:
			check_distance(job, machine, body);
			break;
		case FastLaneJob::CHASE:
			chase(job, machine, body, delta);
			break;
		case FastLaneJob::WANDER:
			wander(job, body, delta);
			break;
	}
}

void SCFastLane::check_distance(FastLaneJob &job, Object *machine, Object *body) {
	Vector3 from;
	if (!spots::read(body, job.body_side, from)) {
		return;
	}
	bool answer = false;
	if (job.has_to_node) {
		const Object *to = job.to_side != spots::NOWHERE ? ObjectDB::get_instance(job.to_node) : nullptr;
		Vector3 spot;
		answer = to != nullptr && spots::read(to, job.to_side, spot) && is_within(job, from, job.to_side, spot);
	} else {
		const uint64_t clock = frame_steps + physics_steps + steps_by_hand + 1;
		const uint64_t own_id = job.body;
		for (const GroupSnapshots::Member &member : groups.members(job.group, this, clock)) {
			if (member.id != own_id && is_within(job, from, member.side, member.spot)) {
				answer = true;
				break;
			}
		}
	}
	if (int(answer) == job.last) {
		return;
	}
	job.last = int(answer);
	send(machine, answer ? job.true_event : job.false_event);
}

void SCFastLane::chase(FastLaneJob &job, Object *machine, Object *body, double delta) {
	Object *target = job.machine_has_values ? static_cast<SCMachineBase *>(machine)->get_value(job.target_variable).get_validated_object() : nullptr;
	const spots::Side target_side = spots::side_of(target);
	Vector3 from;
	Vector3 to;
	if (target_side == spots::NOWHERE || !spots::read(target, target_side, to) || !spots::read(body, job.body_side, from)) {
		job.there = false;
		return;
	}
	if (job.stop_within < spots::flat_distance(from, to, job.body_side)) {
		job.there = false;
		spots::put(body, job.body_side, spots::step_toward(from, to, job.body_side, job.speed, delta));
	} else if (!job.there) {
		job.there = true;
		send(machine, job.reached_event, target);
	}
}

void SCFastLane::wander(FastLaneJob &job, Object *body, double delta) {
	if (!job.walking) {
		job.waited += delta;
		if (job.waited < job.pause) {
			return;
		}
	}
	Vector3 from;
	if (!spots::read(body, job.body_side, from)) {
		return;
	}
	if (!job.walking) {
		job.place = spots::random_around(job.home, job.radius, job.body_side);
		for (int i = 0; i < EXTRA_PICKS && spots::flat_distance(from, job.place, job.body_side) <= job.arrive_within; i++) {
			job.place = spots::random_around(job.home, job.radius, job.body_side);
		}
		job.walking = true;
	}
	if (job.arrive_within < spots::flat_distance(from, job.place, job.body_side)) {
		spots::put(body, job.body_side, spots::step_toward(from, job.place, job.body_side, job.speed, delta));
		return;
	}
	job.walking = false;
	job.waited = 0.0;
	job.pause = job.pause_for + UtilityFunctions::randf() * job.extra_pause;
}

// A pass over the jobs, and what one job does in one step, kind by kind.

#include "fast_lane/engine_calls.hpp"
#include "fast_lane/sc_fast_lane.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

constexpr int EXTRA_PICKS = 8;

// The last thing that a step does.
void send(ObjectID machine, const StringName &event) {
	Object *told = event.is_empty() ? nullptr : ObjectDB::get_instance(machine);
	if (told != nullptr) {
		told->call(MachineNames::shared().send_event, event);
	}
}

void send(ObjectID machine, const StringName &event, ObjectID data) {
	Object *told = event.is_empty() ? nullptr : ObjectDB::get_instance(machine);
	if (told != nullptr) {
		told->call(MachineNames::shared().send_event, event, ObjectDB::get_instance(data));
	}
}

// A job goes on only while the actions of its machine would.
bool goes_on(const FastLaneJob &job) {
	if (job.run != nullptr) {
		return job.run->lane_goes_on();
	}
	const Node *node = Object::cast_to<Node>(ObjectDB::get_instance(job.machine));
	return node == nullptr || (node->is_inside_tree() && node->can_process());
}

bool is_within(const FastLaneJob &job, const Vector3 &from, spots::Side side, const Vector3 &spot) {
	// What is in 2D and what is in 3D are nowhere near each other.
	if ((job.body_side == spots::IN_2D) != (side == spots::IN_2D)) {
		return false;
	}
	return spots::apart_squared(from, spot, side, job.ignore_height) <= job.reach;
}

ObjectID object_in(const Variant &value) {
	if (value.get_type() != Variant::OBJECT) {
		return ObjectID();
	}
	return value;
}

// Who the variable of a chase names, if anybody.
ObjectID chased_by(const FastLaneJob &job) {
	if (job.run == nullptr) {
		return ObjectID();
	}
	const ValueTable &values = job.run->values;
	if (!values.in_use) {
		return object_in(values.get(job.target_variable, Variant()));
	}
	const Variant *value = values.find(job.target_variable);
	return value != nullptr ? object_in(*value) : ObjectID();
}

} // namespace

class SCFastLane::Pass {
	Life *life;

public:
	explicit Pass(Life *passed) : life(passed) { life->passes++; }
	~Pass() {
		life->passes--;
		if (lane_gone() && life->passes == 0) {
			memdelete(life);
		}
	}
	Pass(const Pass &) = delete;
	Pass &operator=(const Pass &) = delete;

	bool lane_gone() const { return life->lane_gone; }
};

// False when the lane has gone meanwhile.
bool SCFastLane::run_jobs(double delta, Turn turn, ObjectID stepped) {
	Pass pass(life);
	const bool physics = turn == OF_PHYSICS;
	for (uint32_t number = 0; number < jobs.size(); number++) {
		FastLaneJob &job = jobs.ptr()[number];
		if (job.stage < FastLaneJob::JUST_MADE || (turn == OF_ONE_MACHINE ? job.machine != stepped : job.physics != physics)) {
			continue;
		}
		if (unlikely(job.stage == FastLaneJob::JUST_MADE)) {
			// In the step in which a job was made, its action has done the work itself.
			if (rests[number].made_at == steps_of(job)) {
				continue;
			}
			job.stage = FastLaneJob::RUNNING;
		}
		if (engine_calls::find(job.machine) == nullptr) {
			end(number, true);
			continue;
		}
		const GDExtensionObjectPtr body = engine_calls::find(job.body);
		if (body == nullptr) {
			end(number, false);
			continue;
		}
		if (turn != OF_ONE_MACHINE && !goes_on(job)) {
			continue;
		}
		run(job, body, delta);
		if (pass.lane_gone()) {
			return false;
		}
	}
	return true;
}

inline void SCFastLane::run(FastLaneJob &job, GDExtensionObjectPtr body, double delta) {
	switch (job.kind) {
		case FastLaneJob::CHECK_OF_NODE:
		case FastLaneJob::CHECK_OF_GROUP:
			check_distance(job, body);
			break;
		case FastLaneJob::CHASE:
			chase(job, body, delta);
			break;
		case FastLaneJob::WANDER:
			wander(job, body, delta);
			break;
	}
}

void SCFastLane::_process(double delta) {
	if (running == running_in_physics) {
		set_process(false);
	} else if (run_jobs(delta, OF_FRAME)) {
		frame_steps++;
	}
}

void SCFastLane::_physics_process(double delta) {
	if (running_in_physics == 0) {
		set_physics_process(false);
	} else if (run_jobs(delta, OF_PHYSICS)) {
		physics_steps++;
	}
}

void SCFastLane::step_machine(Object *machine, double step) {
	if (machine != nullptr && run_jobs(step, OF_ONE_MACHINE, ObjectID(machine->get_instance_id()))) {
		steps_by_hand++;
	}
}

inline void SCFastLane::check_distance(FastLaneJob &job, GDExtensionObjectPtr body) {
	Vector3 from;
	if (!engine_calls::read(body, job.body_side, from)) {
		return;
	}
	bool answer = false;
	if (job.kind == FastLaneJob::CHECK_OF_NODE) {
		const GDExtensionObjectPtr other = job.other_side != spots::NOWHERE ? engine_calls::find(job.other) : nullptr;
		Vector3 spot;
		answer = other != nullptr && engine_calls::read(other, job.other_side, spot) && is_within(job, from, job.other_side, spot);
	} else {
		const uint64_t clock = frame_steps + physics_steps + steps_by_hand + 1;
		for (const GroupSnapshots::Member &member : groups.members(job.group, this, clock)) {
			if (member.id != job.body && is_within(job, from, member.side, member.spot)) {
				answer = true;
				break;
			}
		}
	}
	if (int8_t(answer) == job.told) {
		return;
	}
	job.told = int8_t(answer);
	const FastLaneJobRest &rest = rest_of(&job);
	if (rest.slot.get_type() == Variant::DICTIONARY) {
		Dictionary(rest.slot)[MachineNames::shared().check_last] = answer != rest.is_turned;
	}
	send(job.machine, answer ? rest.true_event : rest.false_event);
}

inline void SCFastLane::chase(FastLaneJob &job, GDExtensionObjectPtr body, double delta) {
	const ObjectID target_id = chased_by(job);
	if (target_id != job.other) {
		job.other = target_id;
		job.other_side = spots::side_of(ObjectDB::get_instance(target_id));
	}
	const GDExtensionObjectPtr target = job.other_side != spots::NOWHERE ? engine_calls::find(target_id) : nullptr;
	Vector3 from;
	Vector3 to;
	if (target == nullptr || !engine_calls::read(target, job.other_side, to) || !engine_calls::read(body, job.body_side, from)) {
		job.told = 0;
		return;
	}
	const spots::Way way(from, to, job.body_side);
	if (job.reach < way.length) {
		job.told = 0;
		engine_calls::put(body, job.body_side, way.step(from, job.body_side, job.speed, delta));
	} else if (job.told != 1) {
		job.told = 1;
		send(job.machine, rest_of(&job).reached_event, target_id);
	}
}

void SCFastLane::wander(FastLaneJob &job, GDExtensionObjectPtr body, double delta) {
	FastLaneJobRest &rest = rest_of(&job);
	if (!rest.walking) {
		rest.waited += delta;
		if (rest.waited < rest.pause) {
			return;
		}
	}
	Vector3 from;
	if (!engine_calls::read(body, job.body_side, from)) {
		return;
	}
	if (!rest.walking) {
		rest.place = spots::random_around(rest.home, rest.radius, job.body_side);
		for (int i = 0; i < EXTRA_PICKS && spots::Way(from, rest.place, job.body_side).length <= job.reach; i++) {
			rest.place = spots::random_around(rest.home, rest.radius, job.body_side);
		}
		rest.walking = true;
	}
	const spots::Way way(from, rest.place, job.body_side);
	if (job.reach < way.length) {
		engine_calls::put(body, job.body_side, way.step(from, job.body_side, job.speed, delta));
		return;
	}
	rest.walking = false;
	rest.waited = 0.0;
	rest.pause = rest.pause_for + UtilityFunctions::randf() * rest.extra_pause;
}

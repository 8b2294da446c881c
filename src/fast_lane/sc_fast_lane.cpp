#include "fast_lane/sc_fast_lane.hpp"

#include "fast_lane/engine_calls.hpp"
#include "machine/companion_scripts.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>

namespace {

struct LaneNames {
	StringName script = "quillstead_fast";
	StringName lane_for = "lane_for";
	StringName note_moved_by_position = "note_moved_by_position";
};

LaneNames *shared_names = nullptr;

const LaneNames &names() {
	if (shared_names == nullptr) {
		shared_names = memnew(LaneNames);
	}
	return *shared_names;
}

} // namespace

SCFastLane::SCFastLane() : life(memnew(Life)) {}

SCFastLane::~SCFastLane() {
	life->lane_gone = true;
	if (life->passes == 0) {
		memdelete(life);
	}
}

SCFastLane *SCFastLane::lane_for(Object *machine) {
	const Variant lane = CompanionScripts::call(names().script, names().lane_for, Array::make(machine));
	return Object::cast_to<SCFastLane>(lane.get_validated_object());
}

void SCFastLane::note_moved_by_position(Node *body) {
	CompanionScripts::call(names().script, names().note_moved_by_position, Array::make(body));
}

void SCFastLane::free_shared() {
	if (shared_names != nullptr) {
		memdelete(shared_names);
		shared_names = nullptr;
	}
}

// These two have the names that the engine's error is to show.
FastLaneJob *SCFastLane::new_job(FastLaneJob::Kind kind, bool physics, Object *p_machine, Object *p_body) {
	ERR_FAIL_NULL_V(p_machine, nullptr);
	ERR_FAIL_NULL_V(p_body, nullptr);
	ERR_FAIL_COND_V_MSG(!engine_calls::prepare(), nullptr, "This engine has not the methods that move and place nodes.");
	if (unused.is_empty() && over > 0) {
		reclaim_forgotten();
	}
	uint32_t number = jobs.size();
	if (unused.is_empty()) {
		jobs.push_back(FastLaneJob());
		rests.push_back(FastLaneJobRest());
	} else {
		number = unused[unused.size() - 1];
		unused.resize(unused.size() - 1);
		jobs[number] = FastLaneJob();
		rests[number] = FastLaneJobRest();
	}
	FastLaneJob &job = jobs[number];
	job.kind = kind;
	job.stage = FastLaneJob::JUST_MADE;
	job.physics = physics;
	rests[number].made_at = steps_of(job);
	job.machine = ObjectID(p_machine->get_instance_id());
	if (const SCMachineBase *ours = Object::cast_to<SCMachineBase>(p_machine)) {
		job.run = &ours->run();
	}
	// What is no node is never found, which ends the job as if it had gone.
	if (Object::cast_to<Node>(p_body) != nullptr) {
		job.body = ObjectID(p_body->get_instance_id());
		job.body_side = spots::side_of(p_body);
	}
	running++;
	if (physics) {
		running_in_physics++;
		set_physics_process(true);
	} else {
		set_process(true);
	}
	return &job;
}

int32_t SCFastLane::add_distance_check(bool physics, Object *machine, Object *body, const StringName &group, Object *to_node, double distance,
		bool ignore_height, const StringName &true_event, const StringName &false_event, int32_t last) {
	FastLaneJob *job = new_job(to_node != nullptr ? FastLaneJob::CHECK_OF_NODE : FastLaneJob::CHECK_OF_GROUP, physics, machine, body);
	if (job == nullptr) {
		return NO_JOB;
	}
	if (to_node != nullptr) {
		job->other = ObjectID(to_node->get_instance_id());
		job->other_side = spots::side_of(to_node);
	} else {
		job->group = groups.number_of(group);
	}
	job->reach = distance < 0.0 ? distance : distance * distance;
	job->ignore_height = ignore_height;
	job->told = last == 0 || last == 1 ? int8_t(last) : FastLaneJob::NOT_YET_KNOWN;
	FastLaneJobRest &rest = rest_of(job);
	rest.true_event = true_event;
	rest.false_event = false_event;
	return number_of(job);
}

void SCFastLane::keep_answer_in(int32_t check, const Dictionary &slot, bool is_turned) {
	FastLaneJobRest &rest = rests[uint32_t(check)];
	rest.slot = slot;
	rest.is_turned = is_turned;
}

int32_t SCFastLane::add_chase(bool physics, Object *machine, Object *body, const StringName &target_variable, double speed, double stop_within,
		const StringName &reached_event, bool there) {
	FastLaneJob *job = new_job(FastLaneJob::CHASE, physics, machine, body);
	if (job == nullptr) {
		return NO_JOB;
	}
	job->target_variable = target_variable;
	job->speed = speed;
	job->reach = stop_within;
	job->told = int8_t(there);
	rest_of(job).reached_event = reached_event;
	return number_of(job);
}

int32_t SCFastLane::add_wander(bool physics, Object *machine, Object *body, const Variant &home, double radius, double speed, double arrive_within,
		double pause_for, double extra_pause, double waited, double pause, const Variant &place) {
	FastLaneJob *job = new_job(FastLaneJob::WANDER, physics, machine, body);
	if (job == nullptr) {
		return NO_JOB;
	}
	job->reach = arrive_within;
	job->speed = speed;
	FastLaneJobRest &rest = rest_of(job);
	spots::from_value(home, rest.home);
	rest.radius = radius;
	rest.pause_for = pause_for;
	rest.extra_pause = extra_pause;
	rest.waited = waited;
	rest.pause = pause;
	rest.walking = spots::from_value(place, rest.place);
	return number_of(job);
}

void SCFastLane::remove(int64_t number) {
	if (number < 0 || number >= int64_t(jobs.size())) {
		return;
	}
	if (jobs[uint32_t(number)].stage >= FastLaneJob::JUST_MADE) {
		end(uint32_t(number), true);
	} else if (jobs[uint32_t(number)].stage == FastLaneJob::OVER) {
		jobs[uint32_t(number)].stage = FastLaneJob::UNUSED;
		unused.push_back(uint32_t(number));
		over--;
	}
}

// `machine_gone`: nobody knows the number any more.
void SCFastLane::end(uint32_t number, bool machine_gone) {
	FastLaneJob &job = jobs[number];
	rests[number].slot = Variant();
	running--;
	if (job.physics) {
		running_in_physics--;
	}
	if (machine_gone) {
		job.stage = FastLaneJob::UNUSED;
		unused.push_back(number);
	} else {
		job.stage = FastLaneJob::OVER;
		over++;
	}
}

// Numbers that were kept for machines which have gone without taking them back.
void SCFastLane::reclaim_forgotten() {
	for (uint32_t number = 0; number < jobs.size(); number++) {
		if (jobs[number].stage == FastLaneJob::OVER && ObjectDB::get_instance(jobs[number].machine) == nullptr) {
			remove(number);
		}
	}
}

void SCFastLane::_bind_methods() {
	ClassDB::bind_method(
			D_METHOD("add_distance_check", "physics", "machine", "body", "group", "to_node", "distance", "ignore_height", "true_event", "false_event", "last"),
			&SCFastLane::add_distance_check);
	ClassDB::bind_method(
			D_METHOD("add_chase", "physics", "machine", "body", "target_variable", "speed", "stop_within", "reached_event", "there"), &SCFastLane::add_chase);
	ClassDB::bind_method(D_METHOD("add_wander", "physics", "machine", "body", "home", "radius", "speed", "arrive_within", "pause_for", "extra_pause", "waited",
								 "pause", "place"),
			&SCFastLane::add_wander);
	ClassDB::bind_method(D_METHOD("remove", "job"), &SCFastLane::remove);
	ClassDB::bind_method(D_METHOD("job_count"), &SCFastLane::job_count);
	ClassDB::bind_method(D_METHOD("step_machine", "machine", "step"), &SCFastLane::step_machine);
}

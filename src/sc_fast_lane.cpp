#include "sc_fast_lane.hpp"

#include "machine/companion_scripts.hpp"
#include "sc_machine_base.hpp"

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

class SCFastLane::Pass {
	Life *life;

public:
	explicit Pass(Life *passed) :
			life(passed) { life->passes++; }
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

SCFastLane::SCFastLane() :
		life(memnew(Life)) {}

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
	if (unused.is_empty() && over > 0) {
		reclaim_forgotten();
	}
	uint32_t number = jobs.size();
	if (unused.is_empty()) {
		jobs.push_back(FastLaneJob());
	} else {
		number = unused[unused.size() - 1];
		unused.resize(unused.size() - 1);
		jobs[number] = FastLaneJob();
	}
	FastLaneJob &job = jobs[number];
	job.kind = kind;
	job.stage = FastLaneJob::RUNNING;
	job.physics = physics;
	job.made_at = steps_of(job);
	job.machine = ObjectID(p_machine->get_instance_id());
	job.machine_is_node = Object::cast_to<Node>(p_machine) != nullptr;
	job.machine_has_values = Object::cast_to<SCMachineBase>(p_machine) != nullptr;
	job.body = ObjectID(p_body->get_instance_id());
	job.body_is_node = Object::cast_to<Node>(p_body) != nullptr;
	job.body_side = spots::side_of(p_body);
	running++;
	if (physics) {
		running_in_physics++;
		set_physics_process(true);
	} else {
		set_process(true);
	}
	return &job;
}

int32_t SCFastLane::add_distance_check(bool physics, Object *machine, Object *body, const StringName &group, Object *to_node, double distance, bool ignore_height, const StringName &true_event, const StringName &false_event, int32_t last) {
	FastLaneJob *job = new_job(FastLaneJob::DISTANCE_CHECK, physics, machine, body);
	if (job == nullptr) {
		return NO_JOB;
	}
	job->group = group;
	if (to_node != nullptr) {
		job->has_to_node = true;
		job->to_node = ObjectID(to_node->get_instance_id());
		job->to_side = spots::side_of(to_node);
	}
	job->distance = distance;
	job->ignore_height = ignore_height;
	job->true_event = true_event;
	job->false_event = false_event;
	job->last = last;
	return number_of(job);
}

int32_t SCFastLane::add_chase(bool physics, Object *machine, Object *body, const StringName &target_variable, double speed, double stop_within, const StringName &reached_event, bool there) {
	FastLaneJob *job = new_job(FastLaneJob::CHASE, physics, machine, body);
	if (job == nullptr) {
		return NO_JOB;
	}
	job->target_variable = target_variable;
	job->speed = speed;
	job->stop_within = stop_within;
	job->reached_event = reached_event;
	job->there = there;
	return number_of(job);
}

int32_t SCFastLane::add_wander(bool physics, Object *machine, Object *body, const Variant &home, double radius, double speed, double arrive_within, double pause_for, double extra_pause, double waited, double pause, const Variant &place) {
	FastLaneJob *job = new_job(FastLaneJob::WANDER, physics, machine, body);
	if (job == nullptr) {
		return NO_JOB;
	}
	spots::from_value(home, job->home);
	job->radius = radius;
	job->speed = speed;
	job->arrive_within = arrive_within;
	job->pause_for = pause_for;
	job->extra_pause = extra_pause;
	job->waited = waited;
	job->pause = pause;
	job->walking = spots::from_value(place, job->place);
	return number_of(job);
}

void SCFastLane::remove(int64_t number) {
	if (number < 0 || number >= int64_t(jobs.size())) {
		return;
	}
	if (jobs[uint32_t(number)].stage == FastLaneJob::RUNNING) {
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

// False when the lane has gone meanwhile.
template <class Wanted>
bool SCFastLane::run_jobs(double delta, bool by_hand, const Wanted &wanted) {
	Pass pass(life);
	for (uint32_t number = 0; !pass.lane_gone() && number < jobs.size(); number++) {
		const FastLaneJob &job = jobs[number];
		// In the step in which a job was made, its action has done the work itself.
		if (job.stage == FastLaneJob::RUNNING && wanted(job) && job.made_at != steps_of(job)) {
			run(number, delta, by_hand);
		}
	}
	return !pass.lane_gone();
}

void SCFastLane::_process(double delta) {
	if (running == running_in_physics) {
		set_process(false);
	} else if (run_jobs(delta, false, [](const FastLaneJob &job) { return !job.physics; })) {
		frame_steps++;
	}
}

void SCFastLane::_physics_process(double delta) {
	if (running_in_physics == 0) {
		set_physics_process(false);
	} else if (run_jobs(delta, false, [](const FastLaneJob &job) { return job.physics; })) {
		physics_steps++;
	}
}

void SCFastLane::step_machine(Object *machine, double step) {
	if (machine == nullptr) {
		return;
	}
	const ObjectID stepped = ObjectID(machine->get_instance_id());
	if (run_jobs(step, true, [stepped](const FastLaneJob &job) { return job.machine == stepped; })) {
		steps_by_hand++;
	}
}

void SCFastLane::_bind_methods() {
	ClassDB::bind_method(D_METHOD("add_distance_check", "physics", "machine", "body", "group", "to_node", "distance", "ignore_height", "true_event", "false_event", "last"), &SCFastLane::add_distance_check);
	ClassDB::bind_method(D_METHOD("add_chase", "physics", "machine", "body", "target_variable", "speed", "stop_within", "reached_event", "there"), &SCFastLane::add_chase);
	ClassDB::bind_method(D_METHOD("add_wander", "physics", "machine", "body", "home", "radius", "speed", "arrive_within", "pause_for", "extra_pause", "waited", "pause", "place"), &SCFastLane::add_wander);
	ClassDB::bind_method(D_METHOD("remove", "job"), &SCFastLane::remove);
	ClassDB::bind_method(D_METHOD("job_count"), &SCFastLane::job_count);
	ClassDB::bind_method(D_METHOD("step_machine", "machine", "step"), &SCFastLane::step_machine);
}

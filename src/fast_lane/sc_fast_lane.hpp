#pragma once

// Does the plain work of many machines in one loop: walking a body toward something, asking how far
// away something is. An action hands a job over as it is entered and rests; its machine takes the job
// back as it leaves the state. In between the machine gets no call but for the events that it is sent.
//
// A job's step ends with whatever can call user code: an event, or moving a node. That code may add
// and remove jobs, which moves the array, and may even free the lane. So nothing is read of a job or
// of the lane after it, but by the pass, which knows from the lane's Life whether it is still there.

#include "fast_lane/group_snapshots.hpp"
#include "fast_lane/job.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class SCFastLane : public Node {
	GDCLASS(SCFastLane, Node)

public:
	// What an add answers when it made no job.
	static constexpr int32_t NO_JOB = -1;

	SCFastLane();
	~SCFastLane() override;

	// The lane that serves this machine; null when there is none, as for one outside the tree.
	static SCFastLane *lane_for(Object *machine);
	// Marks a node that is moved by its position alone, without physics. Done before a body is handed over.
	static void note_moved_by_position(Node *body);
	static void free_shared();

	// `last` and the like are how far the action has come by itself.
	int32_t add_distance_check(bool physics, Object *machine, Object *body, const StringName &group, Object *to_node, double distance, bool ignore_height,
			const StringName &true_event, const StringName &false_event, int32_t last);
	// The answer is written there each time that it changes, turned round for a condition that is.
	void keep_answer_in(int32_t check, const Dictionary &slot, bool is_turned);
	int32_t add_chase(bool physics, Object *machine, Object *body, const StringName &target_variable, double speed, double stop_within,
			const StringName &reached_event, bool there);
	int32_t add_wander(bool physics, Object *machine, Object *body, const Variant &home, double radius, double speed, double arrive_within, double pause_for,
			double extra_pause, double waited, double pause, const Variant &place);
	void remove(int64_t job);
	int64_t job_count() const { return running; }
	// For a machine that is paused from the editor and stepped: so many seconds of its jobs alone.
	void step_machine(Object *machine, double step);

	void _process(double delta) override;
	void _physics_process(double delta) override;

protected:
	static void _bind_methods();

private:
	// Outlives the lane for as long as a pass over its jobs is under way.
	struct Life {
		uint32_t passes = 0;
		bool lane_gone = false;
	};
	class Pass;

	FastLaneJob *new_job(FastLaneJob::Kind kind, bool physics, Object *machine, Object *body);
	int32_t number_of(const FastLaneJob *job) const { return int32_t(job - jobs.ptr()); }
	FastLaneJobRest &rest_of(const FastLaneJob *job) { return rests[uint32_t(number_of(job))]; }
	void reclaim_forgotten();
	void end(uint32_t number, bool machine_gone);
	uint64_t steps_of(const FastLaneJob &job) const { return job.physics ? physics_steps : frame_steps; }

	// Whose jobs a pass is for.
	enum Turn {
		OF_FRAME,
		OF_PHYSICS,
		OF_ONE_MACHINE,
	};
	bool run_jobs(double delta, Turn turn, ObjectID stepped = ObjectID());
	void run(FastLaneJob &job, GDExtensionObjectPtr body, double delta);
	void check_distance(FastLaneJob &job, GDExtensionObjectPtr body);
	void chase(FastLaneJob &job, GDExtensionObjectPtr body, double delta);
	void wander(FastLaneJob &job, GDExtensionObjectPtr body, double delta);

	LocalVector<FastLaneJob> jobs;
	// By the same numbers.
	LocalVector<FastLaneJobRest> rests;
	LocalVector<uint32_t> unused;
	GroupSnapshots groups;
	uint32_t running = 0;
	uint32_t running_in_physics = 0;
	uint32_t over = 0;
	uint64_t frame_steps = 0;
	uint64_t physics_steps = 0;
	uint64_t steps_by_hand = 0;
	Life *life;
};

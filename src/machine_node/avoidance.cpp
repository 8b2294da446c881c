// Bodies that keep clear of one another: the navigation agent is told how a body would like to move,
// and answers a moment later how it may.

#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/object.hpp>

namespace {

// Slower than this is standing still.
constexpr double STANDING = 0.01;

template <class Vector>
bool is_held_up(const Vector &safe, const Vector &wanted) {
	return safe.length() < STANDING && wanted.length() > STANDING;
}

// Avoidance may turn a body aside, but not stop one that wants to move, nor touch its falling.
Variant allowed(const Variant &safe, const Variant &wanted) {
	if (safe.get_type() != wanted.get_type()) {
		return safe;
	}
	if (safe.get_type() == Variant::VECTOR2) {
		return is_held_up(Vector2(safe), Vector2(wanted)) ? wanted : safe;
	}
	if (safe.get_type() == Variant::VECTOR3) {
		const Vector3 from = safe;
		const Vector3 to = wanted;
		const bool held_up = is_held_up(Vector2(from.x, from.z), Vector2(to.x, to.z));
		return held_up ? to : Vector3(from.x, to.y, from.z);
	}
	return safe;
}

} // namespace

void SCMachine::_ask_the_agent(Node *p_agent, Node *p_body) {
	ERR_FAIL_NULL(p_agent);
	ERR_FAIL_NULL(p_body);
	const MachineNames &names = MachineNames::shared();
	const uint64_t agent_id = p_agent->get_instance_id();
	AskedVelocity &asked = asked_of(agent_id, p_agent, p_body);
	if (p_agent->has_signal(names.velocity_computed) && !p_agent->is_connected(names.velocity_computed, asked.answered)) {
		p_agent->connect(names.velocity_computed, asked.answered);
	}
	// A body's script may have a say in its velocity.
	MachineRun &its_run = run();
	MachineRun::Busy keep(its_run);
	const Variant wanted = p_body->get(names.velocity);
	if (its_run.machine() == nullptr) {
		return;
	}
	if (AskedVelocity *still_asked = asked_velocities.getptr(agent_id)) {
		still_asked->velocity = wanted;
	}
	if (Object *agent = ObjectDB::get_instance(agent_id)) {
		agent->set(names.velocity, wanted);
	}
}

SCMachine::AskedVelocity &SCMachine::asked_of(uint64_t agent_id, Node *agent, Node *body) {
	const uint64_t body_id = body->get_instance_id();
	AskedVelocity *known = asked_velocities.getptr(agent_id);
	if (known != nullptr && known->body == body_id) {
		return *known;
	}
	LocalVector<uint64_t> gone;
	for (const KeyValue<uint64_t, AskedVelocity> &asked : asked_velocities) {
		if (ObjectDB::get_instance(asked.key) == nullptr) {
			gone.push_back(asked.key);
		}
	}
	for (const uint64_t id : gone) {
		asked_velocities.erase(id);
	}
	AskedVelocity fresh;
	fresh.body = body_id;
	fresh.answered = Callable(this, MachineNames::shared().on_velocity_computed).bind(agent, body);
	asked_velocities[agent_id] = fresh;
	return asked_velocities[agent_id];
}

void SCMachine::on_velocity_computed(const Variant &safe, Node *agent, Node *body) {
	const MachineNames &names = MachineNames::shared();
	if (body == nullptr || !body->has_method(names.move_and_slide)) {
		return;
	}
	const AskedVelocity *asked = agent != nullptr ? asked_velocities.getptr(agent->get_instance_id()) : nullptr;
	const ObjectID body_id = ObjectID(body->get_instance_id());
	body->set(names.velocity, asked != nullptr ? allowed(safe, asked->velocity) : safe);
	// A script may watch the body's velocity.
	if (Object *still_there = ObjectDB::get_instance(body_id)) {
		still_there->call(names.move_and_slide);
	}
}

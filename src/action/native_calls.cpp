#include "action/native_calls.hpp"

#include "machine/machine_run.hpp"

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/templates/hashfuncs.hpp>

#include <functional>
#include <tuple>

namespace {

// Handlers are told apart by their address, which only std::less may put in order.
template <class Handler>
bool is_before(Handler left, Handler right) {
	return std::less<Handler>()(left, right);
}

} // namespace

Callable ActionCall::make(const char *name, SCMachineBase *machine, const SCMachineAction *action, int index, Handler handler) {
	const RunRow *row = machine->run().row_being_run();
	ActionCall *made = memnew(ActionCall);
	made->name = name;
	made->machine_id = ObjectID(machine->get_instance_id());
	made->action_id = ObjectID(action->get_instance_id());
	made->serial = row != nullptr ? row->serial : -1;
	made->index = index;
	made->handler = handler;
	return Callable(made);
}

void ActionCall::call(const Variant **arguments, int count, Variant &answer, GDExtensionCallError &error) const {
	error.error = GDEXTENSION_CALL_OK;
	answer = Variant();
	SCMachineBase *machine = Object::cast_to<SCMachineBase>(ObjectDB::get_instance(machine_id));
	const Ref<SCMachineAction> action = Object::cast_to<SCMachineAction>(ObjectDB::get_instance(action_id));
	if (machine == nullptr || action.is_null()) {
		return;
	}
	MachineRun &run = machine->run();
	MachineRun::Busy keep(run);
	RunRow *row = run.row_of_serial(serial);
	if (row == nullptr || !row->live || !run.is_running()) {
		return;
	}
	// What is called may disconnect the signal, and with it free this very callable.
	const Handler kept_handler = handler;
	const int kept_index = index;
	Array handed_over;
	for (int i = 0; i < count; i++) {
		handed_over.push_back(*arguments[i]);
	}
	MachineRun::RunningAs as(run, row);
	if (action->reads_variables()) {
		action->read_variables(machine);
	}
	if (run.machine() != nullptr && row->live) {
		kept_handler(machine, action.ptr(), kept_index, handed_over);
	}
}

uint32_t ActionCall::hash() const {
	uint32_t mixed = hash_murmur3_one_64(uint64_t(machine_id));
	mixed = hash_murmur3_one_64(uint64_t(action_id), mixed);
	mixed = hash_murmur3_one_64(uint64_t(serial), mixed);
	mixed = hash_murmur3_one_32(uint32_t(index), mixed);
	return hash_fmix32(mixed);
}

bool ActionCall::same(const CallableCustom *left, const CallableCustom *right) {
	const ActionCall *a = static_cast<const ActionCall *>(left);
	const ActionCall *b = static_cast<const ActionCall *>(right);
	return a->machine_id == b->machine_id && a->action_id == b->action_id && a->serial == b->serial && a->index == b->index && a->handler == b->handler;
}

bool ActionCall::before(const CallableCustom *left, const CallableCustom *right) {
	const ActionCall *a = static_cast<const ActionCall *>(left);
	const ActionCall *b = static_cast<const ActionCall *>(right);
	const auto key = [](const ActionCall *call) { return std::make_tuple(uint64_t(call->machine_id), uint64_t(call->action_id), call->serial, call->index); };
	return key(a) != key(b) ? key(a) < key(b) : is_before(a->handler, b->handler);
}

Callable NodeCall::make(const char *name, const Node *node, Handler handler) {
	NodeCall *made = memnew(NodeCall);
	made->name = name;
	made->node_id = ObjectID(node->get_instance_id());
	made->handler = handler;
	return Callable(made);
}

void NodeCall::call(const Variant **, int, Variant &answer, GDExtensionCallError &error) const {
	error.error = GDEXTENSION_CALL_OK;
	answer = Variant();
	if (Node *node = Object::cast_to<Node>(ObjectDB::get_instance(node_id))) {
		handler(node);
	}
}

uint32_t NodeCall::hash() const {
	return hash_fmix32(hash_murmur3_one_64(uint64_t(node_id)));
}

bool NodeCall::same(const CallableCustom *left, const CallableCustom *right) {
	const NodeCall *a = static_cast<const NodeCall *>(left);
	const NodeCall *b = static_cast<const NodeCall *>(right);
	return a->node_id == b->node_id && a->handler == b->handler;
}

bool NodeCall::before(const CallableCustom *left, const CallableCustom *right) {
	const NodeCall *a = static_cast<const NodeCall *>(left);
	const NodeCall *b = static_cast<const NodeCall *>(right);
	return a->node_id != b->node_id ? uint64_t(a->node_id) < uint64_t(b->node_id) : is_before(a->handler, b->handler);
}

#include "action/add_later.hpp"

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

void add(int64_t parent_id, int64_t child_id, int64_t internal) {
	Node *parent = Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(parent_id)));
	Node *child = Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(child_id)));
	if (child == nullptr || child->get_parent() != nullptr || child->is_queued_for_deletion()) {
		return;
	}
	if (parent == nullptr) {
		child->queue_free();
		return;
	}
	parent->add_child(child, true, Node::InternalMode(internal));
}

} // namespace

void add_later::to(Node *parent, Node *child, Node::InternalMode internal) {
	callable_mp_static(&add).call_deferred(int64_t(parent->get_instance_id()), int64_t(child->get_instance_id()), int64_t(internal));
}

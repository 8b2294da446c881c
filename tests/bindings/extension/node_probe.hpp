// A node with methods that scripts override.

#pragma once

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/gdvirtual.gen.inc>

namespace bindings_test {

using namespace godot;

class BindingsNode : public Node {
	GDCLASS(BindingsNode, Node)

protected:
	GDVIRTUAL1R(String, _greet, String)
	GDVIRTUAL1(_visit, Node *)
	GDVIRTUAL2R(Ref<RefCounted>, _choose, Ref<RefCounted>, Array)

	static void _bind_methods() {
		GDVIRTUAL_BIND(_greet, "name");
		GDVIRTUAL_BIND(_visit, "node");
		GDVIRTUAL_BIND(_choose, "fallback", "others");
		ClassDB::bind_method(D_METHOD("greet", "name"), &BindingsNode::greet);
		ClassDB::bind_method(D_METHOD("visit", "node"), &BindingsNode::visit);
		ClassDB::bind_method(D_METHOD("choose", "fallback", "others"), &BindingsNode::choose);
		ClassDB::bind_method(D_METHOD("overrides_greet"), &BindingsNode::overrides_greet);
	}

public:
	String greet(const String &name) {
		String greeting;
		return GDVIRTUAL_CALL(_greet, name, greeting) ? greeting : "Nobody greets " + name;
	}
	void visit(Node *node) { GDVIRTUAL_CALL(_visit, node); }
	Ref<RefCounted> choose(const Ref<RefCounted> &fallback, const Array &others) {
		Ref<RefCounted> chosen;
		return GDVIRTUAL_CALL(_choose, fallback, others, chosen) ? chosen : fallback;
	}
	bool overrides_greet() const { return GDVIRTUAL_IS_OVERRIDDEN(_greet); }
};

} // namespace bindings_test

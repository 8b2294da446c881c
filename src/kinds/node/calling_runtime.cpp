// Compiled runtimes of the kinds that call methods and send signals.

#include "action/add_kind.hpp"
#include "action/native_calls.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "kinds/node/arguments.hpp"
#include "kinds/node/calling.hpp"
#include "kinds/node/node_types.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/classes/engine.hpp>

namespace {

struct CallNames {
	StringName on = "on";
	StringName called = "called";
	StringName described = "described";
	StringName waiting = "GDScriptFunctionState";
	StringName completed = "completed";
	StringName free = "free";
	StringName emit_signal = "emit_signal";
	StringName class_call_static = "class_call_static";
};

const CallNames &names() {
	return NativeNames::of<CallNames>();
}

// Looked up once for as long as the node and the name stay the same: the engine lists all that a node has.
template <class LookUp>
Dictionary described_once(SCMachineBase *machine, int index, const Object *on, const StringName &called, LookUp look_up) {
	Dictionary slot = machine->slot(index);
	const auto id = int64_t(on->get_instance_id());
	if (slot.get(names().on, 0) != Variant(id) || slot.get(names().called, StringName()) != Variant(called)) {
		slot[names().on] = id;
		slot[names().called] = called;
		slot[names().described] = look_up();
	}
	return slot[names().described];
}

// A script lists its own methods first, and what it extends after them.
Dictionary method_of(Object *on, const StringName &method) {
	const Ref<Script> script = on->get_script();
	const Dictionary own = script.is_valid() ? arguments::described_in(script->get_script_method_list(), method) : Dictionary();
	return own.is_empty() ? arguments::described_in(on->get_method_list(), method) : own;
}

template <auto Store>
void keep_late(SCMachineBase *machine, SCMachineAction *action, int, const Array &handed_over) {
	if (!handed_over.is_empty() && handed_over[0].get_type() != Variant::NIL) {
		verbs::keep<Store>(machine, action, handed_over[0], "what it gave back");
	}
}

// What the method gave back. A method that waits gives back something to wait with.
template <auto Store>
void keep_answer(SCMachineBase *machine, SCMachineAction *action, int index, const Dictionary &described, const StringName &method, const Variant &answer) {
	const StringName store_in = setting_of<Store>(action);
	if (store_in.is_empty()) {
		return;
	}
	Object *object = answer.get_type() == Variant::OBJECT ? answer.get_validated_object() : nullptr;
	if (object != nullptr && object->is_class(names().waiting)) {
		object->connect(names().completed, ActionCall::make("Call Method: done", machine, action, index, &keep_late<Store>));
	} else if (answer.get_type() != Variant::NIL) {
		verbs::keep<Store>(machine, action, answer, "what it gave back");
	} else if (!described.is_empty() && !arguments::gives_something(described)) {
		verbs::warn(machine, action,
				vformat("%s gives nothing back, so there was nothing to keep in %s. Leave %s empty, or pick another method.", method, store_in,
						verbs::setting_in_inspector(verbs::name_of<Store>())));
	} else {
		verbs::let_go(machine, store_in);
	}
}

void say_not_called(SCMachineBase *machine, SCMachineAction *action, const StringName &method, const String &of, const String &why) {
	verbs::warn(machine, action,
			vformat("%s of %s was not called, because %s. Look it up in its script or in Godot's help, and set the arguments it takes.", method, of, why));
}

class CallMethod : public OnceOrRepeating<CallMethod> {
	using Kind = SCCallMethodAction;

	static void say_not_there(SCMachineBase *machine, SCMachineAction *action, const Node *node, const StringName &method) {
		if (method.is_empty()) {
			verbs::warn(machine, action, vformat("it names no method of %s, so nothing was called. Pick one under Method Name.", node->get_name()));
			return;
		}
		verbs::warn(machine, action,
				vformat("%s is a %s, which has no method called %s, so nothing was called. Pick one that it has under Method Name.", node->get_name(),
						node->get_class(), method));
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		Node *node = verbs::node_or_warn<&Kind::node_path>(machine, action);
		const StringName method = setting_of<&Kind::method_name>(action);
		if (node == nullptr) {
			return;
		}
		if (method == names().free) {
			// At once it would take the ground from under whoever is calling.
			node->queue_free();
			return;
		}
		if (method.is_empty() || !node->has_method(method)) {
			say_not_there(machine, action, node, method);
			return;
		}
		const StillHere here(machine);
		const String name = node->get_name();
		const Weak<Node> held(node);
		const Dictionary described = described_once(machine, index, node, method, [&]() { return method_of(node, method); });
		Array given = arguments::given<&Kind::argument_1, &Kind::argument_2>(action);
		String why = described.is_empty() ? String() : arguments::fit(machine, described, given);
		Variant answer;
		if (why.is_empty() && held.get() != nullptr && here) {
			why = arguments::call(held.get(), method, given, answer);
		}
		if (!here) {
			return;
		}
		if (why.is_empty()) {
			keep_answer<&Kind::store_in>(machine, action, index, described, method, answer);
		} else {
			say_not_called(machine, action, method, name, why);
		}
	}
};

class CallStaticMethod : public OnceOrRepeating<CallStaticMethod> {
	using Kind = SCCallStaticMethodAction;

	struct Found {
		// Who is called: the one object of a class that has one, a script, or the engine's list of classes.
		Variant on;
		Dictionary described;
		bool by_class = false;
		String why_not;
	};

	static Found find_in_engine(const StringName &type, const StringName &method) {
		Found found;
		Engine *engine = Engine::get_singleton();
		if (engine->has_singleton(type)) {
			Object *single = engine->get_singleton(type);
			found.on = single;
			found.described = single != nullptr ? arguments::described_in(single->get_method_list(), method) : Dictionary();
		} else {
			found.on = ClassDBSingleton::get_singleton();
			found.by_class = true;
			found.described = arguments::described_in(ClassDBSingleton::get_singleton()->class_get_method_list(type), method);
		}
		return found;
	}

	static Found find_in_script(const StringName &type, const StringName &method) {
		Found found;
		const Ref<Script> script = node_types::script_of(type);
		if (script.is_null()) {
			found.why_not = vformat("there is no class called %s", type);
			return found;
		}
		found.on = script;
		found.described = arguments::described_in(script->get_script_method_list(), method);
		if (found.described.is_empty() && !script->get_instance_base_type().is_empty()) {
			const Found native = find_in_engine(script->get_instance_base_type(), method);
			if (!native.described.is_empty()) {
				found.described = native.described;
			}
		}
		return found;
	}

	static Found find(const StringName &type, const StringName &method) {
		const bool in_engine = Engine::get_singleton()->has_singleton(type) || ClassDBSingleton::get_singleton()->class_exists(type);
		Found found = in_engine ? find_in_engine(type, method) : find_in_script(type, method);
		if (!found.why_not.is_empty()) {
			return found;
		}
		const bool of_one_object = in_engine && !found.by_class;
		if (found.described.is_empty() || method == names().free) {
			found.why_not = vformat("%s has no method called %s that belongs to the class", type, method);
		} else if (!of_one_object && !arguments::is_static(found.described)) {
			found.why_not = vformat("%s is not static: it belongs to each %s, and Call Method calls it on a node", method, type);
		}
		return found;
	}

	// Kept in the slot, as a script may be loaded for it.
	static Found found_once(SCMachineBase *machine, int index, const StringName &type, const StringName &method) {
		Dictionary slot = machine->slot(index);
		const String key = vformat("%s.%s", type, method);
		if (slot.get(names().called, String()) != Variant(key)) {
			const Found found = find(type, method);
			slot[names().called] = key;
			slot[names().described] = Array::make(found.on, found.described, found.by_class, found.why_not);
		}
		const Array kept = slot[names().described];
		Found found;
		found.on = kept[0];
		found.described = kept[1];
		found.by_class = kept[2];
		found.why_not = kept[3];
		return found;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StringName type = String(setting_of<&Kind::of_class>(action)).strip_edges();
		const StringName method = setting_of<&Kind::method_name>(action);
		if (type.is_empty() || method.is_empty()) {
			const char *lacks = type.is_empty() ? "it names no class, so nothing was called. Pick one under Of Class."
												: "it names no method, so nothing was called. Pick one under Method Name.";
			verbs::warn(machine, action, lacks);
			return;
		}
		const StillHere here(machine);
		const Found found = found_once(machine, index, type, method);
		if (!here) {
			return;
		}
		if (!found.why_not.is_empty()) {
			verbs::warn(machine, action, vformat("%s, so nothing was called. Pick another under Of Class or Method Name.", found.why_not));
			return;
		}
		Array given = arguments::given<&Kind::argument_1, &Kind::argument_2>(action);
		String why = arguments::fit(machine, found.described, given);
		Variant answer;
		if (why.is_empty() && here) {
			Array all = given;
			if (found.by_class) {
				all = Array::make(type, method);
				all.append_array(given);
			}
			why = arguments::call(found.on, found.by_class ? names().class_call_static : method, all, answer);
		}
		if (!here) {
			return;
		}
		if (why.is_empty()) {
			keep_answer<&Kind::store_in>(machine, action, index, found.described, method, answer);
		} else {
			say_not_called(machine, action, method, type, why);
		}
	}
};

class EmitSignal : public OnceOrRepeating<EmitSignal> {
	using Kind = SCEmitSignalAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		Node *node = verbs::node_or_warn<&Kind::node_path>(machine, action);
		const StringName signal = setting_of<&Kind::signal_name>(action);
		if (node == nullptr) {
			return;
		}
		if (signal.is_empty()) {
			verbs::warn(machine, action, vformat("it names no signal of %s, so none was sent. Pick one under Signal Name.", node->get_name()));
			return;
		}
		if (!node->has_signal(signal)) {
			verbs::warn(machine, action,
					vformat("%s is a %s, which has no signal called %s, so none was sent. Pick one that it has under Signal Name.", node->get_name(),
							node->get_class(), signal));
			return;
		}
		const StillHere here(machine);
		const String name = node->get_name();
		const Weak<Node> held(node);
		const Dictionary described = described_once(machine, index, node, signal, [&]() { return arguments::described_in(node->get_signal_list(), signal); });
		Array given = arguments::given<&Kind::argument_1, &Kind::argument_2>(action);
		String why = described.is_empty() ? String() : arguments::fit(machine, described, given, true);
		Variant unused;
		if (why.is_empty() && held.get() != nullptr && here) {
			given.push_front(signal);
			why = arguments::call(held.get(), names().emit_signal, given, unused);
		}
		if (here && !why.is_empty()) {
			verbs::warn(machine, action,
					vformat("%s of %s was not sent, because %s. Set as many arguments as the signal hands over, of the kinds it is declared with.", signal,
							name, why));
		}
	}
};

const AddKinds added = {
	add_kind<SCCallMethodAction, CallMethod>(),
	add_kind<SCCallStaticMethodAction, CallStaticMethod>(),
	add_kind<SCEmitSignalAction, EmitSignal>(),
};

} // namespace

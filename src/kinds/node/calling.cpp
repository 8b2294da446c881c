#include "kinds/node/calling.hpp"

#include "action/shared_verbs.hpp"
#include "kinds/node/arguments.hpp"
#include "kinds/node/free_values.hpp"

namespace {

template <auto First, auto Second, class Kind>
String with_arguments(const Kind *kind) {
	const bool has_second = arguments::is_set(kind, verbs::name_of<Second>(), kind->*Second);
	if (!has_second && !arguments::is_set(kind, verbs::name_of<First>(), kind->*First)) {
		return String();
	}
	const String first = words::text_of(kind->*First);
	return has_second ? vformat(" with %s and %s", first, words::text_of(kind->*Second)) : vformat(" with %s", first);
}

String kept_in(const StringName &variable) {
	return variable.is_empty() ? String() : vformat(", keep the answer in %s", variable);
}

} // namespace

void SCCallMethodAction::describe(KindTable<Self> &kind) {
	kind.about("node", "call_method",
			"Call a method on any node, with up to two arguments, picked from the ones the node has. A method is something a node can do: play, stop, "
			"grab_focus, take_damage.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::node_path>("node_path", "The node whose method is called. Empty is Self.").relists();
	kind.setting<&Self::method_name>("method_name", "The method's name, as the node's script or Godot's help writes it, such as grab_focus or take_damage.");
	kind.setting<&Self::argument_1>("argument_1",
				"The first value handed over, for a method that takes one. For one that takes a node, read it from a Node variable or give a path.")
			.optional();
	kind.setting<&Self::argument_2>("argument_2", "The second value handed over, for a method that takes two.").optional();
	kind.setting<&Self::store_in>(
				"store_in", "The variable that takes what the method gives back. Of a script's method that waits with await, it comes when the method is done.")
			.optional();
}

String SCCallMethodAction::summary_default() {
	return vformat("Call %s of %s%s%s", words::picked(method_name), words::name_in_line(node_path), with_arguments<&Self::argument_1, &Self::argument_2>(this),
			kept_in(store_in));
}

void SCCallMethodAction::read_variables_default(SCMachineBase *machine) {
	free_values::read(this, machine, { { verbs::name_of<&Self::argument_1>(), argument_1 }, { verbs::name_of<&Self::argument_2>(), argument_2 } });
}

void SCCallStaticMethodAction::describe(KindTable<Self> &kind) {
	kind.about("node", "call_static_method",
			"Call a method that belongs to a class, not to a node in the scene, with up to two arguments, and keep what it gives back. It calls the static "
			"methods of Godot's classes and of your own scripts with a class_name, and those of OS, Input and the like, of which a game has one each.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::of_class>("of_class", "The class the method belongs to, such as FileAccess, Geometry2D, OS or a class_name of your own.").relists();
	kind.setting<&Self::method_name>("method_name", "The method's name, such as file_exists. It has to be static.");
	kind.setting<&Self::argument_1>("argument_1", "The first value handed over, for a method that takes one.").optional();
	kind.setting<&Self::argument_2>("argument_2", "The second value handed over, for a method that takes two.").optional();
	kind.setting<&Self::store_in>(
				"store_in", "The variable that takes what the method gives back. Of a script's method that waits with await, it comes when the method is done.")
			.optional();
}

String SCCallStaticMethodAction::summary_default() {
	return vformat("Call %s of %s%s%s", words::picked(method_name), words::picked(of_class), with_arguments<&Self::argument_1, &Self::argument_2>(this),
			kept_in(store_in));
}

void SCCallStaticMethodAction::read_variables_default(SCMachineBase *machine) {
	free_values::read(this, machine, { { verbs::name_of<&Self::argument_1>(), argument_1 }, { verbs::name_of<&Self::argument_2>(), argument_2 } });
}

void SCEmitSignalAction::describe(KindTable<Self> &kind) {
	kind.about("node", "emit_signal", "Make a node send one of its signals, with up to two values, as though the node had sent it itself.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::node_path>("node_path", "The node that sends its signal. Empty is Self.").relists();
	kind.setting<&Self::signal_name>("signal_name", "The signal's name, such as pressed, or one that the node's script declares.");
	kind.setting<&Self::argument_1>("argument_1", "The first value the signal hands over, for a signal that hands over one.").optional();
	kind.setting<&Self::argument_2>("argument_2", "The second value the signal hands over, for a signal that hands over two.").optional();
}

String SCEmitSignalAction::summary_default() {
	return vformat(
			"Make %s signal %s%s", words::name_in_line(node_path), words::picked(signal_name), with_arguments<&Self::argument_1, &Self::argument_2>(this));
}

void SCEmitSignalAction::read_variables_default(SCMachineBase *machine) {
	free_values::read(this, machine, { { verbs::name_of<&Self::argument_1>(), argument_1 }, { verbs::name_of<&Self::argument_2>(), argument_2 } });
}

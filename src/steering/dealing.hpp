#pragma once

// What an action or a condition deals with: the node in its Target Variable when one is named, else what the Perception node under
// its body has found. Every kind that asks has the settings `body_path` and `target_variable`, and says `dealing::bind<Self>(kind)`.

#include "action/kind_table.hpp"
#include "action/values.hpp"
#include "settings/object_arguments.hpp"

namespace dealing {

// True the first time that this is wrong in this way since the state was entered: it need not be told at each step.
bool is_news(SCMachineBase *machine, const Object *kind, const StringName &target_variable, int index);
// Null for nothing. `is_wrong` tells that it can never be anything, which the game maker is to hear of.
Node *found(SCMachineBase *machine, const StringName &target_variable, Node *body, bool &is_wrong);
// The sentence for that, for this kind's instance.
void warn(SCMachineBase *machine, const Object *kind, const StringName &target_variable, Node *body);
// The action that the machine runs at this place of the state it is in; null when it is not of that class.
SCMachineAction *action_at(SCMachineBase *machine, int64_t index, const ClassRow *row);
// The condition that the action at this place asks.
SCMachineCondition *condition_at(SCMachineBase *machine, int64_t index, const ClassRow *row);

template <class Kind>
Node *with(SCMachineBase *machine, Kind *kind, int index, Node *body) {
	bool is_wrong = false;
	Node *node = found(machine, setting_of<&Kind::target_variable>(kind), body, is_wrong);
	if (is_wrong && is_news(machine, kind, setting_of<&Kind::target_variable>(kind), index)) {
		kind->call(*WarningOf<&Kind::warn_dealing>::name, machine, index, body);
	}
	return node;
}

template <class Kind>
Kind *kind_at(SCMachineBase *machine, int64_t index) {
	if constexpr (std::is_base_of_v<SCMachineCondition, Kind>) {
		return static_cast<Kind *>(condition_at(machine, index, KindOf<Kind>::row));
	} else {
		SCMachineAction *action = action_at(machine, index, KindOf<Kind>::row);
		return action != nullptr ? as_kind<Kind>(action) : nullptr;
	}
}

template <class Kind>
Node *dealing_with(SCMachineBase *machine, int64_t index) {
	Kind *kind = kind_at<Kind>(machine, index);
	return kind != nullptr ? with(machine, kind, int(index), values::node_of(machine, kind->body_path)) : nullptr;
}

template <class Kind>
void warn_dealing_with(SCMachineBase *machine, int64_t index) {
	if (Kind *kind = kind_at<Kind>(machine, index)) {
		bool is_wrong = false;
		Node *body = values::node_of(machine, kind->body_path);
		found(machine, kind->target_variable, body, is_wrong);
		if (is_wrong) {
			warn(machine, kind, kind->target_variable, body);
		}
	}
}

// For describe(). The kind declares `void warn_dealing(SCMachineBase *machine, int64_t index, Node *body)`, which calls warn().
template <class Kind>
void bind(KindTable<Kind> &kind) {
	using object_arguments::guarded;
	kind.template warns<&Kind::warn_dealing>("_warn_dealing", "m", "index", "body");
	const StringName class_name = Kind::get_class_static();
	ClassDB::bind_static_method(class_name, D_METHOD("dealing_with", "m", "index"), guarded<&dealing_with<Kind>>("dealing_with"));
	ClassDB::bind_static_method(class_name, D_METHOD("warn_dealing_with", "m", "index"), guarded<&warn_dealing_with<Kind>>("warn_dealing_with"));
}

} // namespace dealing

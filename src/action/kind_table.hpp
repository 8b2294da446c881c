#pragma once

// How a kind is declared. Its class body names its settings as plain fields whose initialisers are
// the defaults; its describe() says the rest, once:
//
//	class SCWaitAction : public SCMachineAction {
//		SC_KIND(SCWaitAction, SCMachineAction)
//	public:
//		double seconds = 1.0;
//	};
//
//	void SCWaitAction::describe(KindTable<Self> &kind) {
//		kind.about("flow", "wait", "Wait a number of seconds, then finish.");
//		kind.runs_for_a_while<&Self::seconds>();
//		kind.setting<&Self::seconds>("seconds", hint::SECONDS, "How long to wait.");
//	}
//
// What shows when, what may stay empty, what is written and how it runs are said there too. The property list, the hints, the free-type settings, the 2D
// defaults, the script path, the docs of the inspector and of the editor's help, and the palette are all read from that.

#include "action/sc_action.hpp"
#include "action/sc_condition.hpp"
#include "settings/class_table.hpp"
#include "settings/setting_rules.hpp"

#include <godot_cpp/core/object.hpp>

template <class T>
struct KindOf {
	inline static const ClassRow *row = nullptr;
};

// The name that one of a kind's `_warn_...` methods goes by.
template <auto Method>
struct WarningOf {
	inline static const StringName *name = nullptr;
};

template <class T>
class KindTable : public ClassTable<T> {
public:
	KindTable() { KindOf<T>::row = &this->row; }

	// The folder it is listed under, the word its script and its runtime are named by, and what it is for.
	void about(const char *category, const char *word, const char *text) {
		this->row.category = category;
		this->row.word = word;
		this->row.about = String::utf8(text);
		if constexpr (std::is_base_of_v<SCMachineCondition, T>) {
			this->row.script_path = vformat("res://addons/quillstead/conditions/condition_%s.gd", word);
		} else {
			this->row.script_path = vformat("res://addons/quillstead/actions/%s/action_%s.gd", category, word);
		}
	}

	// How it goes about its work. For a while: `runs_for_a_while<&Self::duration, &Self::speed>()` is done as it enters when
	// none of these is set.
	void runs(Runs how) { this->row.runs = how; }
	template <auto... Times>
	void runs_for_a_while() {
		this->row.runs = Runs::FOR_A_WHILE;
		(this->row.takes_time_if.push_back(setting_rules::made<true, Times>()), ...);
	}
	void wants_physics() { this->row.wants_physics = true; }
	// A condition's promise that nothing but a variable's change can change its answer.
	void depends_only_on_variables() { this->row.depends_only_on_variables = true; }

	// A sentence of its own that scripts may replace: bound under this name, said with verbs::say<&Self::warn_...>().
	template <auto Method, class... Arguments>
	void warns(const char *name, Arguments... arguments) {
		LocalVector<StringName *> &names = this->row.warnings;
		names.push_back(memnew(StringName(name)));
		WarningOf<Method>::name = names[names.size() - 1];
		ClassDB::bind_method(D_METHOD(name, arguments...), Method);
	}
};

#define SC_KIND(m_class, m_inherits)                                                                                                                           \
	GDCLASS(m_class, m_inherits)                                                                                                                               \
	SC_FIELDS                                                                                                                                                  \
public:                                                                                                                                                        \
	using Self = m_class;                                                                                                                                      \
	static void describe(KindTable<m_class> &kind);                                                                                                            \
	const ClassRow *class_row() const override {                                                                                                               \
		return KindOf<m_class>::row;                                                                                                                           \
	}                                                                                                                                                          \
                                                                                                                                                               \
protected:                                                                                                                                                     \
	static void _bind_methods() {                                                                                                                              \
		KindTable<m_class> kind;                                                                                                                               \
		describe(kind);                                                                                                                                        \
	}                                                                                                                                                          \
                                                                                                                                                               \
private:

// The action as the compiled kind that it is, null when it is none: for a runtime that reads several settings at once, or
// one that is dear to copy. Good until a game's code may run.
template <class Owner>
Owner *as_kind(SCMachineAction *action) {
	const ClassRow *row = action->class_row();
	return row != nullptr && row->is_or_extends(KindOf<Owner>::row) ? static_cast<Owner *>(action) : nullptr;
}

// A setting of the kind being run: from its field when the object is the compiled class, by its
// cached name otherwise.
template <auto Field>
typename FieldOf<Field>::Value setting_of(const Resource *object, const ClassRow *object_row) {
	using Owner = typename FieldOf<Field>::Owner;
	using Value = typename FieldOf<Field>::Value;
	if (object_row != nullptr && object_row->is_or_extends(KindOf<Owner>::row)) {
		return static_cast<const Owner *>(object)->*Field;
	}
	if (FieldOf<Field>::row == nullptr) {
		return Value();
	}
	const Variant held = object->get(FieldOf<Field>::row->info.name);
	return Value(typename FieldOf<Field>::Bound(held));
}
template <auto Field>
typename FieldOf<Field>::Value setting_of(const SCMachineAction *action) {
	if constexpr (std::is_same_v<typename FieldOf<Field>::Owner, SCMachineAction>) {
		return action->*Field;
	} else {
		return setting_of<Field>(action, action->class_row());
	}
}
template <auto Field>
typename FieldOf<Field>::Value setting_of(const SCMachineCondition *condition) {
	return setting_of<Field>(condition, condition->class_row());
}

#pragma once

// How scripts call an operation that runs on a machine: with one that may be null or freed, which is reported, and answered with
// nothing done.

#include "action/values.hpp"
#include "machine_node/sc_machine_base.hpp"
#include "settings/object_arguments.hpp"

#include <godot_cpp/core/class_db.hpp>

namespace script_operations {

template <auto Operation>
struct NameOf {
	inline static const char *name = "";
};

template <auto Operation, class... Arguments>
MethodDefinition named(const char *name, Arguments... arguments) {
	NameOf<Operation>::name = name;
	return D_METHOD(name, arguments...);
}

template <auto Operation>
SCMachineBase *machine_or_error(const Variant &given) {
	bool fits = true;
	SCMachineBase *machine = object_arguments::taken<SCMachineBase>(given, NameOf<Operation>::name, 1, fits);
	if (machine == nullptr && fits) {
		values::report_null(NameOf<Operation>::name, "p_machine");
	}
	return machine;
}

} // namespace script_operations

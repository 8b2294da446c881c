#include "kinds/machine/run_template.hpp"

#include "action/words.hpp"

namespace {

void add_names(PackedStringArray &names, const Array &more) {
	for (int64_t i = 0; i < more.size(); i++) {
		const String name = more[i];
		if (!name.is_empty() && !names.has(name)) {
			names.push_back(name);
		}
	}
}

} // namespace

void SCRunTemplateAction::describe(KindTable<Self> &kind) {
	kind.about("machine", "run_template", "Run another template inside this state, on the same node, for as long as the state runs.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.setting<&Self::machine_template>("template", "The template to run.");
	kind.setting<&Self::shared_variables>("shared_variables",
			"Variables this machine hands to the other template as it starts, and takes back from it when it ends, by the same names in both.");
	kind.setting<&Self::done_event>(
				"done_event", "An event the other template sends to say it is done, as well as reaching an end state. Empty waits for an end state only.")
			.optional();
}

String SCRunTemplateAction::summary_default() {
	if (machine_template.is_null()) {
		return "Run a template (pick one)";
	}
	String name = machine_template->display_name;
	if (name.is_empty()) {
		name = machine_template->get_path().get_file().get_basename().capitalize();
	}
	const String line = vformat("Run %s", name.is_empty() ? String("a template of its own") : name);
	return shared_variables.is_empty() ? line : vformat("%s, sharing %s", line, words::listed(shared_variables));
}

PackedStringArray SCRunTemplateAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	add_names(names, shared_variables);
	return names;
}

PackedStringArray SCRunTemplateAction::variables_written_default() {
	PackedStringArray names = SCMachineAction::variables_written_default();
	add_names(names, shared_variables);
	return names;
}

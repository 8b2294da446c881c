#include "kinds/flow/print.hpp"

#include "action/words.hpp"

void SCPrintAction::describe(KindTable<Self> &kind) {
	kind.about("flow", "print", "Print a line to the Output panel.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Loudness>();
	kind.setting<&Self::text>("text", hint::MULTILINE,
			"The line. A variable's name in braces, such as {score}, is replaced by its value, and {target} by the name of the node the machine works on.");
	kind.setting<&Self::loudness>("loudness", "Whether it is an ordinary line, or shown as a warning or an error.");
}

String SCPrintAction::summary_default() {
	return vformat("Print \"%s\"", text);
}

PackedStringArray SCPrintAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	const PackedStringArray in_braces = words::names_in(text);
	for (int64_t i = 0; i < in_braces.size(); i++) {
		if (!names.has(in_braces[i])) {
			names.push_back(in_braces[i]);
		}
	}
	return names;
}

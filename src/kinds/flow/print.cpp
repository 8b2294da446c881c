#include "kinds/flow/print.hpp"

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

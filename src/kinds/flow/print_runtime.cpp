// The compiled runtime of Print.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/flow/print.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

class Print : public OnceOrRepeating<Print> {
public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const String line = words::fill_in(setting_of<&SCPrintAction::text>(action), machine);
		switch (setting_of<&SCPrintAction::loudness>(action)) {
			case SCPrintAction::AS_LINE:
				UtilityFunctions::print(line);
				break;
			case SCPrintAction::AS_WARNING:
				UtilityFunctions::push_warning(line);
				break;
			case SCPrintAction::AS_ERROR:
				UtilityFunctions::push_error(line);
				break;
		}
	}
};

const AddKinds added = {
	add_kind<SCPrintAction, Print>(),
};

} // namespace

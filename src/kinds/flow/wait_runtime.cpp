// The compiled runtime of Wait.

#include "action/add_kind.hpp"
#include "kinds/flow/wait.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

class Wait : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const double seconds = setting_of<&SCWaitAction::seconds>(action) + UtilityFunctions::randf() * setting_of<&SCWaitAction::random_extra>(action);
		machine->finish_after(index, seconds, Callable(), setting_of<&SCWaitAction::real_time>(action));
	}
};

const AddKinds added = {
	add_kind<SCWaitAction, Wait>(),
};

} // namespace

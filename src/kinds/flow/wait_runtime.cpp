// The compiled runtime of Wait.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/flow/wait.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

class Wait : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const double typed = checked::number<&SCWaitAction::seconds>(machine, action);
		if (typed < 0.0) {
			verbs::warn(machine, action,
					vformat("its Seconds is %s, so it does not wait. Type 0 or more under Seconds, or look at the variable that it reads.",
							words::number(typed)));
		}
		const double seconds = typed + UtilityFunctions::randf() * setting_of<&SCWaitAction::random_extra>(action);
		machine->finish_after(index, seconds, Callable(), setting_of<&SCWaitAction::real_time>(action));
	}
};

const AddKinds added = {
	add_kind<SCWaitAction, Wait>(),
};

} // namespace

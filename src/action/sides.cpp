#include "action/sides.hpp"

namespace sides {

bool same_or_warn(SCMachineBase *machine, const Object *kind, const Node *node, const Node *other, const char *instead, const StringName &setting) {
	const bool is_2d = places::is_2d(node);
	if (places::is_2d(other) == is_2d) {
		return true;
	}
	verbs::warn(machine, kind,
			vformat("%s is in %s and %s in %s, where places mean something else, %s. Pick a %s node under %s.", node->get_name(), is_2d ? "2D" : "3D",
					other->get_name(), is_2d ? "3D" : "2D", instead, is_2d ? "2D" : "3D", verbs::setting_in_inspector(setting)));
	return false;
}

} // namespace sides

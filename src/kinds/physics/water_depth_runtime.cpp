// The compiled runtime of Get Water Depth.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "action/spaces.hpp"
#include "kinds/physics/water_depth.hpp"
#include "space/water.hpp"

namespace {

class GetWaterDepth : public OnceOrRepeating<GetWaterDepth> {
	using Kind = SCGetWaterDepthAction;

	static double depth(SCMachineBase *machine, const SCMachineAction *action) {
		const Node *someone = spaces::placed_or_warn<&Kind::node_path>(machine, action);
		return someone != nullptr ? water::depth_or_warn<&Kind::water_path>(machine, action, someone, "so the depth is 0") : 0.0;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		verbs::keep<&Kind::store_in>(machine, action, depth(machine, action), "the depth");
	}
};

const AddKinds added = {
	add_kind<SCGetWaterDepthAction, GetWaterDepth>(),
};

} // namespace

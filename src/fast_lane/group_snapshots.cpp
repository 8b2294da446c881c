#include "fast_lane/group_snapshots.hpp"

#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/variant/typed_array.hpp>

const GroupSnapshots::Members &GroupSnapshots::members(const StringName &group, const Node *asked_by, uint64_t clock) {
	Snapshot &snapshot = snapshots[group];
	if (snapshot.built_at == clock) {
		return snapshot.members;
	}
	snapshot.built_at = clock;
	snapshot.members.clear();
	if (group.is_empty() || !asked_by->is_inside_tree()) {
		return snapshot.members;
	}
	const TypedArray<Node> nodes = asked_by->get_tree()->get_nodes_in_group(group);
	const int64_t count = nodes.size();
	for (int64_t i = 0; i < count; i++) {
		const Object *node = nodes[i].get_validated_object();
		Member member;
		member.side = spots::side_of(node);
		if (member.side != spots::NOWHERE && spots::read(node, member.side, member.spot)) {
			member.id = node->get_instance_id();
			snapshot.members.push_back(member);
		}
	}
	return snapshot.members;
}

#include "fast_lane/group_snapshots.hpp"

#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/variant/typed_array.hpp>

uint32_t GroupSnapshots::number_of(const StringName &group) {
	if (const uint32_t *known = numbers.getptr(group)) {
		return *known;
	}
	const uint32_t number = snapshots.size();
	snapshots.push_back(Snapshot());
	snapshots[number].group = group;
	numbers.insert(group, number);
	return number;
}

void GroupSnapshots::read(Snapshot &snapshot, const Node *asked_by) {
	snapshot.members.clear();
	if (snapshot.group.is_empty() || !asked_by->is_inside_tree()) {
		return;
	}
	const TypedArray<Node> nodes = asked_by->get_tree()->get_nodes_in_group(snapshot.group);
	const int64_t count = nodes.size();
	for (int64_t i = 0; i < count; i++) {
		const Object *node = nodes[i].get_validated_object();
		const spots::Side side = spots::side_of(node);
		if (side == spots::NOWHERE) {
			continue;
		}
		Vector3 spot;
		if (spots::read(node, side, spot)) {
			snapshot.members.push_back({ ObjectID(node->get_instance_id()), side, spot });
		}
	}
}

// The compiled runtime of Event On Collision. Areas and rigid bodies tell of touches by signals. A character body tells nothing: what
// it ran into on its last move is compared with what it touched before, in every physics frame.

#include "action/add_kind.hpp"
#include "action/native_calls.hpp"
#include "action/shared_verbs.hpp"
#include "character/body_sides.hpp"
#include "kinds/physics/event_on_collision.hpp"
#include "machine/inline_list.hpp"
#include "machine/native_names.hpp"
#include "space/queries.hpp"

#include <godot_cpp/variant/packed_int64_array.hpp>

namespace {

using Kind = SCEventOnCollisionAction;
using Ids = InlineList<uint64_t, 16>;

struct Names {
	StringName handler = "handler";
	StringName node = "node";
	StringName touching = "touching";
	StringName body_entered = "body_entered";
	StringName body_exited = "body_exited";
	StringName area_entered = "area_entered";
	StringName area_exited = "area_exited";
};

const Names &names() {
	return NativeNames::of<Names>();
}

bool counts(const Node *node, const StringName &only_group) {
	return only_group.is_empty() || (node != nullptr && node->is_in_group(only_group));
}

bool holds(const Ids &ids, uint64_t id) {
	for (uint32_t i = 0; i < ids.size(); i++) {
		if (ids[i] == id) {
			return true;
		}
	}
	return false;
}

// Without a node for one that has been freed.
void tell(SCMachineBase *machine, SCMachineAction *action, Node *node, bool by_signal) {
	const StillHere here(machine);
	const ObjectID id = node != nullptr ? ObjectID(node->get_instance_id()) : ObjectID();
	const StringName event = setting_of<&Kind::event_name>(action);
	if (node != nullptr) {
		verbs::keep_if_named<&Kind::store_node_in>(machine, action, node);
	} else {
		verbs::let_go(machine, setting_of<&Kind::store_node_in>(action));
	}
	if (!here || event.is_empty()) {
		return;
	}
	const Variant touched = id.is_valid() ? ObjectDB::get_instance(id) : nullptr;
	if (by_signal) {
		machine->send_event_from_signal(event, touched);
	} else {
		machine->send_event(event, touched);
	}
}

void hear(SCMachineBase *machine, SCMachineAction *action, int, const Array &handed_over) {
	Node *node = handed_over.is_empty() ? nullptr : Object::cast_to<Node>(handed_over[0].get_validated_object());
	if (node != nullptr && counts(node, setting_of<&Kind::only_group>(action))) {
		tell(machine, action, node, true);
	}
}

class EventOnCollision : public SCNativeAction {
	static Node *node_in(const Dictionary &slot) {
		const Variant id = slot.get(names().node, Variant());
		return id.get_type() == Variant::INT ? Object::cast_to<Node>(ObjectDB::get_instance(ObjectID(uint64_t(id)))) : nullptr;
	}

	static void listen(SCMachineBase *machine, SCMachineAction *action, int index, Node *node, bool to_areas) {
		const bool ends = setting_of<&Kind::when>(action) == Kind::STOPS_TOUCHING;
		const Callable handler = ActionCall::make("Event On Collision", machine, action, index, hear);
		machine->slot(index)[names().handler] = handler;
		node->connect(ends ? names().body_exited : names().body_entered, handler);
		if (to_areas) {
			node->connect(ends ? names().area_exited : names().area_entered, handler);
		}
	}

	static void tell_of_those_there(SCMachineBase *machine, SCMachineAction *action, const Array &nodes) {
		const StillHere here(machine);
		for (int64_t i = 0; here && i < nodes.size(); i++) {
			Node *node = Object::cast_to<Node>(nodes[i].get_validated_object());
			if (node != nullptr && counts(node, setting_of<&Kind::only_group>(action))) {
				tell(machine, action, node, false);
			}
		}
	}

	static bool counts_those_there(const SCMachineAction *action) {
		return setting_of<&Kind::when>(action) == Kind::STARTS_TOUCHING && setting_of<&Kind::count_those_already_there>(action);
	}

	template <class Area>
	static void begin_area(SCMachineBase *machine, SCMachineAction *action, int index, Area *area) {
		const bool to_areas = setting_of<&Kind::include_areas>(action);
		listen(machine, action, index, area, to_areas);
		if (!area->is_monitoring()) {
			verbs::warn(machine, action, vformat("%s is not monitoring, so nothing is felt touching it. Turn on its Monitoring.", area->get_name()));
			return;
		}
		if (!counts_those_there(action) || !area->is_inside_tree()) {
			return;
		}
		Array nodes;
		nodes.append_array(area->get_overlapping_bodies());
		if (to_areas) {
			nodes.append_array(area->get_overlapping_areas());
		}
		tell_of_those_there(machine, action, nodes);
	}

	template <class Rigid>
	static void begin_rigid(SCMachineBase *machine, SCMachineAction *action, int index, Rigid *rigid) {
		listen(machine, action, index, rigid, false);
		if (!rigid->is_contact_monitor_enabled() || rigid->get_max_contacts_reported() < 1) {
			verbs::warn(machine, action,
					vformat("%s does not report what it touches, so no event is sent. Turn on its Contact Monitor and set Max Contacts Reported to 4 or so.",
							rigid->get_name()));
			return;
		}
		if (counts_those_there(action)) {
			Array nodes;
			nodes.append_array(rigid->get_colliding_bodies());
			tell_of_those_there(machine, action, nodes);
		}
	}

	static void add(Ids &ids, const Object *object, const StringName &only_group) {
		const Node *node = Object::cast_to<Node>(object);
		if (node != nullptr && counts(node, only_group) && !holds(ids, node->get_instance_id())) {
			ids.push_back(node->get_instance_id());
		}
	}

	// What is within a hair's breadth of the body. It may well lie against what its last move did not run into: a wall that it no
	// longer walks against, the floor that it is held to.
	template <class Side>
	static void add_near(SCMachineAction *action, typename Side::Character *body, Ids &ids, const Ids *only_of) {
		using Hits = queries::Hits<typename Side::Vector>;
		const StringName only_group = setting_of<&Kind::only_group>(action);
		queries::Filter filter;
		filter.mask = body->get_collision_mask();
		filter.own[0] = body;
		queries::Query<Side> query(body, filter);
		if (!query) {
			return;
		}
		// The engine stops a body that walks against a wall up to this far short of it (4.6).
		const double margin = double(body->get_safe_margin());
		const double stops_short = MIN(0.1, margin * 20.0);
		Hits hits;
		query.touching(body, margin * 2.0 + stops_short + Side::HAIR, hits);
		for (const auto &hit : hits) {
			const Node *node = hit.get();
			if (node != nullptr && (only_of == nullptr || holds(*only_of, node->get_instance_id()))) {
				add(ids, node, only_group);
			}
		}
	}

	template <class Side>
	static void add_areas(SCMachineAction *action, typename Side::Character *body, Ids &ids) {
		queries::Filter filter;
		filter.mask = body->get_collision_mask();
		filter.own[0] = body;
		filter.bodies = false;
		filter.areas = true;
		queries::Query<Side> query(body, filter);
		if (!query) {
			return;
		}
		queries::Hits<typename Side::Vector> hits;
		query.touching(body, 0.0, hits);
		for (const auto &hit : hits) {
			add(ids, hit.get(), setting_of<&Kind::only_group>(action));
		}
	}

	template <class Side>
	static void find(SCMachineAction *action, typename Side::Character *body, const Ids *before, Ids &now) {
		const StringName only_group = setting_of<&Kind::only_group>(action);
		for (int i = 0; i < body->get_slide_collision_count(); i++) {
			collisions::for_each(body->get_slide_collision(i), [&](Object *collider, const auto &, const auto &) { add(now, collider, only_group); });
		}
		if (setting_of<&Kind::include_areas>(action)) {
			add_areas<Side>(action, body, now);
		}
		bool all_are_there = before != nullptr;
		for (uint32_t i = 0; before != nullptr && i < before->size(); i++) {
			all_are_there = all_are_there && holds(now, (*before)[i]);
		}
		if (!all_are_there) {
			add_near<Side>(action, body, now, before);
		}
	}

	template <class Side>
	static void compare(SCMachineBase *machine, SCMachineAction *action, int index, typename Side::Character *body) {
		if (!body->is_inside_tree() || queries::is_fresh(machine)) {
			return;
		}
		Dictionary slot = machine->slot(index);
		const bool ends = setting_of<&Kind::when>(action) == Kind::STOPS_TOUCHING;
		const Variant kept = slot.get(names().touching, Variant());
		Ids before;
		Ids now;
		if (kept.get_type() == Variant::NIL) {
			find<Side>(action, body, nullptr, now);
			keep(slot, now);
			if (!counts_those_there(action)) {
				return;
			}
		} else {
			const PackedInt64Array ids = kept;
			for (int64_t i = 0; i < ids.size(); i++) {
				before.push_back(uint64_t(ids[i]));
			}
			find<Side>(action, body, &before, now);
		}
		Ids changed;
		const Ids &those = ends ? before : now;
		const Ids &others = ends ? now : before;
		bool differs = before.size() != now.size();
		for (uint32_t i = 0; i < those.size(); i++) {
			if (!holds(others, those[i])) {
				changed.push_back(those[i]);
			}
		}
		if (differs || !changed.is_empty()) {
			keep(slot, now);
		}
		const StillHere here(machine);
		for (uint32_t i = 0; here && i < changed.size(); i++) {
			tell(machine, action, Object::cast_to<Node>(ObjectDB::get_instance(ObjectID(changed[i]))), false);
		}
	}

	static void keep(Dictionary &slot, const Ids &ids) {
		PackedInt64Array kept;
		kept.resize(ids.size());
		for (uint32_t i = 0; i < ids.size(); i++) {
			kept.set(i, int64_t(ids[i]));
		}
		slot[names().touching] = kept;
	}

	static void begin(SCMachineBase *machine, SCMachineAction *action, int index) {
		Node *node = verbs::node_or_warn<&Kind::node_path>(machine, action);
		if (node == nullptr) {
			return;
		}
		if (setting_of<&Kind::event_name>(action).is_empty() && setting_of<&Kind::store_node_in>(action).is_empty()) {
			verbs::warn(machine, action, "it has nothing to send. Type an event under Event Name, or pick a variable under Store Node In.");
		}
		machine->slot(index)[names().node] = int64_t(node->get_instance_id());
		if (auto *area_2d = Object::cast_to<Area2D>(node)) {
			begin_area(machine, action, index, area_2d);
		} else if (auto *area_3d = Object::cast_to<Area3D>(node)) {
			begin_area(machine, action, index, area_3d);
		} else if (auto *rigid_2d = Object::cast_to<RigidBody2D>(node)) {
			begin_rigid(machine, action, index, rigid_2d);
		} else if (auto *rigid_3d = Object::cast_to<RigidBody3D>(node)) {
			begin_rigid(machine, action, index, rigid_3d);
		} else if (!bodies::is_character(node)) {
			verbs::warn_wrong_class(machine, action, node, "an area, a character body or a rigid body", verbs::name_of<&Kind::node_path>());
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		Dictionary slot = machine->slot(index);
		slot.erase(names().touching);
		slot.erase(names().node);
		begin(machine, action, index);
		if (here) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		Node *node = node_in(machine->slot(index));
		if (auto *body_2d = Object::cast_to<CharacterBody2D>(node)) {
			compare<In2D>(machine, action, index, body_2d);
		} else if (auto *body_3d = Object::cast_to<CharacterBody3D>(node)) {
			compare<In3D>(machine, action, index, body_3d);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override {
		const Dictionary slot = machine->slot(index);
		const Callable handler = slot.get(names().handler, Callable());
		Node *node = node_in(slot);
		if (node == nullptr || !handler.is_valid()) {
			return;
		}
		for (const StringName *signal : { &names().body_entered, &names().body_exited, &names().area_entered, &names().area_exited }) {
			if (node->has_signal(*signal) && node->is_connected(*signal, handler)) {
				node->disconnect(*signal, handler);
			}
		}
	}
};

const AddKinds added = {
	add_kind<SCEventOnCollisionAction, EventOnCollision>(),
};

} // namespace

// The compiled runtime of Set Gravity. A character carries its gravity as metadata that the move step reads; one that falls upward has its
// up direction turned round as well, so that ceilings are its floors.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/holders.hpp"
#include "action/shared_verbs.hpp"
#include "character/body_keys.hpp"
#include "character/body_sides.hpp"
#include "kinds/physics/set_gravity.hpp"

#include <godot_cpp/classes/animated_sprite2d.hpp>
#include <godot_cpp/classes/polygon2d.hpp>
#include <godot_cpp/classes/rigid_body2d.hpp>
#include <godot_cpp/classes/rigid_body3d.hpp>
#include <godot_cpp/classes/sprite2d.hpp>
#include <godot_cpp/core/math.hpp>

namespace {

using Kind = SCSetGravityAction;

struct Names {
	StringName holds = "holds";
	StringName body = "body";
	StringName upside_down = "quillstead_upside_down";
	StringName pictures_turned = "quillstead_pictures_turned";
	// What is changed, as holders know it.
	StringName gravity_scale = "gravity_scale";
	StringName up_direction = "up_direction";
	StringName scale_of_character = "metadata/quillstead_gravity_scale";
	StringName upside_down_of_character = "metadata/quillstead_upside_down";
};

const Names &names() {
	return NativeNames::of<Names>();
}

template <class Picture>
bool flip(Node *child) {
	Picture *picture = Object::cast_to<Picture>(child);
	if (picture != nullptr) {
		picture->set_flip_v(!picture->is_flipped_v());
	}
	return picture != nullptr;
}

void turn_pictures(Object *body, bool turned) {
	CharacterBody2D *character = Object::cast_to<CharacterBody2D>(body);
	if (character == nullptr || body_keys::truth(character, names().pictures_turned) == turned) {
		return;
	}
	character->set_meta(names().pictures_turned, turned);
	for (int i = 0; i < character->get_child_count(); i++) {
		Node *child = character->get_child(i);
		Polygon2D *polygon = Object::cast_to<Polygon2D>(child);
		if (polygon != nullptr) {
			polygon->set_scale(polygon->get_scale() * Vector2(1.0f, -1.0f));
		} else if (!flip<Sprite2D>(child)) {
			flip<AnimatedSprite2D>(child);
		}
	}
}

// One run of the action on one body.
struct Change {
	SCMachineBase *machine;
	SCMachineAction *action;
	int index;
	ObjectID id;
	Array tickets;

	bool is_held() const { return setting_of<&Kind::put_back_when_left>(action); }

	// `puts_on` false where somebody else has to have their way first.
	void set(const StringName &property, const Variant &value, bool puts_on = true) {
		Object *body = ObjectDB::get_instance(id);
		if (body == nullptr) {
			return;
		}
		if (is_held()) {
			tickets.push_back(holders::hold(body, property, machine, value));
		} else {
			holders::change_for_good(body, property, value);
		}
		if (puts_on) {
			body = ObjectDB::get_instance(id);
			if (body != nullptr) {
				body->set(property, value);
			}
		}
	}

	template <class Body>
	void take(Body *body, double scale) {
		const BodyKeys &keys = BodyKeys::shared();
		const bool is_turned = body_keys::truth(body, names().upside_down);
		const bool turns = scale < 0.0;
		// So that there is something to put back.
		if (!body->has_meta(keys.gravity_scale)) {
			body->set_meta(keys.gravity_scale, 1.0);
		}
		if (!body->has_meta(names().upside_down)) {
			body->set_meta(names().upside_down, false);
		}
		const auto up = body->get_up_direction();
		const bool swims = !is_held() && body->has_meta(keys.weight_out_of_water);
		if (swims) {
			body->set_meta(keys.weight_out_of_water, Math::abs(scale));
		}
		set(names().scale_of_character, Math::abs(scale), !swims);
		set(names().up_direction, is_turned == turns ? up : -up);
		set(names().upside_down_of_character, turns);
		turn_pictures(ObjectDB::get_instance(id), turns && setting_of<&Kind::turn_picture>(action));
	}

	// A body at rest does not feel that it could move now.
	template <class Rigid>
	void take_rigid(Rigid *body, double scale) {
		set(names().gravity_scale, scale);
		body = Object::cast_to<Rigid>(ObjectDB::get_instance(id));
		if (body != nullptr) {
			body->set_sleeping(false);
		}
	}

	// False for what no gravity pulls at.
	bool take_any(Node *node, double scale) {
		if (RigidBody2D *rigid_2d = Object::cast_to<RigidBody2D>(node)) {
			take_rigid(rigid_2d, scale);
		} else if (RigidBody3D *rigid_3d = Object::cast_to<RigidBody3D>(node)) {
			take_rigid(rigid_3d, scale);
		} else {
			return bodies::visit(node, [&](auto *body) { take(body, scale); });
		}
		return true;
	}
};

class SetGravity : public SCNativeAction {
public:
	static constexpr bool HOLDS = true;

	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		Dictionary slot = machine->slot(index);
		slot.clear();
		Node *node = verbs::node_or_warn<&Kind::body_path>(machine, action);
		const double scale = setting_of<&Kind::scale>(action);
		if (node != nullptr && checked::sound_or_warn(machine, action, scale, verbs::name_of<&Kind::scale>())) {
			Change change{ machine, action, index, ObjectID(node->get_instance_id()), Array() };
			slot[names().body] = int64_t(node->get_instance_id());
			if (!change.take_any(node, scale)) {
				verbs::warn_wrong_class(machine, action, node, "a CharacterBody or a RigidBody", verbs::name_of<&Kind::body_path>());
			}
			// What was left meanwhile puts nothing back any more.
			if (here) {
				slot[names().holds] = change.tickets;
			} else {
				put_back(change.tickets, change.id);
			}
		}
		if (here) {
			machine->finish(index);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override {
		Dictionary slot = machine->slot(index);
		if (slot.has(names().holds)) {
			const Array tickets = slot[names().holds];
			slot.erase(names().holds);
			put_back(tickets, ObjectID(uint64_t(int64_t(slot[names().body]))));
		}
	}

private:
	static void put_back(const Array &tickets, ObjectID id) {
		for (int64_t i = 0; i < tickets.size(); i++) {
			holders::let_go(tickets[i]);
		}
		Object *body = tickets.is_empty() ? nullptr : ObjectDB::get_instance(id);
		if (body != nullptr && !body_keys::truth(body, names().upside_down)) {
			turn_pictures(body, false);
		}
		wake(Object::cast_to<RigidBody2D>(body));
		wake(Object::cast_to<RigidBody3D>(body));
	}
	template <class Rigid>
	static void wake(Rigid *body) {
		if (body != nullptr) {
			body->set_sleeping(false);
		}
	}
};

const AddKinds added = {
	add_kind<SCSetGravityAction, SetGravity>(),
};

} // namespace

// The compiled runtimes of Get Last Collision and Get Contact.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "character/body_sides.hpp"
#include "kinds/physics/contacts.hpp"
#include "machine/inline_list.hpp"
#include "space/answers.hpp"

namespace {

bool counts(const Object *collider, const StringName &only_group) {
	const Node *node = Object::cast_to<Node>(collider);
	return only_group.is_empty() || (node != nullptr && node->is_in_group(only_group));
}

template <class Kind, class Vector>
void keep(SCMachineBase *machine, SCMachineAction *action, int index, const queries::Hit<Vector> *hit) {
	const StillHere here(machine);
	verbs::keep_each<&Kind::store_hit_in>(machine, action, { hit != nullptr });
	if (here) {
		answers::keep_first<Kind>(machine, action, hit);
	}
	if (here) {
		Node *node = hit != nullptr ? hit->get() : nullptr;
		answers::tell<&Kind::hit_event, &Kind::nothing_event>(machine, action, index, hit != nullptr ? hit->key() : 0, node);
	}
}

class GetLastCollision : public OnceOrRepeating<GetLastCollision> {
	using Kind = SCGetLastCollisionAction;

	template <class Body>
	static bool find(SCMachineAction *action, Body *body, queries::Hit<decltype(body->get_velocity())> &hit) {
		using Vector = decltype(body->get_velocity());
		const Kind::Surface surface = setting_of<&Kind::surface>(action);
		const StringName only_group = setting_of<&Kind::only_group>(action);
		bool found = false;
		for (int i = body->get_slide_collision_count(); i > 0 && !found; i--) {
			collisions::for_each(body->get_slide_collision(i - 1), [&](Object *collider, const Vector &normal, const Vector &place) {
				const bool wanted = surface == Kind::ANYTHING || int(surfaces::of(body, normal)) + 1 == int(surface);
				if (!found && wanted && collider != nullptr && counts(collider, only_group)) {
					hit.node = ObjectID(collider->get_instance_id());
					hit.place = place;
					hit.normal = normal;
					found = true;
				}
			});
		}
		return found;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->slot(index).erase(NativeNames::of<answers::Names>().told);
		OnceOrRepeating<GetLastCollision>::enter(machine, action, index);
	}

	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		Node *node = verbs::node_or_warn<&Kind::body_path>(machine, action);
		const bool asked = bodies::visit(node, [&](auto *body) {
			queries::Hit<decltype(body->get_velocity())> hit;
			const bool found = find(action, body, hit);
			keep<Kind>(machine, action, index, found ? &hit : nullptr);
		});
		if (asked) {
			return;
		}
		if (node != nullptr) {
			verbs::warn_wrong_class(machine, action, node, "a CharacterBody2D or CharacterBody3D", verbs::name_of<&Kind::body_path>());
		}
		keep<Kind, Vector3>(machine, action, index, nullptr);
	}
};

class GetContact : public AnswersFromSpace<GetContact> {
	using Kind = SCGetContactAction;

	// All contacts with one thing, of which the engine may tell several for one landing, each with its share of the impulse.
	struct Touch {
		uint64_t collider = 0;
		double impulse = 0.0;
		double hardest = -1.0;
		int at = 0;
		int64_t contacts = 0;
	};
	using Touches = InlineList<Touch, 8>;

	static Touch &touch_of(Touches &touches, uint64_t collider) {
		for (uint32_t i = 0; i < touches.size(); i++) {
			if (touches[i].collider == collider) {
				return touches[i];
			}
		}
		Touch fresh;
		fresh.collider = collider;
		touches.push_back(fresh);
		return touches[touches.size() - 1];
	}

	template <class Vector>
	struct Hardest {
		queries::Hit<Vector> hit;
		double impulse = 0.0;
		int64_t count = 0;
	};

	template <class Side>
	static void look(SCMachineBase *machine, SCMachineAction *action, typename Side::Rigid *body, Hardest<typename Side::Vector> &hardest) {
		if (body->get_max_contacts_reported() < 1) {
			verbs::warn(machine, action,
					vformat("%s does not report its contacts, so none was found. Set its Max Contacts Reported to 4 or so.", body->get_name()));
			return;
		}
		const typename Side::BodyState *state = body->is_inside_tree() ? Side::Server::get_singleton()->body_get_direct_state(body->get_rid()) : nullptr;
		const StringName only_group = setting_of<&Kind::only_group>(action);
		Touches touches;
		for (int i = 0; state != nullptr && i < state->get_contact_count(); i++) {
			if (!counts(state->get_contact_collider_object(i), only_group)) {
				continue;
			}
			const double impulse = double(state->get_contact_impulse(i).length());
			Touch &touch = touch_of(touches, state->get_contact_collider_id(i));
			touch.impulse += impulse;
			touch.contacts++;
			if (impulse > touch.hardest) {
				touch.hardest = impulse;
				touch.at = i;
			}
		}
		const double at_least = checked::number<&Kind::at_least>(machine, action);
		int at = -1;
		for (uint32_t i = 0; i < touches.size(); i++) {
			const Touch &touch = touches[i];
			if (touch.impulse < at_least) {
				continue;
			}
			hardest.count += touch.contacts;
			if (at < 0 || touch.impulse > hardest.impulse) {
				hardest.impulse = touch.impulse;
				at = touch.at;
			}
		}
		if (at >= 0) {
			hardest.hit.node = ObjectID(state->get_contact_collider_id(at));
			hardest.hit.rid = state->get_contact_collider(at);
			hardest.hit.place = state->get_contact_collider_position(at);
			hardest.hit.normal = state->get_contact_local_normal(at);
		}
	}

	template <class Side>
	static void look_and_tell(SCMachineBase *machine, SCMachineAction *action, int index, typename Side::Rigid *body) {
		const StillHere here(machine);
		Hardest<typename Side::Vector> hardest;
		if (body != nullptr) {
			look<Side>(machine, action, body, hardest);
		}
		verbs::keep_each<&Kind::store_impulse_in, &Kind::store_count_in>(machine, action, { hardest.impulse, hardest.count });
		if (here) {
			keep<Kind>(machine, action, index, hardest.count > 0 ? &hardest.hit : nullptr);
		}
	}

public:
	static void answer(SCMachineBase *machine, SCMachineAction *action, int index) {
		Node *node = verbs::node_or_warn<&Kind::body_path>(machine, action);
		if (auto *body_2d = Object::cast_to<RigidBody2D>(node)) {
			look_and_tell<In2D>(machine, action, index, body_2d);
			return;
		}
		auto *body_3d = Object::cast_to<RigidBody3D>(node);
		if (node != nullptr && body_3d == nullptr) {
			verbs::warn_wrong_class(machine, action, node, "a RigidBody2D or RigidBody3D", verbs::name_of<&Kind::body_path>());
		}
		look_and_tell<In3D>(machine, action, index, body_3d);
	}
};

const AddKinds added = {
	add_kind<SCGetLastCollisionAction, GetLastCollision>(),
	add_kind<SCGetContactAction, GetContact>(),
};

} // namespace

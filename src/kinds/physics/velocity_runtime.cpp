// The compiled runtimes of Get Velocity and Set Velocity.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/spaces.hpp"
#include "kinds/physics/velocity.hpp"
#include "kinds/physics/velocity_bodies.hpp"

#include <godot_cpp/core/math.hpp>

namespace {

// The node's own axes, without its size.
Vector2 to_own_axes(const Node2D *body, const Vector2 &vector) {
	return vector.rotated(-spaces::world_of(body).get_rotation());
}
Vector3 to_own_axes(const Node3D *body, const Vector3 &vector) {
	const Basis basis = spaces::world_of(body).basis;
	return spaces::has_a_way_back(basis) ? basis.get_rotation_quaternion().inverse().xform(vector) : vector;
}
Vector2 to_world_axes(const Node2D *body, const Vector2 &vector) {
	return spaces::own_direction(body, vector);
}
Vector3 to_world_axes(const Node3D *body, const Vector3 &vector) {
	return spaces::own_direction(body, vector);
}

Vector2 front_of(const Node2D *body) {
	return to_world_axes(body, Vector2(1.0f, 0.0f));
}
Vector3 front_of(const Node3D *body) {
	return to_world_axes(body, Vector3(0.0f, 0.0f, -1.0f));
}

Variant turning_in_degrees(const RigidBody2D *body) {
	return Math::rad_to_deg(double(moving::turning_of(body)));
}
Variant turning_in_degrees(const RigidBody3D *body) {
	return moving::turning_of(body) * real_t(Math::rad_to_deg(1.0));
}
Variant turning_in_degrees(const CharacterBody2D *) {
	return 0.0;
}
Variant turning_in_degrees(const CharacterBody3D *) {
	return Vector3();
}

class GetVelocity : public OnceOrRepeating<GetVelocity> {
	using Kind = SCGetVelocityAction;

	template <class Body>
	static bool keep(SCMachineBase *machine, const SCMachineAction *action, const Body *body) {
		const auto velocity = moving::velocity_of(body);
		const auto told = setting_of<&Kind::space>(action) == Kind::LOCAL ? to_own_axes(body, velocity) : velocity;
		const auto up = moving::up_of(body);
		return verbs::keep_each<&Kind::store_velocity_in, &Kind::store_speed_in, &Kind::store_direction_in, &Kind::store_flat_speed_in, &Kind::store_rising_in,
				&Kind::store_forward_in, &Kind::store_turning_in>(machine, action,
				{ told, double(velocity.length()), told.normalized(), double(bodies::without(velocity, up).length()), double(velocity.dot(up)),
						double(velocity.dot(front_of(body))), turning_in_degrees(body) });
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		Node *node = verbs::node_or_warn<&Kind::body_path>(machine, action);
		if (node == nullptr) {
			return;
		}
		const StillHere here(machine);
		bool kept = true;
		if (!moving::visit(node, [&](auto *body) { kept = keep(machine, action, body); })) {
			verbs::warn_wrong_class(machine, action, node, moving::A_BODY, verbs::name_of<&Kind::body_path>());
		} else if (here && !kept) {
			verbs::warn(machine, action,
					"there is nowhere to put what it found, so nothing was kept. Pick a variable under one of the settings that begin with Store.");
		}
	}
};

class SetVelocity : public OnceOrRepeating<SetVelocity> {
	using Kind = SCSetVelocityAction;

	static Vector2 given(const RigidBody2D *, const Variant &value) { return places::as_vector2(value); }
	static Vector2 given(const CharacterBody2D *, const Variant &value) { return places::as_vector2(value); }
	static Vector3 given(const RigidBody3D *, const Variant &value) { return places::as_vector3(value); }
	static Vector3 given(const CharacterBody3D *, const Variant &value) { return places::as_vector3(value); }

	static void take_parts(const Kind *kind, Vector2 &velocity, const Vector2 &fresh) {
		velocity.x = kind->set_x ? fresh.x : velocity.x;
		velocity.y = kind->set_y ? fresh.y : velocity.y;
	}
	static void take_parts(const Kind *kind, Vector3 &velocity, const Vector3 &fresh) {
		velocity.x = kind->set_x ? fresh.x : velocity.x;
		velocity.y = kind->set_y ? fresh.y : velocity.y;
		velocity.z = kind->set_z ? fresh.z : velocity.z;
	}

	// In the axes that the kind speaks of.
	template <class Vector>
	static Vector next(const Kind *kind, const Vector &now, const Vector &wanted) {
		Vector fresh = wanted;
		if (kind->what == Kind::A_SPEED_AND_A_DIRECTION) {
			const Vector way = wanted == Vector() ? now.normalized() : wanted.normalized();
			fresh = way * real_t(kind->speed);
			return kind->how == Kind::ADD ? now + fresh : fresh;
		}
		Vector velocity = now;
		take_parts(kind, velocity, kind->how == Kind::ADD ? now + fresh : fresh);
		return velocity;
	}

	template <class Body>
	static void set(const Kind *kind, Body *body) {
		const auto now = moving::velocity_of(body);
		const auto wanted = given(body, kind->velocity);
		if (kind->space == Kind::LOCAL) {
			moving::set_velocity(body, to_world_axes(body, next(kind, to_own_axes(body, now), wanted)));
		} else {
			moving::set_velocity(body, next(kind, now, wanted));
		}
	}

	static void turn(const Kind *kind, RigidBody2D *body) {
		const double turning = Math::deg_to_rad(kind->turn_speed);
		body->set_angular_velocity(float(kind->how == Kind::ADD ? double(moving::turning_of(body)) + turning : turning));
	}
	static void turn(const Kind *kind, RigidBody3D *body) {
		const Vector3 axis = kind->space == Kind::LOCAL ? to_world_axes(body, kind->turn_axis) : kind->turn_axis;
		const Vector3 turning = axis.normalized() * real_t(Math::deg_to_rad(kind->turn_speed));
		body->set_angular_velocity(kind->how == Kind::ADD ? moving::turning_of(body) + turning : turning);
	}

	static bool is_sound(SCMachineBase *machine, const Kind *kind) {
		if (kind->what == Kind::HOW_FAST_IT_TURNS) {
			return checked::sound_or_warn(machine, kind, kind->turn_speed, verbs::name_of<&Kind::turn_speed>()) &&
					checked::sound_or_warn(machine, kind, kind->turn_axis, verbs::name_of<&Kind::turn_axis>());
		}
		return spaces::place_or_warn<&Kind::velocity>(machine, kind) &&
				(kind->what == Kind::THE_VELOCITY || checked::sound_or_warn(machine, kind, kind->speed, verbs::name_of<&Kind::speed>()));
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		Kind *kind = as_kind<Kind>(action);
		Node *node = kind != nullptr ? verbs::node_or_warn<&Kind::body_path>(machine, kind) : nullptr;
		if (node == nullptr || !is_sound(machine, kind)) {
			return;
		}
		if (kind->what == Kind::HOW_FAST_IT_TURNS) {
			if (!moving::visit_rigid(node, [kind](auto *body) { turn(kind, body); })) {
				verbs::warn(machine, kind,
						vformat("%s is a %s, and only a RigidBody spins by itself, so it does not turn. Pick a RigidBody2D or a RigidBody3D under Body Path, "
								"or turn "
								"it with Rotate.",
								node->get_name(), node->get_class()));
			}
		} else if (!moving::visit(node, [kind](auto *body) { set(kind, body); })) {
			verbs::warn_wrong_class(machine, kind, node, moving::A_BODY, verbs::name_of<&Kind::body_path>());
		} else if (moving::is_frozen(node)) {
			verbs::warn(machine, kind, vformat("%s is frozen, so it stays where it is. Let it go with Freeze, or untick Freeze on it.", node->get_name()));
		}
	}
};

const AddKinds added = {
	add_kind<SCGetVelocityAction, GetVelocity>(),
	add_kind<SCSetVelocityAction, SetVelocity>(),
};

} // namespace

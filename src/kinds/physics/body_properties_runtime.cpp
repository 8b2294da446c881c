// The compiled runtime of Set Body Properties.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "character/body_sides.hpp"
#include "kinds/physics/body_properties.hpp"
#include "kinds/physics/body_properties_put.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/physics_material.hpp>
#include <godot_cpp/classes/rigid_body2d.hpp>
#include <godot_cpp/classes/rigid_body3d.hpp>
#include <godot_cpp/classes/static_body2d.hpp>
#include <godot_cpp/classes/static_body3d.hpp>
#include <godot_cpp/core/math.hpp>

namespace {

using Kind = SCSetBodyPropertiesAction;

struct Names {
	StringName held = "held";
	StringName held_on = "held_on";
	StringName held_property = "held_property";
	StringName physics_material_override = "physics_material_override";
	// On a material: the body that it was made for.
	StringName made_for = "quillstead_made_for";
	StringName max_contacts_reported = "max_contacts_reported";
};

const Names &names() {
	return NativeNames::of<Names>();
}

enum class Of { RIGID, MATERIAL, CHARACTER };
enum class Form { NUMBER, WHOLE, DEGREES, SWITCH, CAST, UP, MODE };

struct Row {
	Kind::Property property;
	const char *name;
	Of of;
	Form form;
	double least;
	double most;
};

constexpr double ANY = checked::LARGEST;
// The engine's own least mass.
constexpr double LEAST_MASS = 0.001;
// The engine takes no more, and keeps room for each.
constexpr double MOST_CONTACTS = 4095.0;
constexpr double MOST_SLIDES = 256.0;

constexpr Row ROWS[] = {
	{ Kind::MASS, "mass", Of::RIGID, Form::NUMBER, LEAST_MASS, ANY },
	{ Kind::FRICTION, "friction", Of::MATERIAL, Form::NUMBER, 0.0, 1.0 },
	{ Kind::BOUNCE, "bounce", Of::MATERIAL, Form::NUMBER, 0.0, 1.0 },
	{ Kind::GRAVITY_SCALE, "gravity_scale", Of::RIGID, Form::NUMBER, -ANY, ANY },
	{ Kind::LINEAR_DAMP, "linear_damp", Of::RIGID, Form::NUMBER, 0.0, ANY },
	{ Kind::ANGULAR_DAMP, "angular_damp", Of::RIGID, Form::NUMBER, 0.0, ANY },
	{ Kind::LOCK_ROTATION, "lock_rotation", Of::RIGID, Form::SWITCH, 0.0, 1.0 },
	{ Kind::CAN_SLEEP, "can_sleep", Of::RIGID, Form::SWITCH, 0.0, 1.0 },
	{ Kind::CONTINUOUS_COLLISION, "continuous_cd", Of::RIGID, Form::CAST, 0.0, 1.0 },
	{ Kind::CONTACT_MONITOR, "contact_monitor", Of::RIGID, Form::SWITCH, 0.0, 1.0 },
	{ Kind::MAX_CONTACTS, "max_contacts_reported", Of::RIGID, Form::WHOLE, 0.0, MOST_CONTACTS },
	{ Kind::UP_DIRECTION, "up_direction", Of::CHARACTER, Form::UP, 0.0, 0.0 },
	{ Kind::MOTION_MODE, "motion_mode", Of::CHARACTER, Form::MODE, 0.0, 0.0 },
	{ Kind::FLOOR_ANGLE, "floor_max_angle", Of::CHARACTER, Form::DEGREES, 0.0, 180.0 },
	{ Kind::FLOOR_SNAP, "floor_snap_length", Of::CHARACTER, Form::NUMBER, 0.0, ANY },
	{ Kind::STOP_ON_SLOPES, "floor_stop_on_slope", Of::CHARACTER, Form::SWITCH, 0.0, 1.0 },
	{ Kind::SAME_SPEED_ON_SLOPES, "floor_constant_speed", Of::CHARACTER, Form::SWITCH, 0.0, 1.0 },
	{ Kind::BLOCK_ON_WALLS, "floor_block_on_wall", Of::CHARACTER, Form::SWITCH, 0.0, 1.0 },
	{ Kind::SLIDE_ON_CEILINGS, "slide_on_ceiling", Of::CHARACTER, Form::SWITCH, 0.0, 1.0 },
	{ Kind::WALL_ANGLE, "wall_min_slide_angle", Of::CHARACTER, Form::DEGREES, 0.0, 180.0 },
	{ Kind::SAFE_MARGIN, "safe_margin", Of::CHARACTER, Form::NUMBER, 0.001, 256.0 },
	{ Kind::MAX_SLIDES, "max_slides", Of::CHARACTER, Form::WHOLE, 1.0, MOST_SLIDES },
};

// The rows as the engine is asked for them, made once.
struct RowNames {
	StringName of[sizeof(ROWS) / sizeof(ROWS[0])];

	RowNames() {
		for (const Row &row : ROWS) {
			of[row.property] = row.name;
		}
	}
};

bool is_rigid(const Node *body) {
	return Object::cast_to<RigidBody2D>(body) != nullptr || Object::cast_to<RigidBody3D>(body) != nullptr;
}
bool has_a_material(const Node *body) {
	return is_rigid(body) || Object::cast_to<StaticBody2D>(body) != nullptr || Object::cast_to<StaticBody3D>(body) != nullptr;
}

bool has_it(const Node *body, Of of) {
	return of == Of::RIGID ? is_rigid(body) : (of == Of::MATERIAL ? has_a_material(body) : bodies::is_character(body));
}

const char *whose(Of of) {
	return of == Of::RIGID ? "a RigidBody" : (of == Of::MATERIAL ? "a RigidBody or a StaticBody" : "a character body");
}

String property_in_inspector(const Row &row) {
	return String(enum_words_of(Kind::Property()).constants).split(",")[row.property].strip_edges().capitalize();
}

Variant given(const Kind *kind, const Row &row, const Node *body, double number) {
	const bool is_2d = places::is_2d(body);
	switch (row.form) {
		case Form::NUMBER:
			return number;
		case Form::WHOLE:
			return int64_t(Math::round(number));
		case Form::DEGREES:
			return Math::deg_to_rad(number);
		case Form::SWITCH:
			return kind->on;
		case Form::CAST:
			return is_2d ? Variant(int64_t(kind->on ? RigidBody2D::CCD_MODE_CAST_SHAPE : RigidBody2D::CCD_MODE_DISABLED)) : Variant(kind->on);
		case Form::UP:
			return is_2d ? Variant(places::as_vector2(kind->direction).normalized()) : Variant(kind->direction.normalized());
		case Form::MODE:
			return int64_t(kind->mode == Kind::FLOATING ? 1 : 0);
	}
	return Variant();
}

// A number that the engine takes. The game maker is told of one that it does not.
double within(SCMachineBase *machine, const Kind *kind, const Row &row) {
	const double number = checked::number<&Kind::value>(machine, kind);
	const double taken = CLAMP(number, row.least, row.most);
	if (taken != number) {
		const String bounds =
				row.most < ANY ? vformat("%s to %s", words::number(row.least), words::number(row.most)) : vformat("%s or more", words::number(row.least));
		verbs::warn(machine, kind,
				vformat("%s cannot be %s, so it was taken as %s. Give Value a number of %s.", property_in_inspector(row), words::number(number),
						words::number(taken), bounds));
	}
	return taken;
}

// The material that is this body's alone. Before it had one it behaved as with the engine's own numbers.
Ref<PhysicsMaterial> own_material(Node *body) {
	const Ref<PhysicsMaterial> now = body->get(names().physics_material_override);
	const auto id = int64_t(body->get_instance_id());
	if (now.is_valid() && now->get_meta(names().made_for, 0) == Variant(id)) {
		return now;
	}
	Ref<PhysicsMaterial> own;
	if (now.is_valid()) {
		own = now->duplicate();
	} else {
		own.instantiate();
	}
	if (own.is_valid()) {
		own->set_meta(names().made_for, id);
		body->set(names().physics_material_override, own);
	}
	return own;
}

void put_back(Dictionary slot) {
	const int64_t ticket = slot.get(names().held, 0);
	if (ticket != 0) {
		slot.erase(names().held);
		body_properties::let_go(ticket, slot.get(names().held_property, StringName()));
	}
}

class SetBodyProperties : public OnceOrRepeating<SetBodyProperties> {
	// `again` when it is only kept as it was put before.
	static void put(SCMachineBase *machine, int index, Object *object, const StringName &property, const Variant &value, bool for_a_while, bool again) {
		Dictionary slot = machine->slot(index);
		const auto id = int64_t(object->get_instance_id());
		const bool is_held =
				slot.has(names().held) && slot.get(names().held_on, 0) == Variant(id) && slot.get(names().held_property, Variant()) == Variant(property);
		if (!for_a_while || is_held) {
			if (!again || object->get(property) != value) {
				body_properties::put(object, property, value);
			}
			return;
		}
		const Weak<Object> still(object);
		const StillHere here(machine);
		put_back(slot);
		object = still.get();
		if (here && object != nullptr) {
			const int64_t ticket = body_properties::put_for_a_while(object, property, value, machine);
			slot[names().held] = ticket;
			slot[names().held_on] = id;
			slot[names().held_property] = property;
		}
	}

	static void look_at_contacts(SCMachineBase *machine, const Kind *kind, const Node *body) {
		if (kind->property == Kind::CONTACT_MONITOR && kind->on && int64_t(body->get(names().max_contacts_reported)) == 0) {
			verbs::warn(machine, kind,
					vformat("%s has its Max Contacts Reported at 0, so its contacts are watched and none is told. Set Max Contacts as well.",
							body->get_name()));
		}
	}

public:
	static constexpr bool HOLDS = true;

	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double delta) {
		const Kind *kind = as_kind<Kind>(action);
		Node *body = kind != nullptr ? verbs::node_or_warn<&Kind::body_path>(machine, kind) : nullptr;
		if (body == nullptr) {
			return;
		}
		const Row &row = ROWS[checked::choice<&Kind::property>(machine, kind, Kind::MASS)];
		if (!has_it(body, row.of)) {
			verbs::warn(machine, kind,
					vformat("%s belongs to %s, and %s is a %s, so nothing was changed. Pick another body under Body Path, or another Property.",
							property_in_inspector(row), whose(row.of), body->get_name(), body->get_class()));
			return;
		}
		const double number = row.form == Form::NUMBER || row.form == Form::WHOLE || row.form == Form::DEGREES ? within(machine, kind, row) : 0.0;
		if (row.form == Form::UP && !checked::sound_or_warn(machine, kind, kind->direction, verbs::name_of<&Kind::direction>())) {
			return;
		}
		const Variant value = given(kind, row, body, number);
		if (row.form == Form::UP && (value == Variant(Vector2()) || value == Variant(Vector3()))) {
			verbs::warn(machine, kind, vformat("Direction leads nowhere, so what is up for %s stays as it is. Give Direction a length.", body->get_name()));
			return;
		}
		look_at_contacts(machine, kind, body);
		const StringName &property = NativeNames::of<RowNames>().of[row.property];
		if (row.of != Of::MATERIAL) {
			put(machine, index, body, property, value, kind->put_back_when_left, delta > 0.0);
		} else if (const Ref<PhysicsMaterial> material = own_material(body); material.is_valid()) {
			put(machine, index, material.ptr(), property, value, kind->put_back_when_left, delta > 0.0);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { put_back(machine->slot(index)); }
};

const AddKinds added = {
	add_kind<SCSetBodyPropertiesAction, SetBodyProperties>(),
};

} // namespace

#include "character/gravity.hpp"

#include "character/body_keys.hpp"

#include <godot_cpp/classes/character_body2d.hpp>
#include <godot_cpp/classes/project_settings.hpp>
#include <godot_cpp/classes/rigid_body2d.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace gravity {

namespace {

struct OfProject {
	double in_2d = 0.0;
	double in_3d = 0.0;
	bool is_read = false;
	bool listens = false;
};

OfProject project;

void forget_numbers() {
	project.is_read = false;
}

struct SettingNames {
	StringName settings_changed = "settings_changed";
	Callable forget = callable_mp_static(&forget_numbers);
};

const OfProject &of_project() {
	if (!project.is_read) {
		ProjectSettings *settings = ProjectSettings::get_singleton();
		project.in_2d = settings->get_setting("physics/2d/default_gravity", 980.0);
		project.in_3d = settings->get_setting("physics/3d/default_gravity", 9.8);
		project.is_read = true;
		if (!project.listens) {
			project.listens = true;
			const SettingNames &names = NativeNames::of<SettingNames>();
			settings->connect(names.settings_changed, names.forget);
		}
	}
	return project;
}

} // namespace

double of(const Node *body, double own) {
	if (Math::abs(own) >= LEAST) {
		return own;
	}
	const bool is_2d = Object::cast_to<CharacterBody2D>(body) != nullptr || Object::cast_to<RigidBody2D>(body) != nullptr;
	return is_2d ? of_project().in_2d : of_project().in_3d;
}

double scaled(const Node *body, double own) {
	const double pull = of(body, own);
	return body != nullptr ? pull * body_keys::number(body, BodyKeys::shared().gravity_scale, 1.0) : pull;
}

void forget_project() {
	if (project.listens) {
		const SettingNames &names = NativeNames::of<SettingNames>();
		ProjectSettings::get_singleton()->disconnect(names.settings_changed, names.forget);
	}
	project = OfProject();
}

} // namespace gravity

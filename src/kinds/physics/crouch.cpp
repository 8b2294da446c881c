#include "kinds/physics/crouch.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"
#include "kinds/physics/crouch_shapes.hpp"

namespace {

constexpr Hint HEIGHT = { PROPERTY_HINT_RANGE, "0.01,100,0.01,or_greater,hide_slider" };

} // namespace

void SCCrouchAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "crouch",
			"Make a character shorter while the state runs, and its own height again when the state is left. Its feet stay where they are. It never holds a "
			"state up.");
	kind.runs(Runs::ON_AND_ON);
	kind.wants_physics();
	kind.setting<&Self::body_path>("body_path", "The character body that crouches: a CharacterBody2D or a CharacterBody3D. Empty is Self.");
	kind.setting<&Self::shape_path>("shape_path", "The CollisionShape that gets shorter. Empty is the first one right below the body.").optional();
	kind.setting<&Self::crouched_height>("crouched_height", HEIGHT, "How tall it is while it crouches, in metres in 3D and pixels in 2D.").px_in_2d();
	kind.setting<&Self::crouched_height_variable>("crouched_height_variable", "Read how tall it is from this variable.").optional();
	kind.setting<&Self::room_above_event>("room_above_event", "The event to send when there is room to stand up, and whenever there is again.");
	kind.setting<&Self::no_room_above_event>("no_room_above_event", "The event to send when something overhead is in the way of standing up.");
	kind.setting<&Self::stays_while_held>("stays_while_held", hint::INPUT,
				"Crouch while this key, button or control is held, and stand up once it is let go and there is room. Empty crouches until the state is left.")
			.optional();
	kind.setting<&Self::stood_up_event>("stood_up_event", "The event to send when it has stood up by itself.").only_if<&Self::stays_while_held>();
	kind.warns<&Self::warn_crouch>("_warn_crouch", "m", "index", "what", "body");
}

String SCCrouchAction::summary_default() {
	return vformat("Crouch to %s tall", words::variable_or(crouched_height_variable, words::number(crouched_height)));
}

void SCCrouchAction::warn_crouch(SCMachineBase *machine, int64_t, int64_t what, Node *body) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	const StringName who = body != nullptr ? body->get_name() : StringName();
	switch (what) {
		case 0:
			verbs::warn_whole(machine, this, int(what),
					vformat("Crouch on %s: %s has no CollisionShape under it, and a character with no shape has no height to change.", name, who));
			break;
		case 1:
			verbs::warn_whole(machine, this, int(what),
					vformat("Crouch on %s: %s's shape has no height to change. A capsule, a cylinder, a box or a rectangle can be crouched, but a circle or a "
							"sphere cannot.",
							name, who));
			break;
		case 2: {
			const Node *shape_node = shape_path.is_empty() ? crouch_shapes::below(body) : machine->node_at(shape_path);
			verbs::warn_whole(machine, this, int(what),
					vformat("Crouch on %s: %s is %s tall and was asked to crouch to %s, which is no shorter, so nothing happens.", name, who,
							words::number(crouch_shapes::height_of(crouch_shapes::held_by(shape_node))),
							words::number(values::number_of(machine, crouched_height, crouched_height_variable))));
			break;
		}
		case 3:
			verbs::warn_whole(machine, this, int(what),
					vformat("Crouch on %s: %s stood up with something overhead in the way, so it may be pushed out of the scenery. Leave the crouching state "
							"on "
							"Room Above, or set Stays While Held and leave it on Stood Up.",
							name, who));
			break;
		case 4:
			verbs::warn_whole(machine, this, int(what),
					vformat("Crouch on %s: there is no node at %s, so nothing crouches. Pick the character body under Body.", name,
							body_path.is_empty() ? String("Self") : String(body_path)));
			break;
		case 5:
			verbs::warn_whole(machine, this, int(what),
					vformat("Crouch on %s: %s is not a character body, and only a CharacterBody2D or CharacterBody3D can crouch. Pick one under Body.", name,
							who));
			break;
		case 6:
			verbs::warn_whole(machine, this, int(what),
					vformat("Crouch on %s: it was asked to crouch to %s, which is no height, so nothing happens. Set Crouched Height above 0.", name,
							words::number(values::number_of(machine, crouched_height, crouched_height_variable))));
			break;
		default:
			break;
	}
}

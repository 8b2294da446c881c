#include "character/body_notes.hpp"

#include "machine/companion_scripts.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/navigation_agent2d.hpp>
#include <godot_cpp/classes/navigation_agent3d.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>

namespace body_notes {

namespace {

constexpr int64_t MOST_ENTRIES = 4096;
// Entries older than this many physics frames go when there are too many.
constexpr int64_t DRIVEN_LASTS = 2;
constexpr int64_t GROUNDED_LASTS = 300;
// Of a velocity in pixels a second, squared.
constexpr double REALLY_MOVES = 1.0;
constexpr int64_t NEVER = INT64_MIN / 2;

struct NoteNames {
	StringName script = "quillstead_move";
	StringName driven = "_driven";
	StringName heading = "_heading";
	StringName grounded = "_grounded";
};

struct KnownAgent {
	int child_count = -1;
	ObjectID agent;
};

struct Notes {
	Dictionary driven;
	Dictionary heading;
	Dictionary grounded;
	HashMap<uint64_t, KnownAgent> agents;
	// Every body that any of these tables may know.
	LocalVector<uint64_t> known;
	uint32_t next_to_look_at = 0;

	Notes() {
		const NoteNames &names = NativeNames::of<NoteNames>();
		const Ref<Script> script = CompanionScripts::script(names.script);
		if (script.is_valid()) {
			driven = script->get(names.driven);
			heading = script->get(names.heading);
			grounded = script->get(names.grounded);
		}
	}
};

Notes *notes = nullptr;

Notes &shared() {
	if (notes == nullptr) {
		notes = memnew(Notes);
	}
	return *notes;
}

void drop_older_than(Dictionary &table, int64_t frame) {
	if (table.size() <= MOST_ENTRIES) {
		return;
	}
	const Array bodies = table.keys();
	for (int64_t i = 0; i < bodies.size(); i++) {
		if (int64_t(table.get(bodies[i], NEVER)) < frame) {
			table.erase(bodies[i]);
		}
	}
}

void forget(Notes &of, uint32_t place) {
	const uint64_t id = of.known[place];
	of.driven.erase(id);
	of.heading.erase(id);
	of.grounded.erase(id);
	of.agents.erase(id);
	of.known.remove_at_unordered(place);
}

// One entry for each that is noted, so that what has gone is found without a pause in any frame.
void look_at_one(Notes &of) {
	if (of.known.is_empty()) {
		return;
	}
	of.next_to_look_at = of.next_to_look_at + 1 < of.known.size() ? of.next_to_look_at + 1 : 0;
	if (ObjectDB::get_instance(of.known[of.next_to_look_at]) == nullptr) {
		forget(of, of.next_to_look_at);
	}
}

void note_body(Notes &of, uint64_t id, int64_t frame, bool on_floor) {
	const int64_t before = of.driven.size();
	of.driven[id] = frame;
	if (of.driven.size() != before) {
		if (!of.agents.has(id)) {
			of.known.push_back(id);
		}
		drop_older_than(of.driven, frame - DRIVEN_LASTS);
	}
	if (on_floor) {
		of.grounded[id] = frame;
		drop_older_than(of.grounded, frame - GROUNDED_LASTS);
	}
	look_at_one(of);
}

ObjectID agent_among(const Node *body, int child_count) {
	for (int i = 0; i < child_count; i++) {
		const Node *child = body->get_child(i);
		if (Object::cast_to<NavigationAgent2D>(child) != nullptr || Object::cast_to<NavigationAgent3D>(child) != nullptr) {
			return ObjectID(child->get_instance_id());
		}
	}
	return ObjectID();
}

} // namespace

void note_step(CharacterBody2D *body, int64_t frame) {
	Notes &of = shared();
	const uint64_t id = body->get_instance_id();
	note_body(of, id, frame, body->is_on_floor());
	const Vector2 velocity = body->get_velocity();
	if (double(velocity.length_squared()) > REALLY_MOVES) {
		of.heading[id] = velocity.normalized();
	}
}

void note_step(CharacterBody3D *body, int64_t frame) {
	note_body(shared(), body->get_instance_id(), frame, body->is_on_floor());
}

void note_step(Node *body, int64_t frame) {
	if (auto *body_2d = Object::cast_to<CharacterBody2D>(body)) {
		note_step(body_2d, frame);
	} else if (auto *body_3d = Object::cast_to<CharacterBody3D>(body)) {
		note_step(body_3d, frame);
	}
}

int64_t last_on_floor(const Node *body) {
	return shared().grounded.get(body->get_instance_id(), NEVER);
}

void forget_floor(const Node *body) {
	shared().grounded.erase(body->get_instance_id());
}

Node *agent_of(const Node *body) {
	Notes &of = shared();
	const uint64_t id = body->get_instance_id();
	const int child_count = body->get_child_count();
	if (const KnownAgent *known = of.agents.getptr(id)) {
		if (known->child_count == child_count) {
			if (!known->agent.is_valid()) {
				return nullptr;
			}
			if (Node *agent = Object::cast_to<Node>(ObjectDB::get_instance(known->agent))) {
				return agent;
			}
		}
	} else {
		if (int64_t(of.agents.size()) > MOST_ENTRIES) {
			of.agents.clear();
		}
		if (!of.driven.has(id)) {
			of.known.push_back(id);
		}
	}
	KnownAgent found;
	found.child_count = child_count;
	found.agent = agent_among(body, child_count);
	of.agents[id] = found;
	return Object::cast_to<Node>(ObjectDB::get_instance(found.agent));
}

void drop_the_gone() {
	if (notes == nullptr) {
		return;
	}
	for (uint32_t i = notes->known.size(); i > 0; i--) {
		if (ObjectDB::get_instance(notes->known[i - 1]) == nullptr) {
			forget(*notes, i - 1);
		}
	}
}

void free_shared() {
	if (notes != nullptr) {
		notes->driven.clear();
		notes->heading.clear();
		notes->grounded.clear();
		memdelete(notes);
		notes = nullptr;
	}
}

} // namespace body_notes

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

constexpr uint32_t MOST_ENTRIES = 4096;
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

struct KnownBody {
	int child_count = -1;
	ObjectID agent;
	bool driven = false;
	// As it is written down.
	Vector2 heading;
	// Among so many children there was no picture to flip.
	int without_pictures = -1;
};

struct Notes {
	Dictionary driven;
	Dictionary heading;
	Dictionary grounded;
	HashMap<uint64_t, KnownBody> bodies;
	// Those of `bodies`, to look at in turn.
	LocalVector<uint64_t> known;
	uint32_t next_to_look_at = 0;
	uint32_t most = MOST_ENTRIES;

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

// Whether any went.
bool drop_older_than(Dictionary &table, int64_t frame) {
	if (table.size() <= int64_t(MOST_ENTRIES)) {
		return false;
	}
	const Array bodies = table.keys();
	for (int64_t i = 0; i < bodies.size(); i++) {
		if (int64_t(table.get(bodies[i], NEVER)) < frame) {
			table.erase(bodies[i]);
		}
	}
	return true;
}

void forget(Notes &of, uint32_t place) {
	const uint64_t id = of.known[place];
	of.driven.erase(id);
	of.heading.erase(id);
	of.grounded.erase(id);
	of.bodies.erase(id);
	of.known.remove_at_unordered(place);
}

void drop_the_gone_of(Notes &of) {
	for (uint32_t i = of.known.size(); i > 0; i--) {
		if (ObjectDB::get_instance(of.known[i - 1]) == nullptr) {
			forget(of, i - 1);
		}
	}
}

KnownBody &body_in(Notes &of, uint64_t id) {
	if (KnownBody *known = of.bodies.getptr(id)) {
		return *known;
	}
	if (of.known.size() >= of.most) {
		drop_the_gone_of(of);
		of.most = MAX(MOST_ENTRIES, of.known.size() * 2);
	}
	of.known.push_back(id);
	return of.bodies[id] = KnownBody();
}

// One entry for each that is noted, so that what has gone is found without a pause in any frame.
void look_at_one(Notes &of) {
	of.next_to_look_at = of.next_to_look_at + 1 < of.known.size() ? of.next_to_look_at + 1 : 0;
	if (ObjectDB::get_instance(of.known[of.next_to_look_at]) == nullptr) {
		forget(of, of.next_to_look_at);
	}
}

void note_driven(Notes &of, KnownBody &known, uint64_t id, int64_t frame) {
	of.driven[id] = frame;
	if (known.driven) {
		return;
	}
	if (drop_older_than(of.driven, frame - DRIVEN_LASTS)) {
		for (KeyValue<uint64_t, KnownBody> &body : of.bodies) {
			body.value.driven = false;
		}
	}
	known.driven = true;
}

void note_on_floor(Notes &of, uint64_t id, int64_t frame) {
	of.grounded[id] = frame;
	drop_older_than(of.grounded, frame - GROUNDED_LASTS);
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
	KnownBody &known = body_in(of, id);
	note_driven(of, known, id, frame);
	const Vector2 velocity = body->get_velocity();
	if (double(velocity.length_squared()) > REALLY_MOVES) {
		const Vector2 heading = velocity.normalized();
		if (heading != known.heading) {
			known.heading = heading;
			of.heading[id] = heading;
		}
	}
	if (body->is_on_floor()) {
		note_on_floor(of, id, frame);
	}
	look_at_one(of);
}

void note_step(CharacterBody3D *body, int64_t frame) {
	Notes &of = shared();
	const uint64_t id = body->get_instance_id();
	note_driven(of, body_in(of, id), id, frame);
	if (body->is_on_floor()) {
		note_on_floor(of, id, frame);
	}
	look_at_one(of);
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
	KnownBody &known = body_in(of, body->get_instance_id());
	const int child_count = body->get_child_count();
	if (known.child_count == child_count) {
		if (!known.agent.is_valid()) {
			return nullptr;
		}
		if (Node *agent = Object::cast_to<Node>(ObjectDB::get_instance(known.agent))) {
			return agent;
		}
	}
	known.child_count = child_count;
	known.agent = agent_among(body, child_count);
	return Object::cast_to<Node>(ObjectDB::get_instance(known.agent));
}

bool is_without_pictures(const Node *body) {
	return body_in(shared(), body->get_instance_id()).without_pictures == body->get_child_count();
}

void note_without_pictures(const Node *body) {
	body_in(shared(), body->get_instance_id()).without_pictures = body->get_child_count();
}

void drop_the_gone() {
	if (notes != nullptr) {
		drop_the_gone_of(*notes);
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

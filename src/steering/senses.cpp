#include "steering/senses.hpp"

#include "machine/companion_scripts.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>

namespace senses {

namespace {

struct SenseNames {
	StringName script = "senses";
	StringName target_id = "_target_id";
	StringName can_see_target = "can_see_target";
	StringName has_a_target = "has_a_target";
	StringName has_lost_it = "has_lost_it";
	StringName out_of_sight_for = "out_of_sight_for";
	StringName look_now = "look_now";
	StringName notice = "notice";
	StringName hear = "hear";
	StringName hearing_group = "quillstead_hearing";
};

const SenseNames &names() {
	return NativeNames::of<SenseNames>();
}

// In physics frames. A node's children may change places, and their scripts.
constexpr uint64_t KNOWN_FOR = 30;
constexpr uint32_t LEAST_KEPT = 256;

struct Found {
	ObjectID perception;
	int child_count = 0;
	uint64_t frame = 0;
};

// By body. Bodies without one are looked at anew each time: one may be given to them in the place of another child.
struct KnownSenses {
	mutable HashMap<uint64_t, Found> by_body;
	mutable uint32_t most = LEAST_KEPT;
};

void drop_the_gone(const KnownSenses &known) {
	LocalVector<uint64_t> gone;
	for (const KeyValue<uint64_t, Found> &entry : known.by_body) {
		if (ObjectDB::get_instance(entry.value.perception) == nullptr) {
			gone.push_back(entry.key);
		}
	}
	for (const uint64_t id : gone) {
		known.by_body.erase(id);
	}
	known.most = MAX(LEAST_KEPT, uint32_t(known.by_body.size()) * 2);
}

} // namespace

bool is_perception(const Node *node) {
	return CompanionScripts::is_one(node, names().script);
}

Node *of(const Node *body) {
	if (body == nullptr) {
		return nullptr;
	}
	const KnownSenses &known = NativeNames::of<KnownSenses>();
	const uint64_t id = body->get_instance_id();
	const int count = body->get_child_count();
	const uint64_t frame = Engine::get_singleton()->get_physics_frames();
	Found *last = known.by_body.getptr(id);
	if (last != nullptr && last->child_count == count && frame - last->frame < KNOWN_FOR) {
		Node *perception = Object::cast_to<Node>(ObjectDB::get_instance(last->perception));
		if (perception != nullptr && perception->get_parent() == body) {
			return perception;
		}
	}
	Node *perception = CompanionScripts::first_child(body, names().script);
	if (perception == nullptr) {
		known.by_body.erase(id);
		return nullptr;
	}
	if (last == nullptr && uint32_t(known.by_body.size()) >= known.most) {
		drop_the_gone(known);
	}
	known.by_body[id] = { ObjectID(perception->get_instance_id()), count, frame };
	return perception;
}

Variant ask(Node *perception, const StringName &property) {
	return perception != nullptr ? perception->get(property) : Variant();
}

Node *target_of(Node *perception) {
	// Movers ask on every step: this is the property without its getter.
	const Variant id = ask(perception, names().target_id);
	return id.get_type() == Variant::INT ? Object::cast_to<Node>(ObjectDB::get_instance(ObjectID(uint64_t(int64_t(id))))) : nullptr;
}

bool can_see_target(Node *perception) {
	return ask(perception, names().can_see_target).booleanize();
}

bool has_a_target(Node *perception) {
	return perception != nullptr && perception->call(names().has_a_target).booleanize();
}

bool has_lost_it(Node *perception) {
	return perception != nullptr && perception->call(names().has_lost_it).booleanize();
}

double out_of_sight_for(Node *perception) {
	const Variant seconds = perception != nullptr ? perception->call(names().out_of_sight_for) : Variant();
	return seconds.get_type() == Variant::FLOAT ? double(seconds) : -1.0;
}

void look_now(Node *perception) {
	if (perception != nullptr) {
		perception->call(names().look_now);
	}
}

void notice(Node *perception, Node *target) {
	if (perception != nullptr) {
		perception->call(names().notice, target);
	}
}

void hear(Node *perception, const Variant &place) {
	if (perception != nullptr) {
		perception->call(names().hear, place);
	}
}

Array hearers(const Node *in_scene) {
	return in_scene != nullptr && in_scene->is_inside_tree() ? Array(in_scene->get_tree()->get_nodes_in_group(names().hearing_group)) : Array();
}

String listed(const PackedStringArray &who) {
	constexpr int64_t MOST = 3;
	const String named = String(", ").join(who.slice(0, MIN(who.size(), MOST)));
	return who.size() > MOST ? vformat("%s and others", named) : named;
}

} // namespace senses

// The compiled runtime of Instantiate.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "kinds/node/spawn_places.hpp"
#include "kinds/node/spawning.hpp"
#include "machine/native_names.hpp"
#include "space/newcomers.hpp"
#include "space/readable_names.hpp"

#include <godot_cpp/classes/resource_loader.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/scene_tree_timer.hpp>
#include <godot_cpp/templates/hash_set.hpp>
#include <godot_cpp/variant/callable_custom.hpp>

namespace {

using Kind = SCInstantiateAction;
using spawn_places::Where;

// So that a game that stood still for a moment is not flooded.
constexpr int MOST_AT_ONCE = 32;
// What a sum of many frames may be short of the seconds they make.
constexpr double HAIR = 1.0e-6;

struct Names {
	StringName waited = "waited";
	StringName timeout = "timeout";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// The scenes that actions have loaded by path, each in a meta of its action. One whose own scene it is holds itself in a ring, which
// is opened when the library goes.
struct KeptScenes {
	StringName meta = "_quillstead_kept_scenes";
	mutable HashSet<uint64_t> holders;

	~KeptScenes() {
		for (const uint64_t id : holders) {
			if (Object *holder = ObjectDB::get_instance(ObjectID(id))) {
				holder->remove_meta(meta);
			}
		}
	}
};

bool runs_through_pause(const Node *node) {
	while (node->get_process_mode() == Node::PROCESS_MODE_INHERIT && node->get_parent() != nullptr) {
		node = node->get_parent();
	}
	return node->get_process_mode() == Node::PROCESS_MODE_ALWAYS || node->get_process_mode() == Node::PROCESS_MODE_WHEN_PAUSED;
}

void warn_not_loaded(SCMachineBase *machine, const SCMachineAction *action, const String &path) {
	verbs::warn_whole(machine, action, Kind::NOT_LOADED,
			vformat("Instantiate on %s could not load %s, so nothing appears. Pick the scene again in its Scene list.", machine->name_in_messages(), path));
}

Ref<PackedScene> kept_scene(SCMachineBase *machine, SCMachineAction *action, const String &path) {
	const KeptScenes &kept = NativeNames::of<KeptScenes>();
	Dictionary scenes = action->get_meta(kept.meta, Dictionary());
	Ref<PackedScene> scene = scenes.get(path, Variant());
	if (scene.is_valid()) {
		return scene;
	}
	ResourceLoader *loader = ResourceLoader::get_singleton();
	if (loader->exists(path)) {
		scene = loader->load(path);
	}
	if (scene.is_null()) {
		warn_not_loaded(machine, action, path);
		return scene;
	}
	scenes[path] = scene;
	action->set_meta(kept.meta, scenes);
	kept.holders.insert(action->get_instance_id());
	return scene;
}

// Null, and told, when there is none.
Ref<PackedScene> scene_of(SCMachineBase *machine, SCMachineAction *action) {
	Ref<PackedScene> scene = setting_of<&Kind::scene>(action);
	const String path = setting_of<&Kind::scene_path>(action);
	if (scene.is_null() && path.is_empty()) {
		verbs::warn_whole(machine, action, Kind::NO_SCENE,
				vformat("Instantiate on %s has no scene picked, so nothing appears. Pick one under Scene.", machine->name_in_messages()));
	} else if (scene.is_null()) {
		scene = kept_scene(machine, action, path);
	}
	return scene;
}

Node *parent_of(SCMachineBase *machine, const SCMachineAction *action) {
	const NodePath path = setting_of<&Kind::parent_path>(action);
	Node *parent = path.is_empty() ? nullptr : values::node_of(machine, path);
	if (parent == nullptr && !path.is_empty()) {
		verbs::warn_whole(machine, action, Kind::NO_PARENT,
				vformat("Instantiate on %s: Parent points at nothing, so the new one goes into the scene being played instead. Pick the node it goes under.",
						machine->name_in_messages()));
	}
	return parent != nullptr ? parent : newcomers::scene_of(machine);
}

// Null when nothing can be made of the scene, or when making it ended what it was made for.
Node *bring(SCMachineBase *machine, SCMachineAction *action, const Ref<PackedScene> &scene, Node *under, const Where &where) {
	const StillHere here(machine);
	const Weak<Node> parent(under);
	const Weak<Node> made(scene->can_instantiate() ? scene->instantiate() : nullptr);
	if (made.get() == nullptr) {
		if (here) {
			warn_not_loaded(machine, action, scene->get_path().is_empty() ? String("its scene") : scene->get_path());
		}
		return nullptr;
	}
	if (here) {
		newcomers::note_maker(machine, made.get());
		spawn_places::put(machine, action, made.get(), parent.get(), where);
	}
	if (here && parent.get() != nullptr && made.get() != nullptr) {
		readable_names::give(parent.get(), made.get());
	}
	if (!here || parent.get() == nullptr || made.get() == nullptr) {
		if (made.get() != nullptr) {
			made.get()->queue_free();
		}
		return nullptr;
	}
	newcomers::add(parent.get(), made.get());
	return made.get();
}

void appear(SCMachineBase *machine, SCMachineAction *action, const Ref<PackedScene> &scene, Node *parent, const Where &where) {
	const StillHere here(machine);
	Node *made = bring(machine, action, scene, parent, where);
	if (here && made != nullptr) {
		verbs::keep_if_named<&Kind::store_in>(machine, action, made);
	}
}

// The end of a warning: what it warned of appears, even when the state has been left since, but for a machine that has stopped.
class WarningIsOver final : public CallableCustom {
	uint64_t machine_id;
	uint64_t action_id;
	uint64_t warning_id;
	uint64_t parent_id;
	Ref<PackedScene> scene;
	Where where;
	Callable finisher;

	static bool same(const CallableCustom *left, const CallableCustom *right) {
		return static_cast<const WarningIsOver *>(left)->warning_id == static_cast<const WarningIsOver *>(right)->warning_id;
	}
	static bool before(const CallableCustom *left, const CallableCustom *right) {
		return static_cast<const WarningIsOver *>(left)->warning_id < static_cast<const WarningIsOver *>(right)->warning_id;
	}

	template <class T>
	static T *found(uint64_t id) {
		return Object::cast_to<T>(ObjectDB::get_instance(ObjectID(id)));
	}

public:
	WarningIsOver(SCMachineBase *machine, const SCMachineAction *action, const Node *warning, const Node *parent, const Ref<PackedScene> &of_scene,
			const Where &at, const Callable &when_done) :
			machine_id(machine->get_instance_id()),
			action_id(action->get_instance_id()), warning_id(warning->get_instance_id()), parent_id(parent->get_instance_id()), scene(of_scene), where(at),
			finisher(when_done) {}

	uint32_t hash() const override { return uint32_t(warning_id ^ (warning_id >> 32)); }
	String get_as_text() const override { return "Instantiate: the warning is over"; }
	CompareEqualFunc get_compare_equal_func() const override { return &same; }
	CompareLessFunc get_compare_less_func() const override { return &before; }
	bool is_valid() const override { return true; }
	ObjectID get_object() const override { return ObjectID(); }

	void call(const Variant **, int, Variant &answer, GDExtensionCallError &error) const override {
		error.error = GDEXTENSION_CALL_OK;
		answer = Variant();
		// What is called may free this.
		const Ref<PackedScene> made_of = scene;
		const Where at = where;
		const Callable done = finisher;
		const uint64_t id = machine_id;
		if (Node *warning = found<Node>(warning_id)) {
			warning->queue_free();
		}
		SCMachineBase *machine = found<SCMachineBase>(machine_id);
		const Ref<SCMachineAction> action = found<SCMachineAction>(action_id);
		Node *parent = found<Node>(parent_id);
		if (machine == nullptr || action.is_null() || !machine->is_running()) {
			return;
		}
		if (parent != nullptr) {
			appear(machine, action.ptr(), made_of, parent, at);
		}
		if (found<SCMachineBase>(id) != nullptr && done.is_valid()) {
			done.call();
		}
	}
};

class Instantiate : public SCNativeAction {
	// Whether it shows, and what it warns of is to come.
	static bool warn_of(
			SCMachineBase *machine, SCMachineAction *action, const Ref<PackedScene> &scene, Node *under, const Where &where, const Callable &finisher) {
		const Ref<PackedScene> warning_scene = setting_of<&Kind::warning_scene>(action);
		const double seconds = warning_scene.is_valid() ? checked::number<&Kind::warning_seconds>(machine, action) : 0.0;
		SceneTree *tree = machine->is_inside_tree() ? machine->get_tree() : nullptr;
		if (seconds <= 0.0 || tree == nullptr) {
			return false;
		}
		const StillHere here(machine);
		const Weak<Node> parent(under);
		const Weak<Node> warning(bring(machine, action, warning_scene, under, where));
		if (!here || warning.get() == nullptr || parent.get() == nullptr) {
			return false;
		}
		const Ref<SceneTreeTimer> timer = tree->create_timer(seconds, runs_through_pause(machine));
		timer->connect(names().timeout, Callable(memnew(WarningIsOver(machine, action, warning.get(), parent.get(), scene, where, finisher))));
		return true;
	}

	// True when it takes a while, and `finisher` is called then.
	static bool spawn(SCMachineBase *machine, SCMachineAction *action, const Callable &finisher) {
		const StillHere here(machine);
		const Ref<PackedScene> scene = scene_of(machine, action);
		const Weak<Node> parent(scene.is_valid() && here ? parent_of(machine, action) : nullptr);
		Where where;
		if (parent.get() == nullptr || !spawn_places::pick(machine, action, where)) {
			return false;
		}
		if (warn_of(machine, action, scene, parent.get(), where, finisher)) {
			return true;
		}
		if (here && parent.get() != nullptr) {
			appear(machine, action, scene, parent.get(), where);
		}
		return false;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->slot(index)[names().waited] = 0.0;
		const StillHere here(machine);
		const bool keeps_spawning = setting_of<&Kind::every_seconds>(action) > 0.0;
		const bool takes_a_while = spawn(machine, action, keeps_spawning ? Callable() : machine->finisher(index));
		if (here && (keeps_spawning || !takes_a_while)) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const double every = checked::number<&Kind::every_seconds>(machine, action);
		if (every <= 0.0) {
			return;
		}
		const StillHere here(machine);
		Dictionary slot = machine->slot(index);
		double waited = double(slot.get(names().waited, 0.0)) + delta;
		int count = 0;
		for (; here && waited + HAIR >= every && count < MOST_AT_ONCE; count++) {
			waited -= every;
			slot[names().waited] = waited;
			spawn(machine, action, Callable());
		}
		slot[names().waited] = count < MOST_AT_ONCE ? waited : 0.0;
	}
};

const AddKinds added = {
	add_kind<SCInstantiateAction, Instantiate>(),
};

} // namespace

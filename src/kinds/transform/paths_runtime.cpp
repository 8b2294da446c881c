// Compiled runtimes of the kinds about paths drawn in the scene.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/facing.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "action/weak.hpp"
#include "kinds/transform/paths.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/curve2d.hpp>
#include <godot_cpp/classes/curve3d.hpp>
#include <godot_cpp/classes/path2d.hpp>
#include <godot_cpp/classes/path3d.hpp>
#include <godot_cpp/classes/path_follow2d.hpp>
#include <godot_cpp/classes/path_follow3d.hpp>
#include <godot_cpp/core/math.hpp>

#include <cmath>

namespace {

struct PathNames {
	StringName from = "from";
	StringName travelled = "travelled";
	StringName elapsed = "elapsed";
};

const PathNames &names() {
	return NativeNames::of<PathNames>();
}

// A path of either side, for as long as one call takes.
class Track {
	const Path2D *path_2d = nullptr;
	const Path3D *path_3d = nullptr;

public:
	Track() = default;
	explicit Track(const Node *node) : path_2d(Object::cast_to<Path2D>(node)), path_3d(Object::cast_to<Path3D>(node)) {}

	explicit operator bool() const { return path_2d != nullptr || path_3d != nullptr; }
	bool is_2d() const { return path_2d != nullptr; }
	const Node *node() const { return path_2d != nullptr ? static_cast<const Node *>(path_2d) : path_3d; }

	double length() const {
		if (path_2d != nullptr) {
			const Ref<Curve2D> curve = path_2d->get_curve();
			return curve.is_valid() && curve->get_point_count() > 1 ? double(curve->get_baked_length()) : 0.0;
		}
		const Ref<Curve3D> curve = path_3d != nullptr ? path_3d->get_curve() : Ref<Curve3D>();
		return curve.is_valid() && curve->get_point_count() > 1 ? double(curve->get_baked_length()) : 0.0;
	}

	// In the world. Only for a track that has a length.
	Variant place_at(double distance) const {
		if (path_2d != nullptr) {
			return spaces::world_of(path_2d).xform(path_2d->get_curve()->sample_baked(real_t(distance)));
		}
		return spaces::world_of(path_3d).xform(path_3d->get_curve()->sample_baked(real_t(distance)));
	}

	double nearest_to(const Variant &place) const {
		const Variant inside = spaces::to_own(node(), place);
		if (inside.get_type() == Variant::NIL) {
			return 0.0;
		}
		return path_2d != nullptr ? double(path_2d->get_curve()->get_closest_offset(inside)) : double(path_3d->get_curve()->get_closest_offset(inside));
	}

	// The way it leads there, toward its end or back.
	Variant direction_at(double distance, bool to_the_end) const {
		const double whole = length();
		const double ahead = whole * 0.001;
		const Variant before = place_at(MAX(distance - ahead, 0.0));
		const Variant after = place_at(MIN(distance + ahead, whole));
		return spaces::with_vectors(node(), before, after, [to_the_end](auto from, auto to) { return to_the_end ? to - from : from - to; });
	}
};

// What moves along a track: a node that is put there, or a follower of the path that is told its progress.
class Rider {
	Node *node = nullptr;
	PathFollow2D *follower_2d = nullptr;
	PathFollow3D *follower_3d = nullptr;

public:
	Rider(Node *rider, const Track &track) : node(rider) {
		if (rider->get_parent() == track.node()) {
			follower_2d = Object::cast_to<PathFollow2D>(rider);
			follower_3d = Object::cast_to<PathFollow3D>(rider);
		}
	}

	double distance_on(const Track &track) const {
		if (follower_2d != nullptr) {
			return follower_2d->get_progress();
		}
		if (follower_3d != nullptr) {
			return follower_3d->get_progress();
		}
		return track.nearest_to(places::position_of(node));
	}

	void put(const Track &track, double distance) const {
		if (follower_2d != nullptr) {
			follower_2d->set_progress(real_t(distance));
		} else if (follower_3d != nullptr) {
			follower_3d->set_progress(real_t(distance));
		} else {
			places::set_position_of(node, track.place_at(distance));
		}
	}
};

Track track_above(const Node *node) {
	for (const Node *at = node->get_parent(); at != nullptr; at = at->get_parent()) {
		if (const Track track = Track(at)) {
			return track;
		}
	}
	return Track();
}

// The track that a node is to go along; none when it is on the other side, or has no length.
template <auto Along>
Track track_of(SCMachineBase *machine, const SCMachineAction *action, const Node *rider) {
	const NodePath path = setting_of<Along>(action);
	const Track track = path.is_empty() ? track_above(rider) : Track(values::node_of(machine, path));
	return track && track.is_2d() == places::is_2d(rider) && track.length() > 0.0 ? track : Track();
}

// Tells why there is none.
template <auto Along>
void warn_no_track(SCMachineBase *machine, const SCMachineAction *action, const Node *rider) {
	Track track;
	if (setting_of<Along>(action).is_empty()) {
		track = track_above(rider);
		if (!track) {
			verbs::warn(machine, action,
					vformat("%s lies in no path, so there is nothing to go along. Pick a Path2D or a Path3D under Along Path.", rider->get_name()));
			return;
		}
	} else {
		const Node *node = verbs::node_or_warn<Along>(machine, action);
		if (node == nullptr) {
			return;
		}
		track = Track(node);
		if (!track) {
			verbs::warn_wrong_class(machine, action, node, places::is_2d(rider) ? "a Path2D" : "a Path3D", verbs::name_of<Along>());
			return;
		}
	}
	if (track.is_2d() != places::is_2d(rider)) {
		verbs::warn(machine, action,
				vformat("%s is a %s and %s a %s, and one cannot go along the other. Pick a %s under Along Path.", rider->get_name(), rider->get_class(),
						track.node()->get_name(), track.node()->get_class(), places::is_2d(rider) ? "Path2D" : "Path3D"));
		return;
	}
	verbs::warn(machine, action,
			vformat("%s has no path drawn yet, so there is nothing to go along. Select it and draw at least two points.", track.node()->get_name()));
}

template <auto Along>
Track track_or_warn(SCMachineBase *machine, const SCMachineAction *action, const Node *rider) {
	const Track track = track_of<Along>(machine, action, rider);
	if (!track) {
		warn_no_track<Along>(machine, action, rider);
	}
	return track;
}

class FollowPath : public SCNativeAction {
	using Kind = SCFollowPathAction;

	// Beyond this a double no longer tells places on the way apart, and a duration of next to nothing leads here at once.
	static constexpr double FARTHEST = 1.0e15;

	static bool goes_by_duration(const SCMachineAction *action) { return setting_of<&Kind::duration>(action) > 0.0; }

	// All the way since it set off, which grows for ever on a path that has no end for it.
	static double travelled_by_now(SCMachineBase *machine, const SCMachineAction *action, Dictionary memory, double length, double delta) {
		const double travelled = memory.get(names().travelled, 0.0);
		const double duration = checked::number<&Kind::duration>(machine, action);
		if (!goes_by_duration(action)) {
			return MIN(travelled + MAX(checked::number<&Kind::speed>(machine, action), 0.0) * delta, FARTHEST);
		}
		if (setting_of<&Kind::at_the_end>(action) != Kind::STOP) {
			return MIN(travelled + length / duration * delta, FARTHEST);
		}
		const double elapsed = double(memory.get(names().elapsed, 0.0)) + delta;
		memory[names().elapsed] = elapsed;
		if (elapsed >= duration) {
			return length;
		}
		const double share = Easings::share<&Kind::curve, &Kind::easing>(machine, action, elapsed, duration);
		const double from = memory.get(names().from, 0.0);
		// A shape may swing past the end, which is not yet to have arrived there.
		return MIN(from + (length - from) * share, std::nextafter(length, 0.0));
	}

	static void show(const SCMachineAction *action, const Track &track, Node *node, double length, double travelled) {
		double along = CLAMP(travelled, 0.0, length);
		bool to_the_end = true;
		if (travelled > length && setting_of<&Kind::at_the_end>(action) == Kind::START_OVER) {
			along = std::fmod(travelled, length);
		} else if (travelled > length && setting_of<&Kind::at_the_end>(action) == Kind::GO_BACK) {
			const double phase = std::fmod(travelled, 2.0 * length);
			to_the_end = phase <= length;
			along = to_the_end ? phase : 2.0 * length - phase;
		}
		if (setting_of<&Kind::backward>(action)) {
			along = length - along;
			to_the_end = !to_the_end;
		}
		// A game's code may hear of the move, and free what moves or the path.
		const bool turns = setting_of<&Kind::turn_to_face>(action);
		const Variant way = turns ? track.direction_at(along, to_the_end) : Variant();
		const Weak<Node> held(node);
		Rider(node, track).put(track, along);
		node = held.get();
		if (turns && node != nullptr) {
			facing::turn(node, facing::goal(node, way));
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Node *node = spaces::placed_or_warn<&Kind::node_path>(machine, action);
		const Track track = node != nullptr ? track_or_warn<&Kind::along_path>(machine, action, node) : Track();
		if (!track) {
			machine->finish(index);
			return;
		}
		spaces::warn_if_placed_by_another(machine, action, node);
		if (!goes_by_duration(action) && setting_of<&Kind::speed>(action) <= 0.0 && action->is_typed_in(verbs::name_of<&Kind::speed>())) {
			verbs::warn(machine, action,
					vformat("its Speed is %s, so %s stays where it is. Type a Speed above 0, and tick Backward to go the other way.",
							words::number(setting_of<&Kind::speed>(action)), node->get_name()));
		}
		const double length = track.length();
		double travelled = 0.0;
		if (setting_of<&Kind::start>(action) == Kind::WHERE_IT_IS) {
			const double nearest = Rider(node, track).distance_on(track);
			travelled = setting_of<&Kind::backward>(action) ? length - nearest : nearest;
		}
		Dictionary memory = machine->slot(index);
		memory[names().travelled] = travelled;
		memory[names().from] = travelled;
		show(action, track, node, length, travelled);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		Dictionary memory = machine->slot(index);
		if (!memory.has(names().travelled) || machine->is_finished(index)) {
			return;
		}
		Node *node = spaces::placed<&Kind::node_path>(machine, action);
		const Track track = node != nullptr ? track_of<&Kind::along_path>(machine, action, node) : Track();
		if (!track) {
			// The path or the node has gone meanwhile.
			machine->finish(index);
			return;
		}
		const double length = track.length();
		const double before = memory.get(names().travelled, 0.0);
		const double travelled = travelled_by_now(machine, action, memory, length, delta);
		memory[names().travelled] = travelled;
		const StillHere here(machine);
		show(action, track, node, length, travelled);
		if (!here) {
			return;
		}
		// Who stops may have set off from the very end; who goes round has come to it once more.
		const bool stops = setting_of<&Kind::at_the_end>(action) == Kind::STOP;
		const bool at_the_end = stops ? travelled >= length : std::floor(travelled / length) > std::floor(before / length);
		if (!at_the_end) {
			return;
		}
		if (stops) {
			machine->finish(index);
		}
		verbs::send<&Kind::end_event>(machine, action);
	}
};

class DistanceAlongPath : public OnceOrRepeating<DistanceAlongPath> {
	using Kind = SCPathProgressAction;

	static double told_as(Kind::Measure measure, double distance, double length) {
		switch (measure) {
			case Kind::SHARE:
				return distance / length;
			case Kind::PERCENT:
				return distance / length * 100.0;
			case Kind::DISTANCE:
				break;
		}
		return distance;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		Node *node = spaces::placed_or_warn<&Kind::node_path>(machine, action);
		const Track track = node != nullptr ? track_or_warn<&Kind::along_path>(machine, action, node) : Track();
		if (!track) {
			return;
		}
		const double length = track.length();
		const double distance = Rider(node, track).distance_on(track);
		const Variant place = track.place_at(distance);
		const double told = told_as(setting_of<&Kind::measure>(action), distance, length);
		const bool any = verbs::keep_each<&Kind::store_in, &Kind::store_length_in, &Kind::store_place_in, &Kind::store_off_path_in>(
				machine, action, { told, length, place, places::distance_between(node, place) });
		if (!any) {
			verbs::keep<&Kind::store_in>(machine, action, told, "how far it is");
		}
	}
};

const AddKinds added = {
	add_kind<SCFollowPathAction, FollowPath>(),
	add_kind<SCPathProgressAction, DistanceAlongPath>(),
};

} // namespace

// Compiled runtimes of the kinds about paths drawn in the scene.

#include "action/add_kind.hpp"
#include "action/answering.hpp"
#include "action/checked.hpp"
#include "action/facing.hpp"
#include "action/native_names.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "kinds/transform/paths.hpp"

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
	StringName node_path = "node_path";
	StringName along_path = "along_path";
	StringName from = "from";
	StringName travelled = "travelled";
	StringName elapsed = "elapsed";
};

const PathNames &names() {
	return NativeNames::of<PathNames>();
}

// A path of either side, for as long as one call takes.
class Track {
	const Path2D *flat = nullptr;
	const Path3D *deep = nullptr;

public:
	Track() = default;
	explicit Track(const Node *node) :
			flat(Object::cast_to<Path2D>(node)), deep(Object::cast_to<Path3D>(node)) {}

	explicit operator bool() const { return flat != nullptr || deep != nullptr; }
	bool is_flat() const { return flat != nullptr; }
	const Node *node() const { return flat != nullptr ? static_cast<const Node *>(flat) : deep; }

	double length() const {
		if (flat != nullptr) {
			const Ref<Curve2D> curve = flat->get_curve();
			return curve.is_valid() && curve->get_point_count() > 1 ? double(curve->get_baked_length()) : 0.0;
		}
		const Ref<Curve3D> curve = deep != nullptr ? deep->get_curve() : Ref<Curve3D>();
		return curve.is_valid() && curve->get_point_count() > 1 ? double(curve->get_baked_length()) : 0.0;
	}

	// In the world. Only for a track that has a length.
	Variant place_at(double distance) const {
		if (flat != nullptr) {
			return spaces::world_of(flat).xform(flat->get_curve()->sample_baked(real_t(distance)));
		}
		return spaces::world_of(deep).xform(deep->get_curve()->sample_baked(real_t(distance)));
	}

	double nearest_to(const Variant &place) const {
		const Variant inside = spaces::to_own(node(), place);
		if (inside.get_type() == Variant::NIL) {
			return 0.0;
		}
		return flat != nullptr ? double(flat->get_curve()->get_closest_offset(inside)) : double(deep->get_curve()->get_closest_offset(inside));
	}

	// Toward its end.
	Variant direction_at(double distance) const {
		const double whole = length();
		const double ahead = whole * 0.001;
		const Variant from = place_at(MAX(distance - ahead, 0.0));
		const Variant to = place_at(MIN(distance + ahead, whole));
		if (flat != nullptr) {
			return Vector2(to) - Vector2(from);
		}
		return Vector3(to) - Vector3(from);
	}
};

// What moves along a track: a node that is put there, or a follower of the path that is told its progress.
class Rider {
	Node *node = nullptr;
	PathFollow2D *flat_follower = nullptr;
	PathFollow3D *deep_follower = nullptr;

public:
	Rider(Node *rider, const Track &track) :
			node(rider) {
		if (rider->get_parent() == track.node()) {
			flat_follower = Object::cast_to<PathFollow2D>(rider);
			deep_follower = Object::cast_to<PathFollow3D>(rider);
		}
	}

	double distance_on(const Track &track) const {
		if (flat_follower != nullptr) {
			return flat_follower->get_progress();
		}
		if (deep_follower != nullptr) {
			return deep_follower->get_progress();
		}
		return track.nearest_to(places::position_of(node));
	}

	void put(const Track &track, double distance) const {
		if (flat_follower != nullptr) {
			flat_follower->set_progress(real_t(distance));
		} else if (deep_follower != nullptr) {
			deep_follower->set_progress(real_t(distance));
		} else {
			places::set_position_of(node, track.place_at(distance));
		}
	}

	void face(const Track &track, double distance, bool to_the_end) const {
		const Variant way = track.direction_at(distance);
		if (track.is_flat()) {
			facing::turn(node, facing::goal(node, to_the_end ? Vector2(way) : -Vector2(way)));
		} else {
			facing::turn(node, facing::goal(node, to_the_end ? Vector3(way) : -Vector3(way)));
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
Track track_of(SCMachineBase *machine, const NodePath &path, const Node *rider) {
	const Track track = path.is_empty() ? track_above(rider) : Track(values::node_of(machine, path));
	return track && track.is_flat() == spaces::is_flat(rider) && track.length() > 0.0 ? track : Track();
}

// Tells why track_of() found none.
void warn_no_track(SCMachineBase *machine, const SCMachineAction *action, const NodePath &path, const Node *rider) {
	Track track;
	if (path.is_empty()) {
		track = track_above(rider);
		if (!track) {
			verbs::warn(machine, action, vformat("%s lies in no path, so there is nothing to go along. Pick a Path2D or a Path3D under Along Path.", rider->get_name()));
			return;
		}
	} else {
		const Node *node = verbs::node_or_warn(machine, action, path, names().along_path);
		if (node == nullptr) {
			return;
		}
		track = Track(node);
		if (!track) {
			verbs::warn_wrong_class(machine, action, node, spaces::is_flat(rider) ? "a Path2D" : "a Path3D", names().along_path);
			return;
		}
	}
	if (track.is_flat() != spaces::is_flat(rider)) {
		verbs::warn(machine, action, vformat("%s is a %s and %s a %s, and one cannot go along the other. Pick a %s under Along Path.", rider->get_name(), rider->get_class(), track.node()->get_name(), track.node()->get_class(), spaces::is_flat(rider) ? "Path2D" : "Path3D"));
		return;
	}
	verbs::warn(machine, action, vformat("%s has no path drawn yet, so there is nothing to go along. Select it and draw at least two points.", track.node()->get_name()));
}

class FollowPath : public SCNativeAction {
	using Kind = SCFollowPathAction;

	// Beyond this a double no longer tells places on the way apart, and a duration of next to nothing leads here at once.
	static constexpr double FARTHEST = 1.0e15;

	static bool goes_by_duration(const SCMachineAction *action) {
		return setting_of<&Kind::duration>(action) > 0.0;
	}

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
		const verbs::Easing shape = Easings::of<&Kind::curve, &Kind::easing>(machine, action);
		const double share = Tween::interpolate_value(0.0, 1.0, elapsed, duration, shape.transition, shape.ease);
		const double from = memory.get(names().from, 0.0);
		// A shape may swing past the end, which is not yet to have arrived there.
		return MIN(from + (length - from) * share, std::nextafter(length, 0.0));
	}

	static void show(const SCMachineAction *action, const Track &track, const Rider &rider, double length, double travelled) {
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
		rider.put(track, along);
		if (setting_of<&Kind::turn_to_face>(action)) {
			rider.face(track, along, to_the_end);
		}
	}

	static Node *rider_of(SCMachineBase *machine, const SCMachineAction *action) {
		return spaces::placed(machine, setting_of<&Kind::node_path>(action));
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Node *node = spaces::placed_or_warn(machine, action, setting_of<&Kind::node_path>(action), names().node_path);
		const NodePath path = setting_of<&Kind::along_path>(action);
		const Track track = node != nullptr ? track_of(machine, path, node) : Track();
		if (!track) {
			if (node != nullptr) {
				warn_no_track(machine, action, path, node);
			}
			machine->finish(index);
			return;
		}
		spaces::warn_if_placed_by_another(machine, action, node);
		if (!goes_by_duration(action) && setting_of<&Kind::speed>(action) <= 0.0 && action->is_typed_in("speed")) {
			verbs::warn(machine, action, vformat("its Speed is %s, so %s stays where it is. Type a Speed above 0, and tick Backward to go the other way.", words::number(setting_of<&Kind::speed>(action)), node->get_name()));
		}
		const double length = track.length();
		const Rider rider(node, track);
		double travelled = 0.0;
		if (setting_of<&Kind::start>(action) == Kind::WHERE_IT_IS) {
			const double nearest = rider.distance_on(track);
			travelled = setting_of<&Kind::backward>(action) ? length - nearest : nearest;
		}
		Dictionary memory = machine->slot(index);
		memory[names().travelled] = travelled;
		memory[names().from] = travelled;
		show(action, track, rider, length, travelled);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		Dictionary memory = machine->slot(index);
		if (!memory.has(names().travelled) || machine->is_finished(index)) {
			return;
		}
		Node *node = rider_of(machine, action);
		const Track track = node != nullptr ? track_of(machine, setting_of<&Kind::along_path>(action), node) : Track();
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
		show(action, track, Rider(node, track), length, travelled);
		// Who stops may have set off from the very end; who goes round has come to it once more.
		const bool stops = setting_of<&Kind::at_the_end>(action) == Kind::STOP;
		const bool at_the_end = stops ? travelled >= length : std::floor(travelled / length) > std::floor(before / length);
		if (!here || !at_the_end) {
			return;
		}
		if (stops) {
			machine->finish(index);
		}
		verbs::send(machine, setting_of<&Kind::end_event>(action));
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
		Node *node = spaces::placed_or_warn(machine, action, setting_of<&Kind::node_path>(action), names().node_path);
		if (node == nullptr) {
			return;
		}
		const NodePath path = setting_of<&Kind::along_path>(action);
		const Track track = track_of(machine, path, node);
		if (!track) {
			warn_no_track(machine, action, path, node);
			return;
		}
		const StringName store_in = setting_of<&Kind::store_in>(action);
		const StringName length_in = setting_of<&Kind::store_length_in>(action);
		const StringName place_in = setting_of<&Kind::store_place_in>(action);
		const StringName off_path_in = setting_of<&Kind::store_off_path_in>(action);
		const double length = track.length();
		const double distance = Rider(node, track).distance_on(track);
		const Variant place = track.place_at(distance);
		const double off_path = places::distance_between(node, place);
		const StillHere here(machine);
		if (!store_in.is_empty() || (length_in.is_empty() && place_in.is_empty() && off_path_in.is_empty())) {
			answering::keep(machine, action, store_in, told_as(setting_of<&Kind::measure>(action), distance, length), "how far it is");
		}
		if (here) {
			answering::keep_if_named(machine, action, length_in, length, "Store Length In");
		}
		if (here) {
			answering::keep_if_named(machine, action, place_in, place, "Store Place In");
		}
		if (here) {
			answering::keep_if_named(machine, action, off_path_in, off_path, "Store Off Path In");
		}
	}
};

const AddKinds added = {
	add_kind<SCFollowPathAction, FollowPath>(),
	add_kind<SCPathProgressAction, DistanceAlongPath>(),
};

} // namespace

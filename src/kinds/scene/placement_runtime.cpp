// The compiled runtime of Procedural Placement. The order in which random numbers are drawn is part of what a seed means.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/spaces.hpp"
#include "action/weak.hpp"
#include "kinds/scene/placement.hpp"
#include "machine/native_names.hpp"
#include "space/newcomers.hpp"
#include "space/places_inside.hpp"

#include <godot_cpp/classes/fast_noise_lite.hpp>
#include <godot_cpp/classes/packed_scene.hpp>
#include <godot_cpp/classes/resource_loader.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

using Kind = SCProceduralPlacementAction;

constexpr int64_t HIGHEST_SEED = 999999;
constexpr int64_t NOISE_TRIES = 30;
constexpr double SMALLEST_SCALE = 0.0001;
constexpr double MOST_IN_WORDS = 9.0e15;

struct Names {
	StringName placed_by = "quillstead_placed_by";
};

// The scenes being put down at this moment, one inside another: a copy that puts down its own scene as it is added would go on
// without end.
class UnderWay {
	inline static const UnderWay *innermost = nullptr;
	const UnderWay *outer;
	String path;

public:
	explicit UnderWay(const String &scene_path) : outer(innermost), path(scene_path) { innermost = this; }
	UnderWay(const UnderWay &) = delete;
	UnderWay &operator=(const UnderWay &) = delete;
	~UnderWay() { innermost = outer; }

	static bool is(const String &scene_path) {
		for (const UnderWay *pass = innermost; pass != nullptr; pass = pass->outer) {
			if (pass->path == scene_path) {
				return true;
			}
		}
		return false;
	}
};

struct Cells {
	double width = 0.0;
	double height = 0.0;
	double columns = 0.0;
	double rows = 0.0;
};

double sized(double scale) {
	const double size = Math::abs(scale);
	return size <= SMALLEST_SCALE ? SMALLEST_SCALE : size;
}

// Cells of the same size in the world, however large the shape's own measure is drawn.
Cells cells_of(const places_inside::Area &area, double cell_size) {
	double across = area.world_3d.basis.get_scale().x;
	double along = area.world_3d.basis.get_scale().z;
	if (area.in_2d) {
		across = area.world_2d.get_scale().x;
		along = area.world_2d.get_scale().y;
	}
	Cells cells;
	cells.width = float(cell_size / sized(across));
	cells.height = float(cell_size / sized(along));
	cells.columns = MAX(1.0, Math::floor(2.0 * area.half_x / cells.width));
	cells.rows = MAX(1.0, Math::floor(2.0 * area.half_y / cells.height));
	return cells;
}

// Finds the places, and keeps those that chance or noise want.
class Search {
	const places_inside::Area &area;
	RandomNumberGenerator *random;
	Ref<FastNoiseLite> noise;
	double threshold;
	LocalVector<Variant> &found;

	bool is_noisy(const Variant &place) const {
		if (area.in_2d) {
			const Vector2 at = place;
			return noise->get_noise_2d(at.x, at.y) > threshold;
		}
		const Vector3 at = place;
		return noise->get_noise_2d(at.x, at.z) > threshold;
	}

public:
	// Without noise it goes by chance.
	Search(const places_inside::Area &in_area, RandomNumberGenerator *with, const Ref<FastNoiseLite> &by_noise, double above, LocalVector<Variant> &into) :
			area(in_area), random(with), noise(by_noise), threshold(above), found(into) {}

	void scatter(int64_t count) {
		for (int64_t tries = noise.is_valid() ? count * NOISE_TRIES : count; tries > 0 && int64_t(found.size()) < count; tries--) {
			const Variant place = area.place_of(places_inside::draw(area, random));
			if (noise.is_null() || is_noisy(place)) {
				found.push_back(place);
			}
		}
	}

	void fill(const Cells &cells, double jitter, double chance) {
		const double off = MIN(jitter, 1.0);
		for (double row = 0.0; row < cells.rows; row += 1.0) {
			for (double column = 0.0; column < cells.columns; column += 1.0) {
				double x = -cells.columns * cells.width / 2.0 + cells.width / 2.0 + column * cells.width;
				double y = -cells.rows * cells.height / 2.0 + cells.height / 2.0 + row * cells.height;
				if (jitter > 0.0) {
					x += random->randf_range(-0.5, 0.5) * cells.width * off;
					y += random->randf_range(-0.5, 0.5) * cells.height * off;
				}
				const Vector2 point{ real_t(x), real_t(y) };
				if (area.is_round && !area.holds(point)) {
					continue;
				}
				const Variant place = area.place_of(point);
				if (noise.is_valid() ? is_noisy(place) : random->randf() < chance) {
					found.push_back(place);
				}
			}
		}
	}
};

// One pass: looks whether all is there, finds the places, and puts the copies down.
class Placement {
	SCMachineBase *machine;
	SCMachineAction *action;
	int index;
	StillHere here;
	Weak<SCMachineBase> maker;
	const String path;
	Ref<PackedScene> scene;
	places_inside::Area area;
	String area_name;
	Ref<RandomNumberGenerator> random;
	Weak<Node> under{ nullptr };
	LocalVector<Variant> found;

	void wrong(Kind::Wrong code, const Variant &a = Variant(), const Variant &b = Variant()) {
		verbs::say<&Kind::warn_placement>(action, machine, index, int64_t(code), a, b, Kind::MOST_AT_ONCE);
	}

	bool find_scene() {
		ResourceLoader *loader = ResourceLoader::get_singleton();
		if (!path.is_empty() && loader->exists(path)) {
			scene = loader->load(path);
		}
		if (here && scene.is_null()) {
			wrong(Kind::NO_SCENE, path.is_empty() ? String("no scene is picked") : vformat("%s could not be loaded", path));
		}
		return here && scene.is_valid();
	}

	bool find_area() {
		const NodePath area_path = setting_of<&Kind::area_path>(action);
		const Node *marked_by = values::node_of(machine, area_path);
		area = places_inside::at(marked_by);
		const bool is_somewhere = area && checked::is_sound(area.place_of(Vector2(real_t(area.half_x), real_t(area.half_y)))) &&
				checked::is_sound(area.place_of(Vector2(real_t(-area.half_x), real_t(-area.half_y))));
		area_name = marked_by != nullptr ? String(marked_by->get_name()) : words::name_in_line(area_path);
		if (!is_somewhere) {
			wrong(Kind::NO_AREA, area_name);
		}
		return here && is_somewhere;
	}

	// Where nothing was there to be added under, which is told, and outside the tree, where there is nowhere.
	Node *find_parent() {
		const NodePath parent_path = setting_of<&Kind::parent_path>(action);
		Node *parent = parent_path.is_empty() ? nullptr : values::node_of(machine, parent_path);
		if (parent == nullptr && !parent_path.is_empty()) {
			wrong(Kind::NO_PARENT);
		}
		if (parent != nullptr || !here) {
			return parent;
		}
		return newcomers::scene_of(machine);
	}

	// Draws the seed when none is given, and keeps it.
	int64_t take_seed() {
		int64_t seed = setting_of<&Kind::placement_seed>(action);
		if (seed == 0) {
			seed = UtilityFunctions::randi_range(1, HIGHEST_SEED);
		}
		random.instantiate();
		random->set_seed(uint64_t(seed));
		return seed;
	}

	Ref<FastNoiseLite> noise_of(int64_t seed) {
		Ref<FastNoiseLite> noise;
		noise.instantiate();
		noise->set_seed(int32_t(uint32_t(uint64_t(seed))));
		noise->set_frequency(checked::number<&Kind::frequency>(machine, action));
		return noise;
	}

	static void clear(Node *parent, const String &scene_path) {
		const StringName &placed_by = NativeNames::of<Names>().placed_by;
		for (int i = 0; i < parent->get_child_count(); i++) {
			Node *child = parent->get_child(i);
			if (child->has_meta(placed_by) && child->get_meta(placed_by) == Variant(scene_path)) {
				child->queue_free();
			}
		}
	}

	// Where the place is for somebody under this parent; the place itself where its parent has no size to tell by.
	static bool stand(Node *copy, const Node *parent, const Variant &place) {
		if (Node3D *node_3d = place.get_type() == Variant::VECTOR3 ? Object::cast_to<Node3D>(copy) : nullptr) {
			const Node3D *above = node_3d->is_set_as_top_level() ? nullptr : Object::cast_to<Node3D>(parent);
			const Variant own = above != nullptr ? spaces::to_own(above, place) : place;
			node_3d->set_position(own.get_type() == Variant::NIL ? Vector3(place) : Vector3(own));
			return true;
		}
		if (Node2D *node_2d = place.get_type() == Variant::VECTOR2 ? Object::cast_to<Node2D>(copy) : nullptr) {
			const CanvasItem *above = node_2d->is_set_as_top_level() ? nullptr : Object::cast_to<CanvasItem>(parent);
			const Variant own = above != nullptr ? spaces::to_own(above, place) : place;
			node_2d->set_position(own.get_type() == Variant::NIL ? Vector2(place) : Vector2(own));
			return true;
		}
		return false;
	}

	static void turn(Node *copy, double angle) {
		if (Node3D *node_3d = Object::cast_to<Node3D>(copy)) {
			node_3d->rotate_y(real_t(angle));
		} else if (Node2D *node_2d = Object::cast_to<Node2D>(copy)) {
			node_2d->set_rotation(real_t(angle));
		}
	}

	void tell_of_side(const Node *copy) {
		const char *side = "an empty";
		if (Object::cast_to<Node3D>(copy) != nullptr) {
			side = "a 3D";
		} else if (Object::cast_to<Node2D>(copy) != nullptr) {
			side = "a 2D";
		} else if (copy != nullptr) {
			side = Object::cast_to<Control>(copy) != nullptr ? "a UI" : "a plain";
		}
		if (here) {
			wrong(Kind::OTHER_SIDE, side, area.in_2d ? "2D" : "3D");
		}
	}

	// What the copies' own code does in between has no say in where the rest of them go. They end with their parent alone.
	void put_down(bool turned) {
		const UnderWay pass(path);
		const StringName &placed_by = NativeNames::of<Names>().placed_by;
		int64_t number = under.get() != nullptr ? under.get()->get_child_count() : 0;
		for (const Variant &place : found) {
			const Weak<Node> copy(scene->can_instantiate() ? scene->instantiate() : nullptr);
			Node *parent = under.get();
			if (copy.get() == nullptr || parent == nullptr || !stand(copy.get(), parent, place)) {
				if (parent != nullptr) {
					tell_of_side(copy.get());
				}
				if (copy.get() != nullptr) {
					copy.get()->queue_free();
				}
				continue;
			}
			if (turned) {
				turn(copy.get(), random->randf() * Math::TAU);
			}
			if (maker.get() != nullptr) {
				newcomers::note_maker(maker.get(), copy.get());
			}
			copy.get()->set_meta(placed_by, path);
			// Left to the engine, each would be named by trying all the names there are.
			number++;
			copy.get()->set_name(String(copy.get()->get_name()) + String::num_int64(number));
			newcomers::add(parent, copy.get());
		}
	}

public:
	Placement(SCMachineBase *of_machine, SCMachineAction *of_action, int of_index) :
			machine(of_machine), action(of_action), index(of_index), here(of_machine), maker(of_machine), path(setting_of<&Kind::scene_path>(of_action)) {}

	void place() {
		if (!find_scene() || !find_area()) {
			return;
		}
		if (UnderWay::is(path)) {
			verbs::warn(machine, action,
					vformat("%s asks for more of itself while it is being placed, which would go on without end, so no more are placed. Let its copies wait "
							"for "
							"an event before they place any.",
							path.get_file()));
			return;
		}
		const bool is_grid = checked::choice<&Kind::layout>(machine, action, Kind::SCATTER) == Kind::GRID;
		const bool is_noise = checked::choice<&Kind::by>(machine, action, Kind::CHANCE) == Kind::NOISE;
		const int64_t asked = setting_of<&Kind::count>(action);
		const double cell_size = checked::number<&Kind::cell_size>(machine, action);
		Cells cells;
		if (is_grid) {
			if (!(cell_size > 0.0)) {
				wrong(Kind::NO_CELL_SIZE, cell_size);
				return;
			}
			cells = cells_of(area, cell_size);
			const double all = cells.columns * cells.rows;
			if (!(all <= double(Kind::MOST_AT_ONCE))) {
				wrong(Kind::TOO_MANY_CELLS, int64_t(MIN(all, MOST_IN_WORDS)), area_name);
				return;
			}
		} else if (asked < 1) {
			wrong(Kind::NO_COUNT, asked);
			return;
		} else if (asked > Kind::MOST_AT_ONCE) {
			wrong(Kind::TOO_MANY, asked);
		}
		if (!here) {
			return;
		}
		const int64_t seed = take_seed();
		verbs::keep_if_named<&Kind::store_seed_in>(machine, action, seed);
		if (!here) {
			return;
		}
		const Ref<FastNoiseLite> noise = is_noise ? noise_of(seed) : Ref<FastNoiseLite>();
		under = Weak<Node>(find_parent());
		if (!here || under.get() == nullptr) {
			return;
		}
		if (setting_of<&Kind::clear_first>(action)) {
			clear(under.get(), path);
		}
		Search search(area, random.ptr(), noise, checked::number<&Kind::threshold>(machine, action), found);
		if (is_grid) {
			search.fill(cells, checked::number<&Kind::jitter>(machine, action), checked::number<&Kind::chance>(machine, action));
		} else {
			search.scatter(MIN(asked, Kind::MOST_AT_ONCE));
		}
		put_down(setting_of<&Kind::random_rotation>(action));
	}
};

class ProceduralPlacement : public OnceOrRepeating<ProceduralPlacement> {
public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) { Placement(machine, action, index).place(); }
};

const AddKinds added = {
	add_kind<SCProceduralPlacementAction, ProceduralPlacement>(),
};

} // namespace

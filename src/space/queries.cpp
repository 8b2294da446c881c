#include "space/queries.hpp"

#include "machine/machine_run.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/project_settings.hpp>
#include <godot_cpp/classes/viewport.hpp>
#include <godot_cpp/classes/world2d.hpp>
#include <godot_cpp/classes/world3d.hpp>

namespace queries {

namespace {

struct Names {
	StringName collider_id = "collider_id";
	StringName rid = "rid";
	StringName position = "position";
	StringName point = "point";
	StringName normal = "normal";
};

const Names &names() {
	return NativeNames::of<Names>();
}

struct Threads {
	bool in_2d = ProjectSettings::get_singleton()->get_setting("physics/2d/run_on_separate_thread", false).booleanize();
	bool in_3d = ProjectSettings::get_singleton()->get_setting("physics/3d/run_on_separate_thread", false).booleanize();
};

// A few at a time, as the engine makes room for as many as are asked for.
constexpr int A_FEW = 32;

enum class Verdict { COUNTS, PASSED_BY, IN_THE_WAY };

template <class Vector>
Verdict judge(const Filter &filter, const Hit<Vector> &hit) {
	const Node *node = hit.get();
	if (filter.is_own(node) || (!filter.except_group.is_empty() && node != nullptr && node->is_in_group(filter.except_group))) {
		return Verdict::PASSED_BY;
	}
	if (filter.only_group.is_empty() || (node != nullptr && node->is_in_group(filter.only_group))) {
		return Verdict::COUNTS;
	}
	return filter.stopped_by_others ? Verdict::IN_THE_WAY : Verdict::PASSED_BY;
}

template <class Vector>
bool holds(const Hits<Vector> &hits, const Hit<Vector> &hit) {
	for (const Hit<Vector> &other : hits) {
		if (other.key() == hit.key()) {
			return true;
		}
	}
	return false;
}

template <class Vector>
void read(const Dictionary &answer, const StringName &place, Hit<Vector> &hit) {
	hit.node = ObjectID(uint64_t(answer[names().collider_id]));
	hit.rid = answer[names().rid];
	if (!place.is_empty()) {
		hit.place = answer[place];
		hit.normal = answer[names().normal];
	}
}

// A thread of the physics' own takes a change when it gets round to it; whoever asks it something waits for that.
template <class Side>
void wait_for(const RID &shape) {
	Side::Server::get_singleton()->shape_get_type(shape);
}

PhysicsDirectSpaceState2D *space_of(const Viewport *viewport, In2D) {
	const Ref<World2D> world = viewport->find_world_2d();
	return world.is_valid() ? world->get_direct_space_state() : nullptr;
}
PhysicsDirectSpaceState3D *space_of(const Viewport *viewport, In3D) {
	const Ref<World3D> world = viewport->find_world_3d();
	return world.is_valid() ? world->get_direct_space_state() : nullptr;
}

Transform2D moved(const Transform2D &from, const Vector2 &by) {
	return Transform2D(from.columns[0], from.columns[1], from.columns[2] + by);
}
Transform3D moved(const Transform3D &from, const Vector3 &by) {
	return Transform3D(from.basis, from.origin + by);
}

} // namespace

bool Filter::is_own(const Node *node) const {
	for (const Node *owner : own) {
		if (owner != nullptr && node != nullptr && (node == owner || owner->is_ancestor_of(const_cast<Node *>(node)))) {
			return true;
		}
	}
	return false;
}

template <class Side>
struct Query<Side>::Shared {
	struct Made {
		Ref<typename Side::RayQuery> ray;
		Ref<typename Side::ShapeQuery> shape;
		Ref<typename Side::Round> round;
		Ref<typename Side::Box> box;
		TypedArray<RID> left_out;

		Made() {
			ray.instantiate();
			shape.instantiate();
			round.instantiate();
			box.instantiate();
		}
	};
	mutable Made made;
};

template <class Side>
Query<Side>::Query(const Node *in_the_world_of, const Filter &asked_of) : shared(const_cast<Shared &>(NativeNames::of<Shared>())), filter(asked_of) {
	if (in_the_world_of == nullptr || !in_the_world_of->is_inside_tree() || !are_answered_now(Side::IS_2D)) {
		return;
	}
	space = space_of(in_the_world_of->get_viewport(), Side());
	shared.made.left_out.clear();
	for (const Node *owner : filter.own) {
		if (const auto *collider = Object::cast_to<typename Side::Collider>(owner)) {
			shared.made.left_out.push_back(collider->get_rid());
		}
	}
	const uint32_t mask = uint32_t(filter.mask);
	const Ref<typename Side::RayQuery> &ray = shared.made.ray;
	ray->set_collision_mask(mask);
	ray->set_collide_with_bodies(filter.bodies);
	ray->set_collide_with_areas(filter.areas);
	ray->set_hit_from_inside(filter.from_inside);
	ray->set_exclude(shared.made.left_out);
	const Ref<typename Side::ShapeQuery> &shape = shared.made.shape;
	shape->set_collision_mask(mask);
	shape->set_collide_with_bodies(filter.bodies);
	shape->set_collide_with_areas(filter.areas);
	shape->set_exclude(shared.made.left_out);
}

template <class Side>
void Query<Side>::leave_out(const RID &collider) {
	shared.made.left_out.push_back(collider);
	shared.made.ray->set_exclude(shared.made.left_out);
	shared.made.shape->set_exclude(shared.made.left_out);
}

template <class Side>
bool Query<Side>::next_on_line(Hit<Vector> &hit) {
	const Dictionary answer = space->intersect_ray(shared.made.ray);
	if (answer.is_empty()) {
		return false;
	}
	read(answer, names().position, hit);
	return true;
}

template <class Side>
bool Query<Side>::ray(const Vector &from, const Vector &to, Hit<Vector> &hit) {
	shared.made.ray->set_from(from);
	shared.made.ray->set_to(to);
	for (int i = 0; i < MOST && next_on_line(hit); i++) {
		const Verdict verdict = judge(filter, hit);
		if (verdict != Verdict::PASSED_BY) {
			hit.distance = double(from.distance_to(hit.place));
			return verdict == Verdict::COUNTS;
		}
		leave_out(hit.rid);
	}
	return false;
}

template <class Side>
void Query<Side>::rays(const Vector &from, const Vector &to, int most, Hits<Vector> &hits) {
	Hit<Vector> hit;
	for (int i = 0; i < MOST && int(hits.size()) < most && ray(from, to, hit); i++) {
		if (!holds(hits, hit)) {
			hits.push_back(hit);
		}
		leave_out(hit.rid);
	}
}

template <class Side>
void Query<Side>::suit_shape(const RID &shape, const Transform &at, const Vector &motion, double margin) {
	const Ref<typename Side::ShapeQuery> &query = shared.made.shape;
	query->set_shape_rid(shape);
	query->set_transform(at);
	query->set_motion(motion);
	query->set_margin(float(margin));
}

template <class Side>
void Query<Side>::touching(const RID &shape, const Transform &at, double margin, Hits<Vector> &hits) {
	suit_shape(shape, at, Vector(), margin);
	int most = A_FEW;
	TypedArray<Dictionary> answers = space->intersect_shape(shared.made.shape, most);
	while (answers.size() >= most && most < MOST) {
		most *= 2;
		answers = space->intersect_shape(shared.made.shape, most);
	}
	for (int64_t i = 0; i < answers.size(); i++) {
		Hit<Vector> hit;
		read(answers[i], StringName(), hit);
		if (judge(filter, hit) == Verdict::COUNTS && !holds(hits, hit)) {
			hits.push_back(hit);
		}
	}
}

template <class Side>
void Query<Side>::touching(const typename Side::Collider *of, double margin, Hits<Vector> &hits) {
	auto *collider = const_cast<typename Side::Collider *>(of);
	const Transform at = collider->get_global_transform();
	const PackedInt32Array owners = collider->get_shape_owners();
	for (const int32_t owner : owners) {
		if (collider->is_shape_owner_disabled(uint32_t(owner))) {
			continue;
		}
		const Transform place = at * collider->shape_owner_get_transform(uint32_t(owner));
		for (int32_t i = 0; i < collider->shape_owner_get_shape_count(uint32_t(owner)); i++) {
			const Ref<typename Side::Shape> shape = collider->shape_owner_get_shape(uint32_t(owner), i);
			if (shape.is_valid()) {
				touching(shape->get_rid(), place, margin, hits);
			}
		}
	}
}

template <class Side>
bool Query<Side>::rest(const RID &shape, const Transform &at, Hit<Vector> &hit) {
	suit_shape(shape, at, Vector(), Side::HAIR);
	const Dictionary answer = space->get_rest_info(shared.made.shape);
	if (answer.is_empty()) {
		return false;
	}
	read(answer, names().point, hit);
	return true;
}

template <class Side>
bool Query<Side>::next_on_way(const RID &shape, const Transform &at, const Vector &motion, Hit<Vector> &hit) {
	double from = 0.0;
	double length = 1.0;
	double reached = 0.0;
	// The engine narrows the way down to a 256th; the second look narrows that down as much again.
	for (int round = 0; round < 2; round++) {
		suit_shape(shape, moved(at, motion * real_t(from)), motion * real_t(length), 0.0);
		const PackedFloat32Array free = space->cast_motion(shared.made.shape);
		if (free.size() < 2 || free[1] >= 1.0f) {
			if (round == 0) {
				return false;
			}
			break;
		}
		reached = from + length * double(free[1]);
		from += length * double(free[0]);
		length *= double(free[1]) - double(free[0]);
		if (length <= 0.0) {
			break;
		}
	}
	hit.distance = from * double(motion.length());
	return rest(shape, moved(at, motion * real_t(reached)), hit);
}

template <class Side>
void Query<Side>::sweep(const RID &shape, const Transform &at, const Vector &motion, int most, Hits<Vector> &hits) {
	for (const Hit<Vector> &hit : hits) {
		shared.made.left_out.push_back(hit.rid);
	}
	shared.made.shape->set_exclude(shared.made.left_out);
	Hit<Vector> hit;
	for (int i = 0; i < MOST && int(hits.size()) < most && next_on_way(shape, at, motion, hit); i++) {
		const Verdict verdict = judge(filter, hit);
		if (verdict == Verdict::IN_THE_WAY) {
			return;
		}
		if (verdict == Verdict::COUNTS && !holds(hits, hit)) {
			hits.push_back(hit);
		}
		leave_out(hit.rid);
	}
}

template <class Side>
void Query<Side>::place_first(const RID &shape, const Transform &at, Hits<Vector> &hits) {
	for (uint32_t i = 1; i < hits.size(); i++) {
		shared.made.left_out.push_back(hits[i].rid);
	}
	shared.made.shape->set_exclude(shared.made.left_out);
	Hit<Vector> hit;
	for (int i = 0; i < MOST && !hits.is_empty() && rest(shape, at, hit); i++) {
		if (hit.key() == hits[0].key()) {
			hits[0] = hit;
			return;
		}
		leave_out(hit.rid);
	}
}

template <class Side>
RID Query<Side>::round(double radius) {
	const Ref<typename Side::Round> &shape = shared.made.round;
	if (double(shape->get_radius()) != double(real_t(radius))) {
		shape->set_radius(real_t(radius));
		wait_for<Side>(shape->get_rid());
	}
	return shape->get_rid();
}

template <class Side>
RID Query<Side>::box(const Vector &size) {
	const Ref<typename Side::Box> &shape = shared.made.box;
	if (shape->get_size() != size) {
		shape->set_size(size);
		wait_for<Side>(shape->get_rid());
	}
	return shape->get_rid();
}

template class Query<In2D>;
template class Query<In3D>;

const Node *collider_above(const Node *node) {
	while (node != nullptr && Object::cast_to<CollisionObject2D>(node) == nullptr && Object::cast_to<CollisionObject3D>(node) == nullptr) {
		node = node->get_parent();
	}
	return node;
}

bool is_fresh(const SCMachineBase *machine) {
	const GameClock &clock = machine->run().clock;
	return machine->is_inside_tree() && (clock.seconds + clock.idle_span() <= 0.0 || Engine::get_singleton()->get_process_frames() == 0);
}

bool are_answered_now(bool in_2d) {
	const Threads &threads = NativeNames::of<Threads>();
	return !(in_2d ? threads.in_2d : threads.in_3d) || Engine::get_singleton()->is_in_physics_frame();
}

} // namespace queries

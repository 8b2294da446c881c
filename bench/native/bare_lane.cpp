#include "bare_lane.hpp"

#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/godot.hpp>

using namespace godot;

namespace {

template <class Body, class Place>
struct ThroughBindings {
	using Spot = Place;
	using Found = Object *;

	static Found find(uint64_t id) { return ObjectDB::get_instance(id); }
	static Spot read(Found body) { return static_cast<const Body *>(body)->get_global_position(); }
	static void write(Found body, const Spot &spot) { static_cast<Body *>(body)->set_global_position(spot); }
};

struct OfNode2D {
	using Spot = Vector2;
	static constexpr const char *CLASS = "Node2D";
	static constexpr int64_t READ = 3341600327;
	static constexpr int64_t WRITE = 743155724;
};

struct OfNode3D {
	using Spot = Vector3;
	static constexpr const char *CLASS = "Node3D";
	static constexpr int64_t READ = 3360562783;
	static constexpr int64_t WRITE = 3460891852;
};

template <class Body>
struct WrittenOut {
	using Spot = typename Body::Spot;
	using Found = GDExtensionObjectPtr;

	static GDExtensionMethodBindPtr method(const char *name, int64_t hash) {
		const StringName class_name(Body::CLASS);
		const StringName method_name(name);
		return gdextension_interface::classdb_get_method_bind(class_name._native_ptr(), method_name._native_ptr(), hash);
	}
	static Found find(uint64_t id) { return gdextension_interface::object_get_instance_from_id(id); }
	static Spot read(Found body) {
		static const GDExtensionMethodBindPtr bind = method("get_global_position", Body::READ);
		Spot spot;
		gdextension_interface::object_method_bind_ptrcall(bind, body, nullptr, &spot);
		return spot;
	}
	static void write(Found body, const Spot &spot) {
		static const GDExtensionMethodBindPtr bind = method("set_global_position", Body::WRITE);
		const GDExtensionConstTypePtr arguments[] = { &spot };
		gdextension_interface::object_method_bind_ptrcall(bind, body, arguments, nullptr);
	}
};

} // namespace

void BenchBareLane::open(bool in_3d, bool written_out) {
	clear();
	is_in_3d = in_3d;
	is_written_out = written_out;
}

void BenchBareLane::add_chase(Node *machine, Node *body, Node *target) {
	ERR_FAIL_COND(machine == nullptr || body == nullptr || target == nullptr);
	chases.push_back({ machine->get_instance_id(), body->get_instance_id(), target->get_instance_id() });
	set_process(true);
}

void BenchBareLane::add_check(Node *machine, Node *body) {
	ERR_FAIL_COND(machine == nullptr || body == nullptr);
	checks.push_back({ machine->get_instance_id(), body->get_instance_id() });
	set_process(true);
}

void BenchBareLane::clear() {
	chases.clear();
	checks.clear();
	set_process(false);
}

void BenchBareLane::_process(double) {
	if (is_in_3d && is_written_out) {
		run<WrittenOut<OfNode3D>>();
	} else if (is_in_3d) {
		run<ThroughBindings<Node3D, Vector3>>();
	} else if (is_written_out) {
		run<WrittenOut<OfNode2D>>();
	} else {
		run<ThroughBindings<Node2D, Vector2>>();
	}
}

template <class Engine>
void BenchBareLane::run() {
	constexpr real_t STEP = real_t(0.0001);
	for (const Chase &chase : chases) {
		const typename Engine::Found machine = Engine::find(chase.machine);
		const typename Engine::Found body = Engine::find(chase.body);
		const typename Engine::Found target = Engine::find(chase.target);
		if (machine != nullptr && body != nullptr && target != nullptr) {
			const typename Engine::Spot to = Engine::read(target);
			const typename Engine::Spot from = Engine::read(body);
			Engine::write(body, from + (to - from) * STEP);
		}
	}
	for (const Check &check : checks) {
		const typename Engine::Found machine = Engine::find(check.machine);
		const typename Engine::Found body = Engine::find(check.body);
		if (machine != nullptr && body != nullptr) {
			near += Engine::read(body).length_squared() < 1 ? 1 : 0;
		}
	}
}

void BenchBareLane::_bind_methods() {
	ClassDB::bind_method(D_METHOD("open", "in_3d", "written_out"), &BenchBareLane::open);
	ClassDB::bind_method(D_METHOD("add_chase", "machine", "body", "target"), &BenchBareLane::add_chase);
	ClassDB::bind_method(D_METHOD("add_check", "machine", "body"), &BenchBareLane::add_check);
	ClassDB::bind_method(D_METHOD("clear"), &BenchBareLane::clear);
}

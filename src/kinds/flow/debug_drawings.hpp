#pragma once

// The nodes that hold what Draw Debug draws, one for each viewport or canvas layer that something is
// drawn in. Each comes with its first drawing and goes with its last. An action keeps the number of
// its drawing, and puts the same one again to move it.

#include <godot_cpp/classes/immediate_mesh.hpp>
#include <godot_cpp/classes/mesh_instance3d.hpp>
#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/standard_material3d.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/packed_vector2_array.hpp>
#include <godot_cpp/variant/packed_vector3_array.hpp>

using namespace godot;

// Lines by their ends, two and two, in one colour.
template <class Points>
struct DebugDrawing {
	Points ends;
	Color color;
	// Stays until it is taken away when this is not above zero.
	double seconds = 0.0;
};

template <class Points>
class DebugDrawingTable {
	HashMap<int64_t, DebugDrawing<Points>> drawings;

public:
	bool is_empty() const { return drawings.is_empty(); }
	void put(int64_t number, const DebugDrawing<Points> &drawing) { drawings[number] = drawing; }
	bool take(int64_t number) { return drawings.erase(number); }
	// Whether one of them has had its time.
	bool pass(double seconds) {
		LocalVector<int64_t> over;
		for (KeyValue<int64_t, DebugDrawing<Points>> &drawing : drawings) {
			if (drawing.value.seconds > 0.0) {
				drawing.value.seconds -= seconds;
				if (drawing.value.seconds <= 0.0) {
					over.push_back(drawing.key);
				}
			}
		}
		for (const int64_t number : over) {
			drawings.erase(number);
		}
		return !over.is_empty();
	}
	Points all_ends() const {
		Points all;
		for (const KeyValue<int64_t, DebugDrawing<Points>> &drawing : drawings) {
			all.append_array(drawing.value.ends);
		}
		return all;
	}
	const HashMap<int64_t, DebugDrawing<Points>> &all() const { return drawings; }
};

class SCDebugDrawings2D : public Node2D {
	GDCLASS(SCDebugDrawings2D, Node2D)

public:
	using Points = PackedVector2Array;

	// Where things beside `node` are drawn; null for a node outside the tree.
	static SCDebugDrawings2D *beside(Node *node);
	void put(int64_t number, const DebugDrawing<Points> &drawing);
	void take(int64_t number);
	// Every end of every line, two and two.
	PackedVector2Array lines() const { return table.all_ends(); }

protected:
	static void _bind_methods();
	void _notification(int what);

private:
	DebugDrawingTable<Points> table;

	void drawings_changed();
};

class SCDebugDrawings3D : public MeshInstance3D {
	GDCLASS(SCDebugDrawings3D, MeshInstance3D)

public:
	using Points = PackedVector3Array;

	static SCDebugDrawings3D *beside(Node *node);
	void put(int64_t number, const DebugDrawing<Points> &drawing);
	void take(int64_t number);
	PackedVector3Array lines() const { return table.all_ends(); }

protected:
	static void _bind_methods();
	void _notification(int what);

private:
	DebugDrawingTable<Points> table;
	Ref<ImmediateMesh> mesh;
	Ref<StandardMaterial3D> material;
	bool mesh_is_old = false;

	void drawings_changed();
	void build_mesh();
};

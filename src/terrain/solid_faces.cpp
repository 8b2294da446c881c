// What the trunks of trees and the outsides of boulders bump with: triangles that face outward, in the engine's order.

#include "terrain/sc_terrain_work.hpp"

#include <godot_cpp/variant/vector3.hpp>

#include "terrain/placed_things.hpp"

namespace {

constexpr int SIDES = 6;
constexpr double ROOT_OF_3 = 1.7320508075688772;
constexpr double COSINES[SIDES] = { 1.0, 0.5, -0.5, -1.0, -0.5, 0.5 };
constexpr double SINES[SIDES] = { 0.0, ROOT_OF_3 / 2.0, ROOT_OF_3 / 2.0, 0.0, -ROOT_OF_3 / 2.0, -ROOT_OF_3 / 2.0 };

constexpr int64_t CORNERS_OF_A_TRUNK = (SIDES * 2 + SIDES - 2) * 3;
constexpr int64_t CORNERS_OF_A_BOULDER = SIDES * 2 * 3;

constexpr double BOULDER_MIDDLE = 0.2;
constexpr double BOULDER_WIDTH = 0.7 * 0.95;
constexpr double BOULDER_TOP = 0.55;
constexpr double BOULDER_BOTTOM = 0.55 * 0.6;

struct Faces {
	Vector3 *to;

	void add(const Vector3 &first, const Vector3 &second, const Vector3 &third) {
		*to++ = first;
		*to++ = second;
		*to++ = third;
	}
};

Vector3 corner(const PlacedThing &thing, int side, double radius, double height) {
	return Vector3(real_t(thing.x + COSINES[side % SIDES] * radius), real_t(height), real_t(thing.z + SINES[side % SIDES] * radius));
}

void add_trunk(Faces &faces, const PlacedThing &thing, double radius, double tall) {
	const double foot = thing.height;
	const double top = foot + tall;
	for (int side = 0; side < SIDES; side++) {
		const Vector3 low = corner(thing, side, radius, foot);
		const Vector3 next_low = corner(thing, side + 1, radius, foot);
		const Vector3 high = corner(thing, side, radius, top);
		const Vector3 next_high = corner(thing, side + 1, radius, top);
		faces.add(low, next_low, next_high);
		faces.add(low, next_high, high);
	}
	for (int side = 1; side < SIDES - 1; side++) {
		faces.add(corner(thing, 0, radius, top), corner(thing, side, radius, top), corner(thing, side + 1, radius, top));
	}
}

void add_boulder(Faces &faces, const PlacedThing &thing, double boulder_size) {
	const double size = thing.scale * boulder_size;
	const double middle = thing.height + BOULDER_MIDDLE * size;
	const Vector3 top(thing.x, real_t(middle + BOULDER_TOP * size), thing.z);
	const Vector3 bottom(thing.x, real_t(middle - BOULDER_BOTTOM * size), thing.z);
	for (int side = 0; side < SIDES; side++) {
		const Vector3 here = corner(thing, side, BOULDER_WIDTH * size, middle);
		const Vector3 next = corner(thing, side + 1, BOULDER_WIDTH * size, middle);
		faces.add(here, next, top);
		faces.add(next, here, bottom);
	}
}

} // namespace

PackedVector3Array SCTerrainWork::solid_faces(const PackedFloat32Array &places, double trunk_radius, double trunk_height, double boulder_size) {
	PackedVector3Array corners;
	if (!std::isfinite(trunk_radius) || !std::isfinite(trunk_height) || !std::isfinite(boulder_size)) {
		return corners;
	}
	const bool are_trunks = trunk_radius > 0.0;
	corners.resize(places.size() / PlacedThing::NUMBERS * (are_trunks ? CORNERS_OF_A_TRUNK : CORNERS_OF_A_BOULDER));
	Vector3 *first = corners.ptrw();
	Faces faces = { first };
	PlacedThing::each(places, [&](const PlacedThing &thing) {
		if (are_trunks) {
			add_trunk(faces, thing, trunk_radius, trunk_height);
		} else {
			add_boulder(faces, thing, boulder_size);
		}
	});
	corners.resize(faces.to - first);
	return corners;
}

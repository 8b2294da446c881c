#include "bare_terrain.hpp"

#include <godot_cpp/core/class_db.hpp>

#include <cmath>

using namespace godot;

namespace {

constexpr double WHOLE_TURN = 6.283185307179586;
constexpr int64_t NUMBERS_OF_A_PLACE = 6;
constexpr int64_t NUMBERS_OF_AN_INSTANCE = 16;
constexpr int SIDES = 6;
constexpr int64_t CORNERS_OF_A_TRUNK = (SIDES * 2 + SIDES - 2) * 3;

class Draws {
	uint64_t state;

public:
	explicit Draws(int64_t seed) : state(uint64_t(seed)) {}
	double share() {
		const uint64_t before = state;
		state = before * 0x5851F42D4C957F2D + 0x14057B7EF767814F;
		const auto mixed = uint32_t((before ^ (before >> 18U)) >> 27U);
		const auto turn = uint32_t(before >> 59U);
		return double((mixed >> turn) | (mixed << ((32U - turn) & 31U))) / 4294967296.0;
	}
};

} // namespace

PackedFloat32Array BenchBareTerrain::fill(int64_t numbers) {
	PackedFloat32Array filled;
	filled.resize(numbers);
	float *to = filled.ptrw();
	for (int64_t i = 0; i < numbers; i++) {
		to[i] = float(i);
	}
	return filled;
}

PackedFloat32Array BenchBareTerrain::plant(const PackedFloat32Array &ground, int64_t side, double step, int64_t count, int64_t seed) {
	PackedFloat32Array places;
	places.resize(count * NUMBERS_OF_A_PLACE);
	const float *heights = ground.ptr();
	float *to = places.ptrw();
	Draws draws(seed);
	const double cells = double(side - 1);
	const double half = cells * step / 2.0;
	for (int64_t i = 0; i < count; i++, to += NUMBERS_OF_A_PLACE) {
		const double x = draws.share() * cells;
		const double z = draws.share() * cells;
		const float *corner = heights + int64_t(z) * side + int64_t(x);
		const double across = x - std::floor(x);
		const double near_side = corner[0] + (corner[1] - corner[0]) * across;
		const double far_side = corner[side] + (corner[side + 1] - corner[side]) * across;
		to[0] = float(x * step - half);
		to[1] = float(near_side + (far_side - near_side) * (z - std::floor(z)));
		to[2] = float(z * step - half);
		to[3] = float(draws.share() * 0.6 + 0.75);
		to[4] = float(draws.share() * WHOLE_TURN);
		to[5] = float(draws.share());
	}
	return places;
}

PackedFloat32Array BenchBareTerrain::pack(const PackedFloat32Array &places) {
	PackedFloat32Array packed;
	const int64_t count = places.size() / NUMBERS_OF_A_PLACE;
	packed.resize(count * NUMBERS_OF_AN_INSTANCE);
	const float *from = places.ptr();
	float *to = packed.ptrw();
	for (int64_t i = 0; i < count; i++, from += NUMBERS_OF_A_PLACE, to += NUMBERS_OF_AN_INSTANCE) {
		const double size = from[3];
		const double cosine = std::cos(double(from[4])) * size;
		const double sine = std::sin(double(from[4])) * size;
		const float numbers[NUMBERS_OF_AN_INSTANCE] = {
			float(cosine), 0.0f, float(sine), from[0], //
			0.0f, float(size), 0.0f, from[1], //
			float(-sine), 0.0f, float(cosine), from[2], //
			from[5], from[5], from[5], from[5], //
		};
		for (int64_t n = 0; n < NUMBERS_OF_AN_INSTANCE; n++) {
			to[n] = numbers[n];
		}
	}
	return packed;
}

PackedVector3Array BenchBareTerrain::make_solid(const PackedFloat32Array &places, double radius, double tall) {
	PackedVector3Array corners;
	const int64_t count = places.size() / NUMBERS_OF_A_PLACE;
	corners.resize(count * CORNERS_OF_A_TRUNK);
	Vector3 *to = corners.ptrw();
	Vector3 ring[SIDES + 1];
	for (int side = 0; side <= SIDES; side++) {
		const double angle = WHOLE_TURN * side / SIDES;
		ring[side] = Vector3(real_t(std::cos(angle) * radius), 0, real_t(std::sin(angle) * radius));
	}
	const float *from = places.ptr();
	for (int64_t i = 0; i < count; i++, from += NUMBERS_OF_A_PLACE) {
		const Vector3 low(from[0], from[1], from[2]);
		const Vector3 high = low + Vector3(0, real_t(tall), 0);
		for (int side = 0; side < SIDES; side++) {
			*to++ = low + ring[side];
			*to++ = low + ring[side + 1];
			*to++ = high + ring[side + 1];
			*to++ = low + ring[side];
			*to++ = high + ring[side + 1];
			*to++ = high + ring[side];
		}
		for (int side = 1; side < SIDES - 1; side++) {
			*to++ = high + ring[0];
			*to++ = high + ring[side];
			*to++ = high + ring[side + 1];
		}
	}
	return corners;
}

void BenchBareTerrain::_bind_methods() {
	ClassDB::bind_method(D_METHOD("fill", "numbers"), &BenchBareTerrain::fill);
	ClassDB::bind_method(D_METHOD("plant", "ground", "side", "step", "count", "seed"), &BenchBareTerrain::plant);
	ClassDB::bind_method(D_METHOD("pack", "places"), &BenchBareTerrain::pack);
	ClassDB::bind_method(D_METHOD("make_solid", "places", "radius", "tall"), &BenchBareTerrain::make_solid);
}

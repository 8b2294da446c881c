// Where things stand on a grid of heights. The order of the draws is part of what a seed means: another order is another forest.

#include "terrain/sc_terrain_work.hpp"

#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/templates/local_vector.hpp>

#include "terrain/placed_things.hpp"

namespace {

// What is still planted in seconds, and fits into memory.
constexpr int64_t MOST = 4000000;
constexpr int64_t TRIES_FOR_EACH = 3;
constexpr int64_t THINGS_IN_A_CLUMP = 60;
constexpr int64_t FEWEST_FOR_THAT = 300;
constexpr int64_t CLUMPS_OTHERWISE = 4;
constexpr double SHARE_IN_CLUMPS = 0.85;
constexpr double CLUMP_SPREAD = 6.0;
constexpr double SMALLEST_DRAW = 1.0e-12;
constexpr double RIM = 1.0;
constexpr double NEARLY = 0.999999;

struct Spot {
	double x;
	double z;
};

class Planting {
	const float *heights;
	int64_t side;
	double step;
	double half;
	double rim;
	double steepest;
	// Where the squares of what the ground rises by make less than this it is not too steep, however a root of them is rounded.
	double surely_walked;
	steady::Random random;
	LocalVector<Spot> clumps;

	double draw_across() { return random.share() * 2.0 * half - half; }
	Spot draw_anywhere() {
		const double x = draw_across();
		const double z = draw_across();
		return { x, z };
	}
	// Around the middle of a clump, thinning out.
	Spot draw_in_clump() {
		const Spot &clump = clumps[random.number() % clumps.size()];
		const steady::SineCosine to = steady::sine_cosine(random.share() * steady::TAU);
		const double first = random.share();
		const double second = random.share();
		const double bell = steady::sine_cosine(steady::TAU * second).cosine * std::sqrt(-2.0 * steady::logarithm(MAX(first, SMALLEST_DRAW)));
		const double distance = std::abs(bell * CLUMP_SPREAD);
		return { clump.x + to.cosine * distance, clump.z + to.sine * distance };
	}

public:
	double kept_squared = 0.0;
	double lowest = 0.0;

	Planting(const float *of_heights, int64_t of_side, double of_step, int64_t seed, double at_most_steep) :
			heights(of_heights), side(of_side), step(of_step), half(double(of_side - 1) * of_step / 2.0), rim(half - RIM), steepest(at_most_steep),
			surely_walked(at_most_steep > 0.0 ? at_most_steep * of_step * at_most_steep * of_step * NEARLY : 0.0), random(seed) {}

	void draw_clumps(int64_t count) {
		clumps.reserve(uint32_t(count));
		for (int64_t i = 0; i < count; i++) {
			clumps.push_back(draw_anywhere());
		}
	}

	Spot draw_spot() { return !clumps.is_empty() && random.share() < SHARE_IN_CLUMPS ? draw_in_clump() : draw_anywhere(); }

	bool is_kept_free(const Spot &spot) const { return std::abs(spot.x) > rim || std::abs(spot.z) > rim || spot.x * spot.x + spot.z * spot.z < kept_squared; }

	// False where the ground is too steep, too low or no ground at all.
	bool height_at(const Spot &spot, double &height) const {
		const double across = (spot.x + half) / step;
		const double along = (spot.z + half) / step;
		const int64_t column = CLAMP(int64_t(across), int64_t(0), side - 2);
		const int64_t row = CLAMP(int64_t(along), int64_t(0), side - 2);
		const float *corner = heights + row * side + column;
		const double h00 = corner[0];
		const double h10 = corner[1];
		const double h01 = corner[side];
		const double h11 = corner[side + 1];
		const double near_rise = h10 - h00;
		const double far_rise = h11 - h01;
		const double left_rise = h01 - h00;
		const double right_rise = h11 - h10;
		// What is hardly steep is seen at once; the root takes longer than all the rest.
		const double rises = near_rise * near_rise + far_rise * far_rise + left_rise * left_rise + right_rise * right_rise;
		if (!(rises < surely_walked)) {
			const double rise_across = MAX(std::abs(near_rise), std::abs(far_rise));
			const double rise_along = MAX(std::abs(left_rise), std::abs(right_rise));
			if (std::sqrt(rise_across * rise_across + rise_along * rise_along) / step > steepest) {
				return false;
			}
		}
		const double share_across = across - double(column);
		const double share_along = along - double(row);
		const double near_side = h00 + near_rise * share_across;
		const double far_side = h01 + far_rise * share_across;
		height = near_side + (far_side - near_side) * share_along;
		return std::isfinite(height) && !(lowest > height);
	}

	PlacedThing draw_thing(const Spot &spot, double height) {
		const double scale = random.share() * 0.6 + 0.75;
		const double turn = random.share() * steady::TAU;
		const double shade = random.share();
		return { float(spot.x), float(height), float(spot.z), float(scale), float(turn), float(shade) };
	}
};

} // namespace

PackedFloat32Array SCTerrainWork::place_things(
		const PackedFloat32Array &ground, int64_t side, double step, double per_m2, int64_t seed, double keep, double lowest, double steepest, bool clustered) {
	PackedFloat32Array places;
	if (!(per_m2 > 0.0) || side < 2 || side > ground.size() / side || !(step > 0.0)) {
		return places;
	}
	const double span = double(side - 1) * step;
	const double asked = span * span * per_m2;
	if (!std::isfinite(span * span) || std::isnan(asked)) {
		return places;
	}
	const int64_t target = asked < double(MOST) ? int64_t(asked) : MOST;
	if (asked >= double(MOST + 1)) {
		WARN_PRINT(vformat("Planting %s things is too many, so %d are planted. Plant fewer on a square metre.", String::num(asked, 0), MOST));
	}
	Planting planting(ground.ptr(), side, step, seed, steepest);
	planting.kept_squared = keep * keep;
	planting.lowest = lowest;
	if (clustered) {
		planting.draw_clumps(target >= FEWEST_FOR_THAT ? target / THINGS_IN_A_CLUMP : CLUMPS_OTHERWISE);
	}
	places.resize(target * PlacedThing::NUMBERS);
	float *to = places.ptrw();
	int64_t placed = 0;
	for (int64_t tries = target * TRIES_FOR_EACH; tries > 0 && placed < target; tries--) {
		const Spot spot = planting.draw_spot();
		double height = 0.0;
		if (!planting.is_kept_free(spot) && planting.height_at(spot, height)) {
			planting.draw_thing(spot, height).write(to + placed * PlacedThing::NUMBERS);
			placed++;
		}
	}
	places.resize(placed * PlacedThing::NUMBERS);
	return places;
}

#pragma once

// The record of a thing that stands on a terrain, six numbers one after another in a packed array. To be included last, as what it
// includes is.

#include <godot_cpp/variant/packed_float32_array.hpp>

#include "terrain/steady.hpp"

using namespace godot;

struct PlacedThing {
	static constexpr int64_t NUMBERS = 6;

	// From the middle of the terrain.
	float x = 0.0f;
	float height = 0.0f;
	float z = 0.0f;
	float scale = 0.0f;
	float turn = 0.0f;
	float shade = 0.0f;

	static PlacedThing read(const float *from) { return { from[0], from[1], from[2], from[3], from[4], from[5] }; }
	// One by one: a processor waits for what it has just written in parts and is to read as a whole.
	void write(float *to) const {
		to[0] = x;
		to[1] = height;
		to[2] = z;
		to[3] = scale;
		to[4] = turn;
		to[5] = shade;
	}
	// Whether it stands anywhere at all.
	bool is_sound() const {
		return std::isfinite(x) && std::isfinite(height) && std::isfinite(z) && std::isfinite(scale) && std::isfinite(turn) && std::isfinite(shade);
	}

	// Calls `act` with each sound thing of the list.
	template <class Act>
	static void each(const PackedFloat32Array &places, Act act) {
		const float *from = places.ptr();
		for (int64_t left = places.size() / NUMBERS; left > 0; left--, from += NUMBERS) {
			const PlacedThing thing = read(from);
			if (thing.is_sound()) {
				act(thing);
			}
		}
	}
};

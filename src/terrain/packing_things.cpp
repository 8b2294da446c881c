// Things as the buffers of MultiMeshes, one for each piece of the ground.

#include "terrain/placed_things.hpp"
#include "terrain/sc_terrain_work.hpp"

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/vector2i.hpp>

#include "terrain/steady.hpp"

namespace {

// A transform of three rows by four, and a colour.
constexpr int64_t NUMBERS = 16;
constexpr double FARTHEST_PIECE = 2147483647.0;

struct Piece {
	explicit Piece(const Vector2i &where) : at(where) {}

	Vector2i at;
	int64_t count = 0;
	PackedFloat32Array buffer;
	float *next = nullptr;
};

int32_t piece_along(double place, double piece) {
	return int32_t(CLAMP(std::floor(place / piece), -FARTHEST_PIECE, FARTHEST_PIECE));
}

} // namespace

Dictionary SCTerrainWork::pack_things(const PackedFloat32Array &places, double scale_by, double sink, const Color &colour, double dimmest, double spread,
		const PackedColorArray &palette, double piece) {
	Dictionary packed;
	if (places.is_empty() || !(piece > 0.0)) {
		return packed;
	}
	LocalVector<Piece> pieces;
	HashMap<Vector2i, uint32_t> known;
	LocalVector<uint32_t> piece_of;
	piece_of.reserve(uint32_t(places.size() / PlacedThing::NUMBERS));
	PlacedThing::each(places, [&](const PlacedThing &thing) {
		const Vector2i at(piece_along(thing.x, piece), piece_along(thing.z, piece));
		const uint32_t *seen = known.getptr(at);
		const uint32_t number = seen != nullptr ? *seen : pieces.size();
		if (seen == nullptr) {
			known.insert(at, number);
			pieces.push_back(Piece(at));
		}
		pieces[number].count++;
		piece_of.push_back(number);
	});
	for (Piece &part : pieces) {
		part.buffer.resize(part.count * NUMBERS);
		part.next = part.buffer.ptrw();
	}
	const Color *colours = palette.ptr();
	const int64_t colour_count = dimmest < 0.0 ? palette.size() : 0;
	uint32_t thing_number = 0;
	PlacedThing::each(places, [&](const PlacedThing &thing) {
		const double size = thing.scale * scale_by;
		const steady::SineCosine turned = steady::sine_cosine(thing.turn);
		const double dimmed = thing.shade * spread + dimmest;
		Color tint(float(colour.r * dimmed), float(colour.g * dimmed), float(colour.b * dimmed));
		if (colour_count > 0) {
			const double entry = std::fmod(std::trunc(double(thing.shade) * double(colour_count)), double(colour_count));
			tint = colours[int64_t(MAX(entry, 0.0))];
		}
		const float numbers[NUMBERS] = {
			float(turned.cosine * size), 0.0f, float(turned.sine * size), thing.x, //
			0.0f, float(size), 0.0f, float(thing.height + size * sink), //
			float(-turned.sine * size), 0.0f, float(turned.cosine * size), thing.z, //
			tint.r, tint.g, tint.b, thing.shade, //
		};
		Piece &part = pieces[piece_of[thing_number++]];
		for (const float number : numbers) {
			*part.next++ = number;
		}
	});
	for (const Piece &part : pieces) {
		packed[part.at] = part.buffer;
	}
	return packed;
}

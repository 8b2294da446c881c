// Things as the buffers of MultiMeshes, one for each piece of the ground.

#include "terrain/sc_terrain_work.hpp"

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/vector2i.hpp>

#include "machine/prefetch.hpp"

#include "terrain/placed_things.hpp"

namespace {

// A transform of three rows by four, and a colour.
constexpr int64_t NUMBERS = 16;
// Things of one piece lie far apart in memory; these many of them are on their way at a time.
constexpr uint32_t AHEAD = 8;
constexpr double FARTHEST_PIECE = 2147483647.0;

struct Piece {
	explicit Piece(const Vector2i &where) : at(where) {}

	Vector2i at;
	uint32_t count = 0;
	// Where its things begin among all, then where its next one goes.
	uint32_t next = 0;
};

int32_t piece_along(double place, double piece) {
	const double number = place / piece;
	return int32_t(std::abs(number) < FARTHEST_PIECE ? steady::whole_below(number) : int64_t(std::copysign(FARTHEST_PIECE, number)));
}

// The pieces in the order in which they are first asked for. Those around the first one, where all of an ordinary terrain is, are
// found without a search.
class PieceNumbers {
	static constexpr int64_t REACH = 64;
	static constexpr int64_t SIDE = 2 * REACH;
	static constexpr uint32_t UNKNOWN = UINT32_MAX;
	LocalVector<Piece> &pieces;
	LocalVector<uint32_t> near_ones;
	HashMap<Vector2i, uint32_t> far_ones;
	int64_t left = 0;
	int64_t top = 0;

	uint32_t add(const Vector2i &at) {
		pieces.push_back(Piece(at));
		return pieces.size() - 1;
	}

public:
	explicit PieceNumbers(LocalVector<Piece> &into) : pieces(into) {
		near_ones.resize(uint32_t(SIDE * SIDE));
		for (uint32_t &number : near_ones) {
			number = UNKNOWN;
		}
	}

	uint32_t of(const Vector2i &at) {
		if (pieces.is_empty()) {
			left = at.x - REACH;
			top = at.y - REACH;
		}
		const int64_t column = at.x - left;
		const int64_t row = at.y - top;
		if (column >= 0 && column < SIDE && row >= 0 && row < SIDE) {
			uint32_t &number = near_ones[uint32_t(row * SIDE + column)];
			if (number == UNKNOWN) {
				number = add(at);
			}
			return number;
		}
		const uint32_t *seen = far_ones.getptr(at);
		if (seen != nullptr) {
			return *seen;
		}
		const uint32_t number = add(at);
		far_ones.insert(at, number);
		return number;
	}
};

// What is made of a thing.
struct Look {
	double scale_by;
	double sink;
	Color colour;
	double dimmest;
	double spread;
	const Color *palette;
	// 0 when the colours are not from there.
	int64_t palette_size;

	Color tint_of(const PlacedThing &thing) const {
		if (palette_size > 0) {
			const double entry = std::fmod(std::trunc(double(thing.shade) * double(palette_size)), double(palette_size));
			return palette[int64_t(MAX(entry, 0.0))];
		}
		const double dimmed = thing.shade * spread + dimmest;
		return Color(float(colour.r * dimmed), float(colour.g * dimmed), float(colour.b * dimmed));
	}

	void write(const PlacedThing &thing, float *to) const {
		const double size = thing.scale * scale_by;
		const steady::SineCosine turned = steady::sine_cosine(thing.turn);
		const auto cosine = float(turned.cosine * size);
		const auto sine = float(turned.sine * size);
		const Color tint = tint_of(thing);
		// Number by number, as a processor waits for what it has just written in parts and reads as a whole.
		to[0] = cosine;
		to[1] = 0.0f;
		to[2] = sine;
		to[3] = thing.x;
		to[4] = 0.0f;
		to[5] = float(size);
		to[6] = 0.0f;
		to[7] = float(thing.height + size * sink);
		to[8] = -sine;
		to[9] = 0.0f;
		to[10] = cosine;
		to[11] = thing.z;
		to[12] = tint.r;
		to[13] = tint.g;
		to[14] = tint.b;
		to[15] = thing.shade;
	}
};

} // namespace

Dictionary SCTerrainWork::pack_things(const PackedFloat32Array &places, double scale_by, double sink, const Color &colour, double dimmest, double spread,
		const PackedColorArray &palette, double piece) {
	Dictionary packed;
	if (places.is_empty() || !(piece > 0.0)) {
		return packed;
	}
	const float *from = places.ptr();
	const auto count = uint32_t(places.size() / PlacedThing::NUMBERS);
	LocalVector<Piece> pieces;
	PieceNumbers numbers_of_pieces(pieces);
	constexpr uint32_t NOWHERE = UINT32_MAX;
	LocalVector<uint32_t> held_pieces;
	held_pieces.resize(count);
	uint32_t *piece_of = held_pieces.ptr();
	for (uint32_t i = 0; i < count; i++) {
		const PlacedThing thing = PlacedThing::read(from + int64_t(i) * PlacedThing::NUMBERS);
		piece_of[i] = NOWHERE;
		if (thing.is_sound()) {
			piece_of[i] = numbers_of_pieces.of(Vector2i(piece_along(thing.x, piece), piece_along(thing.z, piece)));
			pieces[piece_of[i]].count++;
		}
	}
	uint32_t sound = 0;
	for (Piece &part : pieces) {
		part.next = sound;
		sound += part.count;
	}
	// Piece by piece, so that what is written lies in one row: it is more than what is read.
	LocalVector<uint32_t> held_order;
	held_order.resize(sound);
	uint32_t *in_order = held_order.ptr();
	Piece *first_piece = pieces.ptr();
	for (uint32_t i = 0; i < count; i++) {
		if (piece_of[i] != NOWHERE) {
			in_order[first_piece[piece_of[i]].next++] = i;
		}
	}
	const Look look = { scale_by, sink, colour, dimmest, spread, palette.ptr(), dimmest < 0.0 ? palette.size() : 0 };
	for (const Piece &part : pieces) {
		PackedFloat32Array buffer;
		buffer.resize(int64_t(part.count) * NUMBERS);
		float *to = buffer.ptrw();
		for (uint32_t i = part.next - part.count; i < part.next; i++, to += NUMBERS) {
			prefetch(from + int64_t(in_order[MIN(i + AHEAD, sound - 1)]) * PlacedThing::NUMBERS);
			look.write(PlacedThing::read(from + int64_t(in_order[i]) * PlacedThing::NUMBERS), to);
		}
		packed[part.at] = buffer;
	}
	return packed;
}

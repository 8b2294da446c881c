#pragma once

// Values as a saved game holds them: in the engine's own form of JSON, which tells a whole number from a fraction and a place from a
// list. What belongs to the game that runs now, such as a node or a Callable, is not kept, and no file brings one into being.

#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace saved_values {

// A file takes no more; larger ones would not be read again.
inline constexpr int64_t MOST_LETTERS = 128 * 1024 * 1024;

// False for what no file can keep: a node or another object, a Callable, a Signal or an RID, on its own or anywhere within; what
// contains itself or is nested too deep; what is too large; a place of which a part is no number or endless.
// `letters` grows by as many as it takes at least.
bool encode(const Variant &value, Variant &encoded, int64_t &letters);

// As a file that was saved looks at its beginning; what is in it may still be broken.
bool looks_encoded(const Variant &json);

enum Answer {
	DECODED,
	// In order, but of an object or of what else belongs to the game that saved it.
	REFUSED,
	BROKEN,
};
Answer decode(const Variant &json, Variant &value);

// A loaded value as the kind of value that `now` is, nil when it cannot be.
Variant fitted_to(const Variant &now, const Variant &loaded);

} // namespace saved_values

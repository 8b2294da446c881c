#include "kinds/scene/save_text.hpp"

#include <godot_cpp/core/math.hpp>

#include <cstring>

namespace {

bool is_digit(uint8_t letter) {
	return letter >= '0' && letter <= '9';
}

class Scan {
	const uint8_t *at;
	const uint8_t *end;
	int levels = 0;
	bool is_within_text = false;

	bool take(uint32_t count) {
		at += count;
		return true;
	}

	// One letter of more than a byte.
	bool take_letter() {
		const uint8_t first = *at;
		const int length = first >= 0xF0 ? 4 : (first >= 0xE0 ? 3 : 2);
		if (first < 0xC2 || first > 0xF4 || end - at < length) {
			return false;
		}
		uint32_t letter = first & (0xFFU >> (length + 1));
		for (int i = 1; i < length; i++) {
			if ((at[i] & 0xC0) != 0x80) {
				return false;
			}
			letter = (letter << 6) | (at[i] & 0x3FU);
		}
		const uint32_t least = length == 4 ? 0x10000 : (length == 3 ? 0x800 : 0x80);
		return letter >= least && letter <= 0x10FFFF && (letter < 0xD800 || letter > 0xDFFF) && take(uint32_t(length));
	}

	// Letters of a text that mean nothing but themselves.
	bool take_plain() {
		if (*at == 0) {
			return false;
		}
		while (at < end && *at != 0 && *at < 0x80 && *at != '"' && *at != '\\') {
			at++;
		}
		return true;
	}

	bool take_escape() {
		if (end - at < 2 || at[1] == 0 || (at[1] == 'u' && (end - at < 6 || memcmp(at + 2, "0000", 4) == 0))) {
			return false;
		}
		return take(at[1] < 0x80 ? 2 : 1);
	}

	// A number, or what is left of one.
	bool take_number() {
		const uint8_t *begin = at;
		while (at < end && (is_digit(*at) || *at == '.')) {
			at++;
		}
		const int64_t places = at - begin;
		if (at == end || (*at != 'e' && *at != 'E')) {
			return places <= save_text::MOST_PLACES;
		}
		at++;
		if (at < end && (*at == '-' || *at == '+')) {
			at++;
		}
		int64_t exponent = 0;
		while (at < end && is_digit(*at)) {
			exponent = MIN(exponent * 10 + (*at++ - '0'), save_text::MOST_PLACES + 1);
		}
		return places + exponent <= save_text::MOST_PLACES;
	}

	bool take_one() {
		const uint8_t letter = *at;
		if (letter >= 0x80) {
			return take_letter();
		}
		if (letter == '"') {
			is_within_text = !is_within_text;
			return take(1);
		}
		if (is_within_text) {
			return letter == '\\' ? take_escape() : take_plain();
		}
		if (letter == '{' || letter == '[') {
			return ++levels <= save_text::MOST_LEVELS && take(1);
		}
		if (letter == '}' || letter == ']') {
			return --levels >= 0 && take(1);
		}
		return is_digit(letter) ? take_number() : (letter != 0 && take(1));
	}

	void skip_mark_and_spaces() {
		if (end - at >= 3 && at[0] == 0xEF && at[1] == 0xBB && at[2] == 0xBF) {
			at += 3;
		}
		while (at < end && *at != 0 && *at <= ' ') {
			at++;
		}
	}

public:
	explicit Scan(const PackedByteArray &text) : at(text.ptr()), end(text.ptr() + text.size()) {}

	bool is_sound() {
		skip_mark_and_spaces();
		if (at == end || *at != '{') {
			return false;
		}
		while (at < end) {
			if (!take_one()) {
				return false;
			}
		}
		return levels == 0 && !is_within_text;
	}
};

// Calls back for each backslash that begins an escape, with the letter behind it.
template <class Each>
void each_escape(const PackedByteArray &text, Each each) {
	if (text.is_empty()) {
		return;
	}
	const uint8_t *bytes = text.ptr();
	const uint8_t *last = bytes + text.size() - 1;
	const uint8_t *at = bytes;
	while (at < last) {
		at = static_cast<const uint8_t *>(memchr(at, '\\', size_t(last - at)));
		if (at == nullptr) {
			return;
		}
		each(at - bytes, at[1]);
		at += 2;
	}
}

} // namespace

namespace save_text {

bool is_sound(const PackedByteArray &text) {
	return Scan(text).is_sound();
}

PackedByteArray readable(const PackedByteArray &text) {
	static constexpr char INSTEAD[] = "u000b";
	constexpr int64_t LONGER = sizeof(INSTEAD) - 2;
	int64_t count = 0;
	each_escape(text, [&](int64_t, uint8_t letter) { count += letter == 'v' ? 1 : 0; });
	if (count == 0) {
		return text;
	}
	PackedByteArray answer;
	answer.resize(text.size() + count * LONGER);
	uint8_t *to = answer.ptrw();
	int64_t copied = 0;
	const auto copy_until = [&](int64_t until) {
		memcpy(to, text.ptr() + copied, size_t(until - copied));
		to += until - copied;
		copied = until;
	};
	each_escape(text, [&](int64_t at, uint8_t letter) {
		if (letter == 'v') {
			copy_until(at + 1);
			memcpy(to, INSTEAD, sizeof(INSTEAD) - 1);
			to += sizeof(INSTEAD) - 1;
			copied++;
		}
	});
	copy_until(text.size());
	return answer;
}

} // namespace save_text

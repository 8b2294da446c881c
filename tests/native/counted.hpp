// A value that knows how many of its kind are alive, owns memory, and notices when it is used after its end.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

struct Counted {
	static inline int alive = 0;

	// Long enough to live on the heap, so that a lost or doubled destructor shows under a sanitizer too.
	std::string text;
	const Counted *self = this;

	Counted(int number = 0) : text("a text that is longer than the string's own buffer, number " + std::to_string(number)) { alive++; }
	Counted(const Counted &other) : text(other.text) {
		other.check();
		alive++;
	}
	Counted(Counted &&other) noexcept : text(std::move(other.text)) {
		other.check();
		alive++;
	}
	Counted &operator=(const Counted &other) {
		check();
		other.check();
		text = other.text;
		return *this;
	}
	Counted &operator=(Counted &&other) noexcept {
		check();
		other.check();
		text = std::move(other.text);
		return *this;
	}
	~Counted() {
		check();
		self = nullptr;
		alive--;
	}

	bool operator==(const Counted &other) const { return text == other.text; }
	int number() const { return std::atoi(text.c_str() + text.rfind(' ') + 1); }
	uint32_t hash() const { return uint32_t(number()) * 7; }

	// Bytes moved without the constructors would leave `self` behind.
	void check() const {
		if (self != this) {
			std::abort();
		}
	}
};

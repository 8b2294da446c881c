#ifndef GODOT_CPP_VARIANT_CHAR_STRING_HPP
#define GODOT_CPP_VARIANT_CHAR_STRING_HPP

// Encoded text as C code wants it: what String::utf8(), ascii(), utf16(), utf32() and wide_string() return. Owns a
// zero-terminated buffer; size() counts the terminator, length() does not.

#include <cstddef>
#include <cstdint>

namespace godot {

template <typename T>
class CharStringT {
	T *data = nullptr;
	int64_t count = 0;

public:
	CharStringT() = default;
	CharStringT(const T *p_text);
	CharStringT(const CharStringT &p_other);
	CharStringT(CharStringT &&p_other) noexcept;
	~CharStringT();
	CharStringT &operator=(const T *p_text);
	CharStringT &operator=(const CharStringT &p_other);
	CharStringT &operator=(CharStringT &&p_other) noexcept;

	int64_t size() const { return count; }
	int64_t length() const { return count ? count - 1 : 0; }
	bool is_empty() const { return length() == 0; }

	// The size counts the terminator, which is the caller's to write.
	void resize(int64_t p_size);

	const T *ptr() const { return data; }
	T *ptrw() { return data; }
	const T *get_data() const;
	operator const T *() const { return get_data(); }

	const T &operator[](int64_t p_index) const;
	T &operator[](int64_t p_index);

	bool operator==(const CharStringT &p_other) const;
	bool operator!=(const CharStringT &p_other) const { return !(*this == p_other); }
	bool operator<(const CharStringT &p_other) const;
	CharStringT &operator+=(T p_char);
};

extern template class CharStringT<char>;
extern template class CharStringT<char16_t>;
extern template class CharStringT<char32_t>;
extern template class CharStringT<wchar_t>;

using CharString = CharStringT<char>;
using Char16String = CharStringT<char16_t>;
using Char32String = CharStringT<char32_t>;
using CharWideString = CharStringT<wchar_t>;

} // namespace godot

#endif // GODOT_CPP_VARIANT_CHAR_STRING_HPP

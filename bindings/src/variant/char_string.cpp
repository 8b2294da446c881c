#include <godot_cpp/variant/char_string.hpp>

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/variant/opaque_value.hpp>

#include <cstring>
#include <string>
#include <utility>

namespace godot {

template <typename T>
CharStringT<T>::CharStringT(const T *p_text) {
	if (p_text && p_text[0]) {
		resize(int64_t(std::char_traits<T>::length(p_text)) + 1);
		if (data) {
			memcpy(data, p_text, size_t(count) * sizeof(T));
		}
	}
}

template <typename T>
CharStringT<T>::CharStringT(const CharStringT &p_other) {
	resize(p_other.count);
	if (data) {
		memcpy(data, p_other.data, size_t(count) * sizeof(T));
	}
}

template <typename T>
CharStringT<T>::CharStringT(CharStringT &&p_other) noexcept : data(std::exchange(p_other.data, nullptr)), count(std::exchange(p_other.count, 0)) {}

template <typename T>
CharStringT<T>::~CharStringT() {
	resize(0);
}

template <typename T>
CharStringT<T> &CharStringT<T>::operator=(const T *p_text) {
	return *this = CharStringT(p_text);
}

template <typename T>
CharStringT<T> &CharStringT<T>::operator=(const CharStringT &p_other) {
	return *this = CharStringT(p_other);
}

template <typename T>
CharStringT<T> &CharStringT<T>::operator=(CharStringT &&p_other) noexcept {
	CharStringT taken(std::move(p_other));
	std::swap(data, taken.data);
	std::swap(count, taken.count);
	return *this;
}

template <typename T>
void CharStringT<T>::resize(int64_t p_size) {
	if (p_size <= 0) {
		if (data) {
			memfree(data);
		}
		data = nullptr;
		count = 0;
		return;
	}
	if (p_size == count) {
		return;
	}
	const size_t bytes = size_t(p_size) * sizeof(T);
	T *resized = static_cast<T *>(data ? memrealloc(data, bytes) : memalloc(bytes));
	if (!resized) {
		return;
	}
	data = resized;
	if (p_size > count) {
		memset(data + count, 0, size_t(p_size - count) * sizeof(T));
	}
	count = p_size;
}

template <typename T>
const T *CharStringT<T>::get_data() const {
	static const T empty[1] = {};
	return data ? data : empty;
}

template <typename T>
const T &CharStringT<T>::operator[](int64_t p_index) const {
	if (p_index >= 0 && p_index < count) {
		return data[p_index];
	}
	internal::report_index_out_of_bounds(GDEXTENSION_VARIANT_TYPE_STRING, p_index, count);
	return internal::out_of_bounds_value<T>();
}

template <typename T>
T &CharStringT<T>::operator[](int64_t p_index) {
	return const_cast<T &>(std::as_const(*this)[p_index]);
}

template <typename T>
bool CharStringT<T>::operator==(const CharStringT &p_other) const {
	return length() == p_other.length() && std::char_traits<T>::compare(get_data(), p_other.get_data(), size_t(length())) == 0;
}

template <typename T>
bool CharStringT<T>::operator<(const CharStringT &p_other) const {
	const int64_t shared = length() < p_other.length() ? length() : p_other.length();
	const int order = std::char_traits<T>::compare(get_data(), p_other.get_data(), size_t(shared));
	return order != 0 ? order < 0 : length() < p_other.length();
}

template <typename T>
CharStringT<T> &CharStringT<T>::operator+=(T p_char) {
	const int64_t end = length();
	resize(end + 2);
	if (count == end + 2) {
		data[end] = p_char;
		data[end + 1] = 0;
	}
	return *this;
}

template class CharStringT<char>;
template class CharStringT<char16_t>;
template class CharStringT<char32_t>;
template class CharStringT<wchar_t>;

} // namespace godot

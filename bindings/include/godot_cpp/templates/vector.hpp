// An array that is cheap to copy: copies share their elements until one of them is changed. For values handed around; bookkeeping with one owner
// uses LocalVector.
#ifndef GODOT_CPP_TEMPLATES_VECTOR_HPP
#define GODOT_CPP_TEMPLATES_VECTOR_HPP

#include <godot_cpp/templates/cowdata.hpp>
#include <godot_cpp/templates/sort_array.hpp>

#include <initializer_list>
#include <utility>

namespace godot {

template <typename T>
class Vector;

// `vector.write[i] = x`: changing is asked for by name, so that reading never copies.
template <typename T>
class VectorWriteProxy {
	friend class Vector<T>;

	VectorWriteProxy() = default;
	VectorWriteProxy(const VectorWriteProxy &) = default;
	VectorWriteProxy &operator=(const VectorWriteProxy &) = default;

public:
	T &operator[](int64_t index);
};

template <typename T>
class Vector {
	friend class VectorWriteProxy<T>;

public:
	using Size = int64_t;

	// Has to stay the first member: the proxy finds its vector by its own address.
	VectorWriteProxy<T> write;

private:
	CowData<T> data;

public:
	Vector() = default;
	Vector(std::initializer_list<T> elements) {
		if (data.resize(Size(elements.size())) == OK) {
			T *to = data.ptrw();
			for (const T &element : elements) {
				*to++ = element;
			}
		}
	}
	Vector(const Vector &other) :
			data(other.data) {}
	Vector(Vector &&other) noexcept :
			data(std::move(other.data)) {}
	Vector &operator=(const Vector &other) {
		data = other.data;
		return *this;
	}
	Vector &operator=(Vector &&other) noexcept {
		data = std::move(other.data);
		return *this;
	}

	Size size() const { return data.size(); }
	bool is_empty() const { return data.size() == 0; }
	const T *ptr() const { return data.ptr(); }
	T *ptrw() { return data.ptrw(); }
	void clear() { data.clear(); }
	Error resize(Size new_size) { return data.resize(new_size); }
	Error resize_zeroed(Size new_size) { return data.resize(new_size); }

	const T &operator[](Size index) const {
		CRASH_BAD_INDEX(index, size());
		return data.ptr()[index];
	}
	const T &get(Size index) const { return (*this)[index]; }
	void set(Size index, const T &element) {
		ERR_FAIL_INDEX(index, size());
		// Making the block ours may end the one that the argument lies in.
		T value = element;
		data.ptrw()[index] = std::move(value);
	}

	bool push_back(T element) {
		const Size at = size();
		if (data.resize(at + 1) != OK) {
			return true;
		}
		data.ptrw()[at] = std::move(element);
		return false;
	}
	bool append(T element) { return push_back(std::move(element)); }
	void append_array(const Vector &other) {
		const Vector source = other;
		const Size at = size();
		if (source.is_empty() || data.resize(at + source.size()) != OK) {
			return;
		}
		T *to = data.ptrw() + at;
		for (const T &element : source) {
			*to++ = element;
		}
	}
	Error insert(Size position, T element) {
		ERR_FAIL_INDEX_V(position, size() + 1, ERR_INVALID_PARAMETER);
		const Error error = data.resize(size() + 1);
		ERR_FAIL_COND_V(error != OK, error);
		T *to = data.ptrw();
		for (Size i = size() - 1; i > position; i--) {
			to[i] = std::move(to[i - 1]);
		}
		to[position] = std::move(element);
		return OK;
	}
	void ordered_insert(const T &element) {
		Size position = 0;
		while (position < size() && !(element < (*this)[position])) {
			position++;
		}
		insert(position, element);
	}

	void remove_at(Size index) {
		ERR_FAIL_INDEX(index, size());
		T *to = data.ptrw();
		T removed = std::move(to[index]);
		for (Size i = index + 1; i < size(); i++) {
			to[i - 1] = std::move(to[i]);
		}
		data.resize(size() - 1);
	}
	bool erase(const T &value) {
		const Size index = find(value);
		if (index < 0) {
			return false;
		}
		remove_at(index);
		return true;
	}

	Size find(const T &value, Size from = 0) const {
		for (Size i = MAX(from, Size(0)); i < size(); i++) {
			if (data.ptr()[i] == value) {
				return i;
			}
		}
		return -1;
	}
	Size rfind(const T &value, Size from = -1) const {
		for (Size i = from < 0 ? size() + from : MIN(from, size() - 1); i >= 0; i--) {
			if (data.ptr()[i] == value) {
				return i;
			}
		}
		return -1;
	}
	Size count(const T &value) const {
		Size found = 0;
		for (const T &element : *this) {
			found += element == value ? 1 : 0;
		}
		return found;
	}
	bool has(const T &value) const { return find(value) >= 0; }
	// Where the value is or would go, in a sorted vector.
	Size bsearch(const T &value, bool before) const {
		Size low = 0;
		Size high = size();
		while (low < high) {
			const Size middle = low + (high - low) / 2;
			const T &element = data.ptr()[middle];
			if (before ? element < value : !(value < element)) {
				low = middle + 1;
			} else {
				high = middle;
			}
		}
		return low;
	}

	void fill(const T &value) {
		const T element = value;
		for (T &each : *this) {
			each = element;
		}
	}
	void reverse() {
		T *at = ptrw();
		for (Size i = 0; i < size() / 2; i++) {
			std::swap(at[i], at[size() - i - 1]);
		}
	}
	template <typename C>
	void sort_custom() { SortArray<T, C>().sort(ptrw(), size()); }
	void sort() { sort_custom<_DefaultComparator<T>>(); }

	Vector duplicate() const { return *this; }
	Vector slice(Size from, Size to = INT64_MAX) const {
		const Size length = size();
		from = CLAMP(from < 0 ? from + length : from, Size(0), length);
		to = CLAMP(to < 0 ? to + length : to, Size(0), length);
		Vector result;
		ERR_FAIL_COND_V(from > to, result);
		if (result.resize(to - from) == OK) {
			T *at = result.ptrw();
			for (Size i = from; i < to; i++) {
				*at++ = data.ptr()[i];
			}
		}
		return result;
	}

	bool operator==(const Vector &other) const {
		if (size() != other.size()) {
			return false;
		}
		if (ptr() == other.ptr()) {
			return true;
		}
		for (Size i = 0; i < size(); i++) {
			if (data.ptr()[i] != other.data.ptr()[i]) {
				return false;
			}
		}
		return true;
	}
	bool operator!=(const Vector &other) const { return !(*this == other); }

	T *begin() { return ptrw(); }
	T *end() { return ptrw() + size(); }
	const T *begin() const { return ptr(); }
	const T *end() const { return ptr() + size(); }
};

template <typename T>
T &VectorWriteProxy<T>::operator[](int64_t index) {
	Vector<T> *vector = reinterpret_cast<Vector<T> *>(this);
	CRASH_BAD_INDEX(index, vector->size());
	return vector->ptrw()[index];
}

} // namespace godot

#endif // GODOT_CPP_TEMPLATES_VECTOR_HPP

// A growing array with one owner, for runtime bookkeeping. Growing moves the elements: pointers into it last until the next insertion.
#ifndef GODOT_CPP_TEMPLATES_LOCAL_VECTOR_HPP
#define GODOT_CPP_TEMPLATES_LOCAL_VECTOR_HPP

#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/templates/sort_array.hpp>

#include <initializer_list>
#include <type_traits>
#include <utility>

namespace godot {

// `force_trivial` leaves elements unconstructed and undestroyed; `tight` grows by no more than is asked for.
template <typename T, typename U = uint32_t, bool force_trivial = false, bool tight = false>
class LocalVector {
	static_assert(!force_trivial || std::is_trivially_destructible_v<T>, "Only elements that need no destructor can go without it.");

	U count = 0;
	U capacity = 0;
	T *data = nullptr;

public:
	using Size = U;

	LocalVector() = default;
	LocalVector(std::initializer_list<T> elements) {
		reserve(U(elements.size()));
		for (const T &element : elements) {
			push_back(element);
		}
	}
	explicit LocalVector(const LocalVector &other) { append_copies(other.data, other.count); }
	LocalVector(LocalVector &&other) noexcept { swap(other); }
	LocalVector &operator=(const LocalVector &other) {
		if (this != &other) {
			clear();
			append_copies(other.data, other.count);
		}
		return *this;
	}
	LocalVector &operator=(LocalVector &&other) noexcept {
		if (this != &other) {
			LocalVector old(std::move(*this));
			swap(other);
		}
		return *this;
	}
	~LocalVector() { reset(); }

	T *ptr() { return data; }
	const T *ptr() const { return data; }
	U size() const { return count; }
	U get_capacity() const { return capacity; }
	bool is_empty() const { return count == 0; }

	const T &operator[](U index) const {
		CRASH_BAD_UNSIGNED_INDEX(index, count);
		return data[index];
	}
	T &operator[](U index) {
		CRASH_BAD_UNSIGNED_INDEX(index, count);
		return data[index];
	}

	void push_back(T element) {
		if (unlikely(count == capacity)) {
			set_capacity(grown_to(count + 1));
		}
		new (static_cast<void *>(data + count)) T(std::move(element));
		count++;
	}
	void pop_back() {
		ERR_FAIL_COND(count == 0);
		resize_down(count - 1);
	}

	void insert(U position, T element) {
		ERR_FAIL_UNSIGNED_INDEX(position, count + 1);
		push_back(std::move(element));
		for (U i = count - 1; i > position; i--) {
			std::swap(data[i], data[i - 1]);
		}
	}
	void ordered_insert(T element) {
		U position = 0;
		while (position < count && !(element < data[position])) {
			position++;
		}
		insert(position, std::move(element));
	}

	void remove_at(U index) {
		ERR_FAIL_UNSIGNED_INDEX(index, count);
		// Kept until the array is whole again: its destructor may run code that looks at this array.
		T removed = std::move(data[index]);
		for (U i = index + 1; i < count; i++) {
			data[i - 1] = std::move(data[i]);
		}
		resize_down(count - 1);
	}
	// Quicker: the last element takes the place.
	void remove_at_unordered(U index) {
		ERR_FAIL_UNSIGNED_INDEX(index, count);
		T removed = std::move(data[index]);
		if (index != count - 1) {
			data[index] = std::move(data[count - 1]);
		}
		resize_down(count - 1);
	}
	bool erase(const T &value) {
		const int64_t index = find(value);
		if (index < 0) {
			return false;
		}
		remove_at(U(index));
		return true;
	}
	bool erase_unordered(const T &value) {
		const int64_t index = find(value);
		if (index < 0) {
			return false;
		}
		remove_at_unordered(U(index));
		return true;
	}
	U erase_multiple_unordered(const T &value) {
		// The argument may be an element, which goes with the first hit.
		const T wanted = value;
		U erased = 0;
		for (U i = 0; i < count;) {
			if (data[i] == wanted) {
				remove_at_unordered(i);
				erased++;
			} else {
				i++;
			}
		}
		return erased;
	}

	void reverse() {
		for (U i = 0; i < count / 2; i++) {
			std::swap(data[i], data[count - i - 1]);
		}
	}
	void invert() { reverse(); }

	// clear keeps the room; reset gives it back.
	void clear() { resize_down(0); }
	void reset() {
		clear();
		if (data != nullptr && count == 0) {
			memfree(data);
			data = nullptr;
			capacity = 0;
		}
	}
	void reserve(U size) {
		if (size > capacity) {
			set_capacity(size);
		}
	}
	void resize(U size) {
		reserve_for_resize(size);
		for (; count < size; count++) {
			if constexpr (!force_trivial) {
				new (static_cast<void *>(data + count)) T();
			}
		}
	}
	void resize_initialized(U size) { resize(size); }
	void resize_uninitialized(U size) {
		static_assert(std::is_trivially_destructible_v<T>, "resize_uninitialized is for plain elements.");
		reserve_for_resize(size);
		count = size;
	}

	int64_t find(const T &value, U from = 0) const {
		for (U i = from; i < count; i++) {
			if (data[i] == value) {
				return int64_t(i);
			}
		}
		return -1;
	}
	bool has(const T &value) const { return find(value) >= 0; }

	template <typename C>
	void sort_custom() {
		SortArray<T, C>().sort(data, int64_t(count));
	}
	void sort() { sort_custom<_DefaultComparator<T>>(); }

	T *begin() { return data; }
	T *end() { return data + count; }
	const T *begin() const { return data; }
	const T *end() const { return data + count; }

	void swap(LocalVector &other) {
		std::swap(count, other.count);
		std::swap(capacity, other.capacity);
		std::swap(data, other.data);
	}

private:
	void append_copies(const T *from, U length) {
		reserve(count + length);
		for (U i = 0; i < length; i++) {
			new (static_cast<void *>(data + count)) T(from[i]);
			count++;
		}
	}

	U grown_to(U wanted) const {
		if constexpr (tight) {
			return wanted;
		} else {
			const U doubled = capacity + (capacity > 4 ? capacity / 2 : U(4));
			return doubled > wanted ? doubled : wanted;
		}
	}

	void reserve_for_resize(U size) {
		if (size < count) {
			resize_down(size);
		} else if (size > capacity) {
			set_capacity(grown_to(size));
		}
	}

	void resize_down(U size) {
		if constexpr (std::is_trivially_destructible_v<T>) {
			count = size;
		} else {
			while (count > size) {
				count--;
				data[count].~T();
			}
		}
	}

	void set_capacity(U size) {
		static_assert(alignof(T) <= 16, "The allocator gives no stricter alignment.");
		CRASH_COND_MSG(size < count || size_t(size) > SIZE_MAX / sizeof(T), "Out of memory");
		if constexpr (std::is_trivially_copyable_v<T>) {
			T *room = static_cast<T *>(memrealloc(data, size_t(size) * sizeof(T)));
			CRASH_COND_MSG(room == nullptr, "Out of memory");
			data = room;
		} else {
			T *room = static_cast<T *>(memalloc(size_t(size) * sizeof(T)));
			CRASH_COND_MSG(room == nullptr, "Out of memory");
			for (U i = 0; i < count; i++) {
				new (static_cast<void *>(room + i)) T(std::move(data[i]));
				data[i].~T();
			}
			if (data != nullptr) {
				memfree(data);
			}
			data = room;
		}
		capacity = size;
	}
};

template <typename T, typename U = uint32_t, bool force_trivial = false>
using TightLocalVector = LocalVector<T, U, force_trivial, true>;

} // namespace godot

#endif // GODOT_CPP_TEMPLATES_LOCAL_VECTOR_HPP

// Sorting in place, for the containers. The order of equal elements is not kept. A comparator that contradicts itself (a script's may) gives some
// order, and never reaches outside the array.
#ifndef GODOT_CPP_TEMPLATES_SORT_ARRAY_HPP
#define GODOT_CPP_TEMPLATES_SORT_ARRAY_HPP

#include <godot_cpp/core/defs.hpp>

#include <cstdint>
#include <utility>

namespace godot {

template <typename T>
struct _DefaultComparator {
	bool operator()(const T &a, const T &b) const { return a < b; }
};

template <typename T, typename Comparator = _DefaultComparator<T>, bool Validate = false>
class SortArray {
public:
	Comparator compare;

	void sort(T *array, int64_t length) const {
		int depth = 0;
		for (int64_t n = length; n > 1; n >>= 1) {
			depth += 2;
		}
		sort_range(array, 0, length, depth);
	}

private:
	// Below this length plain insertion is quicker.
	static constexpr int64_t SHORT = 16;

	void sort_range(T *array, int64_t first, int64_t end, int depth) const {
		while (end - first > SHORT) {
			// Too many bad splits: the heap's time does not depend on luck.
			if (depth-- == 0) {
				heap_sort(array + first, end - first);
				return;
			}
			const int64_t middle = split(array, first, end);
			sort_range(array, middle, end, depth);
			end = middle;
		}
		insertion_sort(array, first, end);
	}

	// Returns where the upper part begins; both parts are never empty.
	int64_t split(T *array, int64_t first, int64_t end) const {
		const T pivot = median(array[first], array[first + (end - first) / 2], array[end - 1]);
		int64_t low = first;
		int64_t high = end - 1;
		while (true) {
			while (low < end - 1 && compare(array[low], pivot)) {
				low++;
			}
			while (high > first && compare(pivot, array[high])) {
				high--;
			}
			if (low >= high) {
				return low == first ? first + 1 : low;
			}
			std::swap(array[low++], array[high--]);
		}
	}

	const T &median(const T &a, const T &b, const T &c) const {
		if (compare(a, b)) {
			return compare(b, c) ? b : (compare(a, c) ? c : a);
		}
		return compare(a, c) ? a : (compare(b, c) ? c : b);
	}

	void insertion_sort(T *array, int64_t first, int64_t end) const {
		for (int64_t i = first + 1; i < end; i++) {
			T value = std::move(array[i]);
			int64_t at = i;
			while (at > first && compare(value, array[at - 1])) {
				array[at] = std::move(array[at - 1]);
				at--;
			}
			array[at] = std::move(value);
		}
	}

	void heap_sort(T *array, int64_t length) const {
		for (int64_t root = length / 2 - 1; root >= 0; root--) {
			sift_down(array, root, length);
		}
		for (int64_t end = length - 1; end > 0; end--) {
			std::swap(array[0], array[end]);
			sift_down(array, 0, end);
		}
	}

	void sift_down(T *array, int64_t root, int64_t length) const {
		for (int64_t child = 2 * root + 1; child < length; child = 2 * root + 1) {
			if (child + 1 < length && compare(array[child], array[child + 1])) {
				child++;
			}
			if (!compare(array[root], array[child])) {
				return;
			}
			std::swap(array[root], array[child]);
			root = child;
		}
	}
};

} // namespace godot

#endif // GODOT_CPP_TEMPLATES_SORT_ARRAY_HPP

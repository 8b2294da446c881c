// The shared block behind Vector: copies share it, and the first change through one of them gives that one its own.
#ifndef GODOT_CPP_TEMPLATES_COWDATA_HPP
#define GODOT_CPP_TEMPLATES_COWDATA_HPP

#include <godot_cpp/classes/global_constants.hpp>
#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/templates/safe_refcount.hpp>

#include <cstdint>
#include <type_traits>
#include <utility>

namespace godot {

template <typename T>
class CowData {
public:
	using Size = int64_t;

private:
	struct alignas(16) Header {
		SafeRefCount users;
		Size size = 0;
		Size capacity = 0;
	};
	static_assert(alignof(T) <= 16, "The allocator gives no stricter alignment.");

	static constexpr Size MAX_SIZE = Size((uint64_t(INT64_MAX) - sizeof(Header)) / sizeof(T));

	Header *block = nullptr;

	static T *elements(Header *of) { return reinterpret_cast<T *>(of + 1); }

	static Header *make(Size capacity) {
		Header *made = static_cast<Header *>(memalloc(sizeof(Header) + size_t(capacity) * sizeof(T)));
		ERR_FAIL_NULL_V(made, nullptr);
		new (made) Header();
		made->users.init();
		made->capacity = capacity;
		return made;
	}

	static void destroy(T *from, Size length) {
		if constexpr (!std::is_trivially_destructible_v<T>) {
			for (Size i = 0; i < length; i++) {
				from[i].~T();
			}
		}
	}

	void release() {
		Header *held = block;
		block = nullptr;
		if (held != nullptr && held->users.unref()) {
			destroy(elements(held), held->size);
			held->~Header();
			memfree(held);
		}
	}

	// Makes the block ours alone, with room for `capacity` elements; keeps at most that many.
	bool own(Size capacity) {
		const bool alone = block != nullptr && block->users.get() == 1;
		if (alone && capacity <= block->capacity) {
			return true;
		}
		Header *made = make(capacity);
		if (made == nullptr) {
			return false;
		}
		const Size kept = MIN(size(), capacity);
		for (Size i = 0; i < kept; i++) {
			if (alone) {
				new (static_cast<void *>(elements(made) + i)) T(std::move(elements(block)[i]));
			} else {
				new (static_cast<void *>(elements(made) + i)) T(elements(block)[i]);
			}
		}
		made->size = kept;
		release();
		block = made;
		return true;
	}

public:
	CowData() = default;
	CowData(const CowData &other) { share(other); }
	CowData(CowData &&other) noexcept :
			block(std::exchange(other.block, nullptr)) {}
	CowData &operator=(const CowData &other) {
		if (block != other.block) {
			CowData old(std::move(*this));
			share(other);
		}
		return *this;
	}
	CowData &operator=(CowData &&other) noexcept {
		if (this != &other) {
			CowData old(std::move(*this));
			block = std::exchange(other.block, nullptr);
		}
		return *this;
	}
	~CowData() { release(); }

	Size size() const { return block ? block->size : 0; }
	const T *ptr() const { return block ? elements(block) : nullptr; }
	T *ptrw() { return block && own(block->size) ? elements(block) : nullptr; }
	void clear() { release(); }

	Error resize(Size new_size) {
		ERR_FAIL_COND_V(new_size < 0, ERR_INVALID_PARAMETER);
		ERR_FAIL_COND_V(new_size > MAX_SIZE, ERR_OUT_OF_MEMORY);
		if (new_size == 0) {
			release();
			return OK;
		}
		const Size old_size = size();
		if (new_size == old_size) {
			return OK;
		}
		const Size room = block ? block->capacity : 0;
		Size wanted = new_size;
		if (old_size > 0 && new_size > room) {
			wanted = MAX(new_size, MIN(MAX_SIZE, old_size + old_size / 2));
		}
		if (!own(wanted)) {
			return ERR_OUT_OF_MEMORY;
		}
		if (new_size < old_size) {
			// When the block was shared, the copy that was just made has no surplus left.
			const Size have = block->size;
			block->size = new_size;
			destroy(elements(block) + new_size, have - new_size);
		} else {
			while (block->size < new_size) {
				new (static_cast<void *>(elements(block) + block->size)) T();
				block->size++;
			}
		}
		return OK;
	}

	void share(const CowData &other) {
		if (other.block != nullptr && other.block->users.ref()) {
			block = other.block;
		}
	}
};

} // namespace godot

#endif // GODOT_CPP_TEMPLATES_COWDATA_HPP

// Allocation through the engine, so that its counters see ours, and memnew / memdelete, the only way to make and to end engine objects.
//
// memnew of an engine or extension class makes the engine's half together with ours and sends NOTIFICATION_POSTINITIALIZE; memdelete hands the
// object to the engine, which calls back to end our half. For every other type they are new and delete.

#ifndef GODOT_CPP_CORE_MEMORY_HPP
#define GODOT_CPP_CORE_MEMORY_HPP

#include <godot_cpp/core/defs.hpp>

#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>

namespace godot {

class Wrapped;

class Memory {
	Memory() = delete;

public:
	// Null, after reporting it, when the engine has no memory left. p_pad_align asks for room before the block, as upstream's signature has it.
	static void *alloc_static(size_t p_bytes, bool p_pad_align = false);
	static void *realloc_static(void *p_memory, size_t p_bytes, bool p_pad_align = false);
	static void free_static(void *p_memory, bool p_pad_align = false);
};

namespace internal {

struct ClassTag;

// Chooses the engine's allocator in a new-expression.
struct MemnewTag {};
inline constexpr MemnewTag memnew_tag{};

// Tells the constructor of Wrapped, which runs first, which class is being made. Arguments of the new-expression may make objects of their own in
// between, so these form a stack; each is taken off by the constructor that it is for.
struct ConstructionFrame {
	const ClassTag *tag;
	void *existing_owner;
	ConstructionFrame *outer;

	ConstructionFrame(const ClassTag *p_tag, void *p_existing_owner);
	ConstructionFrame(const ConstructionFrame &) = delete;
	ConstructionFrame &operator=(const ConstructionFrame &) = delete;
	~ConstructionFrame();
};

struct NoConstructionFrame {
	NoConstructionFrame() {}
};

template <class T>
const ClassTag *class_tag_of();

template <class T>
struct WrappedConstructionFrame : ConstructionFrame {
	WrappedConstructionFrame() : ConstructionFrame(class_tag_of<T>(), nullptr) {}
};

template <class T>
using ConstructionFrameFor = std::conditional_t<std::is_base_of_v<Wrapped, T>, WrappedConstructionFrame<T>, NoConstructionFrame>;

// False, and the object is gone, when the engine could not make its half.
bool finish_wrapped_construction(Wrapped *p_object);
void destroy_wrapped(Wrapped *p_object);

template <class T>
_FORCE_INLINE_ T *finish_construction(T *p_made) {
	if constexpr (std::is_base_of_v<Wrapped, T>) {
		return finish_wrapped_construction(p_made) ? p_made : nullptr;
	} else {
		return p_made;
	}
}

// The element count of a memnew_arr block lies before its elements; the gap keeps them aligned for every type.
constexpr size_t ARRAY_HEADER_SIZE = 16;

} // namespace internal

} // namespace godot

// An allocation function that may answer null has to be noexcept: the new-expression then skips the constructor.
inline void *operator new(size_t p_size, godot::internal::MemnewTag) noexcept {
	return godot::Memory::alloc_static(p_size);
}

inline void operator delete(void *p_memory, godot::internal::MemnewTag) noexcept {
	godot::Memory::free_static(p_memory);
}

namespace godot {

#define memalloc(m_size) ::godot::Memory::alloc_static(m_size)
#define memrealloc(m_memory, m_size) ::godot::Memory::realloc_static(m_memory, m_size)
#define memfree(m_memory) ::godot::Memory::free_static(m_memory)

#define memnew(m_class)                                                                                                                                        \
	(static_cast<void>(::godot::internal::ConstructionFrameFor<std::remove_pointer_t<decltype(new (::godot::internal::memnew_tag) m_class)>>()),               \
			::godot::internal::finish_construction(new (::godot::internal::memnew_tag) m_class))

#define memnew_placement(m_placement, m_class) (::new (static_cast<void *>(m_placement)) m_class)

template <class T>
void memdelete(T *p_object) {
	if (p_object == nullptr) {
		return;
	}
	if constexpr (std::is_base_of_v<Wrapped, T>) {
		internal::destroy_wrapped(const_cast<std::remove_const_t<T> *>(p_object));
	} else {
		if constexpr (!std::is_trivially_destructible_v<T>) {
			p_object->~T();
		}
		Memory::free_static(const_cast<std::remove_const_t<T> *>(p_object));
	}
}

#define memdelete_notnull(m_object)                                                                                                                            \
	{                                                                                                                                                          \
		if (m_object) {                                                                                                                                        \
			::godot::memdelete(m_object);                                                                                                                      \
		}                                                                                                                                                      \
	}

template <class T>
T *memnew_arr_template(size_t p_count) {
	static_assert(alignof(T) <= internal::ARRAY_HEADER_SIZE, "memnew_arr does not serve types of stricter alignment.");
	if (p_count == 0 || p_count > (SIZE_MAX - internal::ARRAY_HEADER_SIZE) / sizeof(T)) {
		return nullptr;
	}
	uint8_t *block = static_cast<uint8_t *>(Memory::alloc_static(internal::ARRAY_HEADER_SIZE + p_count * sizeof(T)));
	if (block == nullptr) {
		return nullptr;
	}
	*reinterpret_cast<uint64_t *>(block) = p_count;
	T *elements = reinterpret_cast<T *>(block + internal::ARRAY_HEADER_SIZE);
	if constexpr (!std::is_trivially_constructible_v<T>) {
		for (size_t i = 0; i < p_count; i++) {
			::new (static_cast<void *>(&elements[i])) T;
		}
	}
	return elements;
}

#define memnew_arr(m_class, m_count) ::godot::memnew_arr_template<m_class>(m_count)

template <class T>
size_t memarr_len(const T *p_elements) {
	if (p_elements == nullptr) {
		return 0;
	}
	return static_cast<size_t>(*reinterpret_cast<const uint64_t *>(reinterpret_cast<const uint8_t *>(p_elements) - internal::ARRAY_HEADER_SIZE));
}

template <class T>
void memdelete_arr(T *p_elements) {
	if (p_elements == nullptr) {
		return;
	}
	if constexpr (!std::is_trivially_destructible_v<T>) {
		const size_t count = memarr_len(p_elements);
		for (size_t i = 0; i < count; i++) {
			p_elements[i].~T();
		}
	}
	Memory::free_static(reinterpret_cast<uint8_t *>(p_elements) - internal::ARRAY_HEADER_SIZE);
}

class DefaultAllocator {
public:
	_FORCE_INLINE_ static void *alloc(size_t p_bytes) { return Memory::alloc_static(p_bytes); }
	_FORCE_INLINE_ static void free(void *p_memory) { Memory::free_static(p_memory); }
};

template <class T>
class DefaultTypedAllocator {
public:
	template <class... Args>
	_FORCE_INLINE_ T *new_allocation(Args &&...p_args) {
		return memnew(T(std::forward<Args>(p_args)...));
	}
	_FORCE_INLINE_ void delete_allocation(T *p_allocation) { memdelete(p_allocation); }
};

#define memnew_allocator(m_class, m_allocator) (::new (m_allocator::alloc(sizeof(m_class))) m_class)

template <class T, class A>
void memdelete_allocator(T *p_object) {
	if (p_object == nullptr) {
		return;
	}
	p_object->~T();
	A::free(p_object);
}

} // namespace godot

#endif // GODOT_CPP_CORE_MEMORY_HPP

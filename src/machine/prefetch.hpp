#pragma once

// Tells the processor that memory will soon be read. The address may be that of something freed: a prefetch
// never faults.

#include <cstdint>

#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif

inline void prefetch(uintptr_t address) {
#if defined(__GNUC__) || defined(__clang__)
	// NOLINTNEXTLINE(performance-no-int-to-ptr): it is an address, and nobody reads through it.
	__builtin_prefetch(reinterpret_cast<const void *>(address));
#elif defined(_M_ARM64)
	__prefetch(reinterpret_cast<const void *>(address));
#else
	_mm_prefetch(reinterpret_cast<const char *>(address), _MM_HINT_T0);
#endif
}
inline void prefetch(const void *place) {
	prefetch(uintptr_t(place));
}

#pragma once

// Tells the processor that memory will soon be read. The address may be that of something freed: fetching
// never faults.

#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif

inline void fetch(const void *address) {
#if defined(__GNUC__) || defined(__clang__)
	__builtin_prefetch(address);
#elif defined(_M_ARM64)
	__prefetch(address);
#else
	_mm_prefetch(static_cast<const char *>(address), _MM_HINT_T0);
#endif
}

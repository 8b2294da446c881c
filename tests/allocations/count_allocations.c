/* Counts what the library allocates, whoever does it on its behalf: the engine, the C++ runtime or the library itself. Preloaded
   into the engine, it stands before the C library's allocator. Between allocations_begin and allocations_end every request
   made on that thread is followed up the stack, and counts when a call of the library is on the way.
   The counter in extension/ is what scripts reach it through. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <link.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#include <unwind.h>

#define SHOWN __attribute__((visibility("default")))
#define ON_THIS_THREAD __thread __attribute__((tls_model("initial-exec")))

enum { MOST_SITES = 32 };

extern void *__libc_malloc(size_t size);
extern void *__libc_calloc(size_t count, size_t size);
extern void *__libc_realloc(void *memory, size_t size);
extern void *__libc_memalign(size_t alignment, size_t size);

static const char *wanted;
static uintptr_t base, code_begin, code_end;
static ON_THIS_THREAD int counting;
static long counted;
static uintptr_t sites[MOST_SITES];
static int site_count;

static int find_library(struct dl_phdr_info *info, size_t size, void *found) {
	(void)size;
	if (strstr(info->dlpi_name, wanted) == NULL) {
		return 0;
	}
	for (int i = 0; i < info->dlpi_phnum; i++) {
		const ElfW(Phdr) *segment = &info->dlpi_phdr[i];
		if (segment->p_type == PT_LOAD && (segment->p_flags & PF_X)) {
			base = info->dlpi_addr;
			code_begin = base + segment->p_vaddr;
			code_end = code_begin + segment->p_memsz;
			*(int *)found = 1;
		}
	}
	return 1;
}

static _Unwind_Reason_Code look_at_frame(struct _Unwind_Context *frame, void *found) {
	const uintptr_t address = _Unwind_GetIP(frame);
	if (address < code_begin || address >= code_end) {
		return _URC_NO_REASON;
	}
	*(uintptr_t *)found = address;
	return _URC_END_OF_STACK;
}

static void note(void) {
	uintptr_t address = 0;
	if (!counting) {
		return;
	}
	/* Unwinding may allocate as well. */
	counting = 0;
	_Unwind_Backtrace(look_at_frame, &address);
	if (address != 0) {
		int known = 0;
		counted++;
		while (known < site_count && sites[known] != address - base) {
			known++;
		}
		if (known == site_count && site_count < MOST_SITES) {
			sites[site_count++] = address - base;
		}
	}
	counting = 1;
}

/* Answers whether a library whose path holds these letters is there. */
SHOWN int allocations_begin(const char *part_of_path) {
	int found = 0;
	wanted = part_of_path;
	counted = 0;
	site_count = 0;
	dl_iterate_phdr(find_library, &found);
	counting = found;
	return found;
}

SHOWN long allocations_end(void) {
	counting = 0;
	return counted;
}

/* Where in the library, for addr2line; 0 past the last. */
SHOWN uintptr_t allocations_site(int index) {
	return index >= 0 && index < site_count ? sites[index] : 0;
}

SHOWN void *malloc(size_t size) {
	note();
	return __libc_malloc(size);
}

SHOWN void *calloc(size_t count, size_t size) {
	note();
	return __libc_calloc(count, size);
}

SHOWN void *realloc(void *memory, size_t size) {
	note();
	return __libc_realloc(memory, size);
}

SHOWN void *memalign(size_t alignment, size_t size) {
	note();
	return __libc_memalign(alignment, size);
}

SHOWN void *aligned_alloc(size_t alignment, size_t size) {
	note();
	return __libc_memalign(alignment, size);
}

SHOWN int posix_memalign(void **memory, size_t alignment, size_t size) {
	void *made;
	note();
	made = __libc_memalign(alignment, size);
	if (made == NULL) {
		return ENOMEM;
	}
	*memory = made;
	return 0;
}

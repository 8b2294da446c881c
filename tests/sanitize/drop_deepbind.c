/* The engine opens extensions with RTLD_DEEPBIND, which the address sanitizer refuses. Preloaded before it, this drops the flag.
   KEEP_LIBRARIES in the environment leaves libraries loaded at the end, so that a report of leaks can name their lines. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdlib.h>

void *dlopen(const char *file, int mode) {
	void *(*next)(const char *, int) = (void *(*)(const char *, int))dlsym(RTLD_NEXT, "dlopen");
	return next(file, mode & ~RTLD_DEEPBIND);
}

int dlclose(void *library) {
	int (*next)(void *) = (int (*)(void *))dlsym(RTLD_NEXT, "dlclose");
	return getenv("KEEP_LIBRARIES") ? 0 : next(library);
}

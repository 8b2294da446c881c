#include "probe.hpp"

#include <godot_cpp/core/class_db.hpp>

#include <chrono>
#include <ctime>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace godot;

double BenchProbe::thread_usec() {
#ifdef CLOCK_THREAD_CPUTIME_ID
	timespec worked = {};
	clock_gettime(CLOCK_THREAD_CPUTIME_ID, &worked);
	return double(worked.tv_sec) * 1e6 + double(worked.tv_nsec) / 1e3;
#else
	return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now().time_since_epoch()).count();
#endif
}

int64_t BenchProbe::heap_in_use() {
#ifdef __GLIBC__
	const struct mallinfo2 heap = mallinfo2();
	return int64_t(heap.uordblks + heap.hblkhd);
#else
	return -1;
#endif
}

void BenchProbe::_bind_methods() {
	ClassDB::bind_static_method("BenchProbe", D_METHOD("thread_usec"), &BenchProbe::thread_usec);
	ClassDB::bind_static_method("BenchProbe", D_METHOD("heap_in_use"), &BenchProbe::heap_in_use);
}

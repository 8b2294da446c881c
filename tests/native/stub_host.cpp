#include "stub_host.hpp"

#include <godot_cpp/core/gdextension_interface_loader.hpp>

#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>

namespace stub_host {

namespace {

int64_t blocks = 0;
std::vector<std::string> errors;

void *allocate(size_t bytes, GDExtensionBool) {
	blocks++;
	return std::malloc(bytes);
}

void *reallocate(void *block, size_t bytes, GDExtensionBool) {
	blocks += block == nullptr ? 1 : 0;
	return std::realloc(block, bytes);
}

void release(void *block, GDExtensionBool) {
	blocks -= block == nullptr ? 0 : 1;
	std::free(block);
}

void keep_error(const char *description, const char *, const char *, int32_t, GDExtensionBool) {
	errors.push_back(description);
}

void keep_message(const char *, const char *message, const char *, const char *, int32_t, GDExtensionBool) {
	errors.push_back(message);
}

} // namespace

int64_t live_blocks() {
	return blocks;
}

std::vector<std::string> take_errors() {
	return std::exchange(errors, {});
}

} // namespace stub_host

int main(int count, char **arguments) {
	using namespace stub_host;
	namespace interface = godot::gdextension_interface;
	interface::mem_alloc2 = allocate;
	interface::mem_realloc2 = reallocate;
	interface::mem_free2 = release;
	interface::print_error = keep_error;
	interface::print_error_with_message = keep_message;
	interface::print_warning = keep_error;
	interface::print_warning_with_message = keep_message;
	testing::InitGoogleTest(&count, arguments);
	return RUN_ALL_TESTS();
}

// Stands in for the engine: memory from malloc, counted, and errors kept for the test that caused them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace stub_host {

// Blocks that are allocated and not freed.
int64_t live_blocks();

// The errors reported since the last call.
std::vector<std::string> take_errors();

} // namespace stub_host

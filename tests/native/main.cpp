#include "stub_host.hpp"

#include <gtest/gtest.h>

int main(int count, char **arguments) {
	stub_host::install();
	testing::InitGoogleTest(&count, arguments);
	return RUN_ALL_TESTS();
}

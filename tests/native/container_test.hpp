// The frame of every container test: whatever it made has to be gone when it ends.
#pragma once

#include "counted.hpp"
#include "stub_host.hpp"

#include <gtest/gtest.h>

class ContainerTest : public testing::Test {
	int64_t blocks_before = 0;

protected:
	void SetUp() override {
		Counted::alive = 0;
		blocks_before = stub_host::live_blocks();
		stub_host::take_errors();
	}

	void TearDown() override {
		EXPECT_EQ(Counted::alive, 0);
		EXPECT_EQ(stub_host::live_blocks(), blocks_before);
		EXPECT_EQ(stub_host::take_errors(), std::vector<std::string>());
	}
};

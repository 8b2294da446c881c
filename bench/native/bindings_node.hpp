#pragma once

// The least a node can do each frame, through the bindings.

#include <godot_cpp/classes/node.hpp>

class BenchBindingsNode : public godot::Node {
	GDCLASS(BenchBindingsNode, godot::Node)

	int64_t frames = 0;

protected:
	static void _bind_methods() {}

public:
	void _process(double delta) override;
};

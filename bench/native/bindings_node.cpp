#include "bindings_node.hpp"

void BenchBindingsNode::_process(double) {
	frames++;
}

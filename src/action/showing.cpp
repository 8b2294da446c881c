#include "action/showing.hpp"

#include "settings/plumbing.hpp"

#include <godot_cpp/variant/string.hpp>

using namespace godot;

namespace showing {

void only_if(bool they_count, PropertyInfo &property, std::initializer_list<const char *> settings) {
	if (they_count) {
		return;
	}
	const String name = property.name;
	for (const char *setting : settings) {
		if (name == setting || name == String(setting) + "_variable") {
			hide_from_inspector(property);
			return;
		}
	}
}

} // namespace showing

#include "settings/setting_rules.hpp"

#include "machine/names.hpp"
#include "settings/setting_edits.hpp"

namespace setting_rules {

namespace {

bool may_hold(const SettingRule &rule, const Object *object) {
	const SettingRow *about = rule.about != nullptr ? *rule.about : nullptr;
	const bool may_become_anything = about != nullptr && is_read_from_a_variable != nullptr && is_read_from_a_variable(object, about->info.name);
	return may_become_anything || rule.holds(object);
}

} // namespace

bool all_hold(const LocalVector<SettingRule> &rules, const Object *object) {
	for (const SettingRule &rule : rules) {
		if (!may_hold(rule, object)) {
			return false;
		}
	}
	return true;
}

bool any_holds(const LocalVector<SettingRule> &rules, const Object *object) {
	for (const SettingRule &rule : rules) {
		if (may_hold(rule, object)) {
			return true;
		}
	}
	return false;
}

} // namespace setting_rules

bool setting_edits::is_listed(const Object *object) {
	return in_editor || object->has_connections(MachineNames::shared().property_list_changed);
}

uint64_t setting_edits::shown(const Object *object, const ClassRow *row) {
	uint64_t bits = 0;
	uint64_t bit = 1;
	for (const ClassRow *at = row; at != nullptr; at = at->parent) {
		for (const SettingRow *setting : at->settings) {
			if (!setting->shown_if.is_empty()) {
				bits |= setting_rules::all_hold(setting->shown_if, object) ? bit : 0;
				bit = (bit << 1) | (bit >> 63);
			}
		}
	}
	return bits;
}

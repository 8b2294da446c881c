#include "node_probe.hpp"

using namespace godot;

namespace bindings_test {

void BindingsNode::_notification(int what) {
	if (what == NOTIFICATION_READY || what == NOTIFICATION_ENTER_TREE || what == NOTIFICATION_EXIT_TREE) {
		notifications.append(what);
	}
}

void BindingsNode::_process(double) {
	frames++;
}

void BindingsNode::_ready() {
	ready_calls++;
}

String BindingsNode::greet(const String &name) {
	String greeting;
	if (GDVIRTUAL_CALL(_greet, name, greeting)) {
		return greeting;
	}
	return "Nobody greets " + name;
}

void BindingsNode::visit(Node *node) {
	GDVIRTUAL_CALL(_visit, node);
}

bool BindingsNode::is_enough() const {
	bool enough = false;
	return GDVIRTUAL_CALL(_is_enough, enough) && enough;
}

Ref<RefCounted> BindingsNode::choose(const Ref<RefCounted> &fallback, const Array &others) {
	Ref<RefCounted> chosen;
	return GDVIRTUAL_CALL(_choose, fallback, others, chosen) ? chosen : fallback;
}

bool BindingsNode::overrides_greet() const {
	return GDVIRTUAL_IS_OVERRIDDEN(_greet);
}

void BindingsNode::_bind_methods() {
	GDVIRTUAL_BIND(_greet, "name");
	GDVIRTUAL_BIND(_visit, "node");
	GDVIRTUAL_BIND(_is_enough);
	GDVIRTUAL_BIND(_choose, "fallback", "others");
	ClassDB::bind_method(D_METHOD("greet", "name"), &BindingsNode::greet);
	ClassDB::bind_method(D_METHOD("visit", "node"), &BindingsNode::visit);
	ClassDB::bind_method(D_METHOD("is_enough"), &BindingsNode::is_enough);
	ClassDB::bind_method(D_METHOD("choose", "fallback", "others"), &BindingsNode::choose);
	ClassDB::bind_method(D_METHOD("overrides_greet"), &BindingsNode::overrides_greet);
	ClassDB::bind_method(D_METHOD("get_frames"), &BindingsNode::get_frames);
	ClassDB::bind_method(D_METHOD("get_ready_calls"), &BindingsNode::get_ready_calls);
	ClassDB::bind_method(D_METHOD("get_notifications"), &BindingsNode::get_notifications);
}

void BindingsChild::_notification(int what) {
	if (what == NOTIFICATION_READY) {
		own_notifications++;
	}
}

void BindingsChild::_bind_methods() {
	ClassDB::bind_method(D_METHOD("get_own_notifications"), &BindingsChild::get_own_notifications);
}

bool BindingsResource::_set(const StringName &name, const Variant &value) {
	if (!String(name).begins_with("extra_")) {
		return false;
	}
	extras[name] = value;
	return true;
}

bool BindingsResource::_get(const StringName &name, Variant &r_value) const {
	const Variant *found = extras.getptr(name);
	if (!found) {
		return false;
	}
	r_value = *found;
	return true;
}

void BindingsResource::_get_property_list(List<PropertyInfo> *list) const {
	for (const KeyValue<StringName, Variant> &extra : extras) {
		list->push_back(PropertyInfo(extra.value.get_type(), extra.key, PROPERTY_HINT_NONE, "of extras", PROPERTY_USAGE_STORAGE));
	}
}

void BindingsResource::_validate_property(PropertyInfo &property) const {
	if (property.name == StringName("title") && title.is_empty()) {
		property.usage |= PROPERTY_USAGE_READ_ONLY;
	}
}

bool BindingsResource::_property_can_revert(const StringName &name) const {
	return String(name).begins_with("extra_");
}

bool BindingsResource::_property_get_revert(const StringName &name, Variant &r_value) const {
	if (!_property_can_revert(name)) {
		return false;
	}
	r_value = "reverted";
	return true;
}

String BindingsResource::_to_string() const {
	return "<" + title + ">";
}

void BindingsResource::set_amount(int64_t index, double value) {
	ERR_FAIL_INDEX(index, 2);
	amounts[index] = value;
}

double BindingsResource::get_amount(int64_t index) const {
	ERR_FAIL_INDEX_V(index, 2, 0.0);
	return amounts[index];
}

void BindingsResource::_bind_methods() {
	ClassDB::bind_method(D_METHOD("set_title", "value"), &BindingsResource::set_title);
	ClassDB::bind_method(D_METHOD("get_title"), &BindingsResource::get_title);
	ClassDB::bind_method(D_METHOD("set_amount", "index", "value"), &BindingsResource::set_amount);
	ClassDB::bind_method(D_METHOD("get_amount", "index"), &BindingsResource::get_amount);
	ClassDB::bind_method(D_METHOD("set_parts", "value"), &BindingsResource::set_parts);
	ClassDB::bind_method(D_METHOD("get_parts"), &BindingsResource::get_parts);

	ADD_PROPERTY(PropertyInfo(Variant::STRING, "title"), "set_title", "get_title");
	ADD_GROUP("Amounts", "amount_");
	ADD_PROPERTYI(PropertyInfo(Variant::FLOAT, "amount_first", PROPERTY_HINT_RANGE, "0,10"), "set_amount", "get_amount", 0);
	ADD_PROPERTYI(PropertyInfo(Variant::FLOAT, "amount_second", PROPERTY_HINT_RANGE, "0,10"), "set_amount", "get_amount", 1);
	ADD_GROUP("", "");
	ADD_PROPERTY(PropertyInfo(Variant::ARRAY, "parts", PROPERTY_HINT_ARRAY_TYPE, "Resource"), "set_parts", "get_parts");
}

} // namespace bindings_test

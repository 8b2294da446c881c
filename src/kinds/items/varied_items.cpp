#include "kinds/items/varied_items.hpp"

#include "action/values.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace varied_items {

namespace {

struct Names {
	StringName varied_from = "quillstead_varied_from";
	StringName damage = "damage";
	StringName changes = "changes";
	StringName amount = "amount";
};

const Names &names() {
	return NativeNames::of<Names>();
}

Array rows_of(const Ref<Resource> &item) {
	const Variant changes = item->get(names().changes);
	return changes.get_type() == Variant::ARRAY ? Array(changes) : Array();
}

Object *row_at(const Array &rows, int64_t index) {
	return rows[index].get_validated_object();
}

// The engine shares rows that are files of their own even between a resource and its copy with everything in it.
Ref<Resource> copy_of(const Ref<Resource> &item) {
	const Ref<Resource> copy = item->duplicate(true);
	if (copy.is_null()) {
		return copy;
	}
	const Variant from = item->has_meta(names().varied_from) ? item->get_meta(names().varied_from) : Variant(item->get_path());
	copy->set_meta(names().varied_from, from);
	const Array rows = rows_of(item);
	Array own = rows_of(copy).duplicate();
	for (int64_t i = 0; i < own.size() && i < rows.size(); i++) {
		const Resource *row = Object::cast_to<Resource>(row_at(own, i));
		if (row != nullptr && row == row_at(rows, i)) {
			own[i] = const_cast<Resource *>(row)->duplicate();
		}
	}
	copy->set(names().changes, own);
	return copy;
}

double drawn(double number, double share) {
	return number * UtilityFunctions::randf_range(1.0 - share, 1.0 + share);
}

bool is_sound(const Variant &number) {
	return values::is_number(number) && Math::is_finite(double(number));
}

double varied_amount(double amount, double share) {
	const double fresh = drawn(amount, share);
	// A small one is a fraction or a multiplier.
	if (amount > -2.0 && amount < 2.0) {
		return fresh;
	}
	return amount > 0.0 ? MAX(1.0, Math::round(fresh)) : Math::round(fresh);
}

} // namespace

Ref<Resource> varied(const Ref<Resource> &item, double by_percent) {
	Ref<Resource> copy = copy_of(item);
	if (copy.is_null()) {
		return item;
	}
	const double share = by_percent / 100.0;
	const double damage = values::as_number(copy->get(names().damage));
	if (damage > 0.0) {
		copy->set(names().damage, MAX(1.0, Math::round(drawn(damage, share))));
	}
	const Array rows = rows_of(copy);
	for (int64_t i = 0; i < rows.size(); i++) {
		if (Object *row = row_at(rows, i)) {
			row->set(names().amount, varied_amount(values::as_number(row->get(names().amount)), share));
		}
	}
	return copy;
}

Dictionary numbers_of(const Ref<Resource> &item) {
	Dictionary numbers;
	if (item.is_null()) {
		values::report_null("numbers_of", "p_item");
		return numbers;
	}
	Array amounts;
	const Array rows = rows_of(item);
	for (int64_t i = 0; i < rows.size(); i++) {
		const Object *row = row_at(rows, i);
		amounts.push_back(row != nullptr ? values::as_number(row->get(names().amount)) : 0.0);
	}
	numbers["damage"] = values::as_number(item->get(names().damage));
	numbers["changes"] = amounts;
	return numbers;
}

Ref<Resource> with_numbers(const Ref<Resource> &item, const Dictionary &numbers) {
	if (item.is_null()) {
		values::report_null("with_numbers", "p_item");
		return Ref<Resource>();
	}
	Ref<Resource> copy = copy_of(item);
	if (copy.is_null()) {
		values::report_null("with_numbers", "copy");
		return copy;
	}
	const Variant damage = numbers.get("damage", Variant());
	if (is_sound(damage)) {
		copy->set(names().damage, double(damage));
	}
	const Variant given = numbers.get("changes", Variant());
	const Array amounts = values::is_list(given) ? Array(given) : Array();
	const Array rows = rows_of(copy);
	for (int64_t i = 0; i < rows.size() && i < amounts.size(); i++) {
		Object *row = row_at(rows, i);
		if (row != nullptr && is_sound(amounts[i])) {
			row->set(names().amount, double(amounts[i]));
		}
	}
	return copy;
}

} // namespace varied_items

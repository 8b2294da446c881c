#include "action/comparing.hpp"

#include "action/values.hpp"
#include "action/words.hpp"

namespace comparing {

namespace {

bool is_text(const Variant &value) {
	return value.get_type() == Variant::STRING || value.get_type() == Variant::STRING_NAME;
}

bool counts(const Variant &value) {
	return values::is_number(value) || value.get_type() == Variant::BOOL;
}

// Below 0 for less, above for more; false when the two have no order.
bool in_order(const Variant &first, const Variant &second, int &order) {
	if (counts(first) && counts(second)) {
		const double left = values::as_number(first);
		const double right = values::as_number(second);
		order = left < right ? -1 : int(left > right);
		return left <= right || left >= right;
	}
	if (is_text(first) && is_text(second)) {
		const String left = first;
		const String right = second;
		order = left < right ? -1 : int(right < left);
		return true;
	}
	return false;
}

} // namespace

bool passes(const Variant &held, Test test, const Variant &value) {
	if (test == IS_TRUE || test == IS_FALSE) {
		return values::as_truth(held) == (test == IS_TRUE);
	}
	const bool same = values::same_value(held, value);
	if (test == EQUALS || test == NOT_EQUALS) {
		return same == (test == EQUALS);
	}
	int order = 0;
	if (!in_order(held, value, order)) {
		return false;
	}
	// Numbers that are as good as the same are neither above nor below one another.
	if (same) {
		return test == GREATER_OR_EQUAL || test == LESS_OR_EQUAL;
	}
	return test == GREATER || test == GREATER_OR_EQUAL ? order > 0 : order < 0;
}

String in_words(Test test, const Variant &value) {
	const char *const before_value[] = { "is", "is not", "is above", "is at least", "is below", "is at most" };
	if (test >= EQUALS && test <= LESS_OR_EQUAL) {
		return vformat("%s %s", before_value[test], words::text_of(value));
	}
	return test == IS_TRUE ? "is true" : "is false";
}

} // namespace comparing

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
	const String shown = words::text_of(value);
	switch (test) {
		case EQUALS:
			return "is " + shown;
		case NOT_EQUALS:
			return "is not " + shown;
		case GREATER:
			return "is above " + shown;
		case GREATER_OR_EQUAL:
			return "is at least " + shown;
		case LESS:
			return "is below " + shown;
		case LESS_OR_EQUAL:
			return "is at most " + shown;
		case IS_TRUE:
			return "is true";
		case IS_FALSE:
			break;
	}
	return "is false";
}

bool needs_value(Test test) {
	return test != IS_TRUE && test != IS_FALSE;
}

} // namespace comparing

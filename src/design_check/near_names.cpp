#include "design_check/near_names.hpp"

#include <godot_cpp/core/defs.hpp>
#include <godot_cpp/variant/variant.hpp>

namespace near_names {

int64_t letters_apart(const String &left, const String &right) {
	const int64_t width = right.length() + 1;
	LocalVector<int64_t> before_last;
	LocalVector<int64_t> last;
	LocalVector<int64_t> row;
	before_last.resize(width);
	last.resize(width);
	row.resize(width);
	for (int64_t at = 0; at < width; at++) {
		last[at] = at;
	}
	for (int64_t i = 1; i <= left.length(); i++) {
		row[0] = i;
		for (int64_t j = 1; j < width; j++) {
			const int64_t changed = last[j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1);
			row[j] = MIN(changed, MIN(last[j], row[j - 1]) + 1);
			if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1]) {
				row[j] = MIN(row[j], before_last[j - 2] + 1);
			}
		}
		SWAP(before_last, last);
		SWAP(last, row);
	}
	return last[width - 1];
}

StringName nearest(const StringName &name, const LocalVector<StringName> &known) {
	const String wanted = String(name).to_lower();
	// A short name is near to many.
	const int64_t most = wanted.length() <= 3 ? 0 : (wanted.length() <= 5 ? 1 : 2);
	StringName best;
	int64_t best_distance = most + 1;
	for (const StringName &candidate : known) {
		if (candidate == name || candidate.is_empty()) {
			continue;
		}
		const int64_t distance = letters_apart(wanted, String(candidate).to_lower());
		if (distance < best_distance) {
			best = candidate;
			best_distance = distance;
		}
	}
	return best;
}

String did_you_mean(const StringName &nearest) {
	return nearest.is_empty() ? String() : vformat("Did you mean %s? ", nearest);
}

} // namespace near_names

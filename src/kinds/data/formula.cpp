#include "kinds/data/formula.hpp"

#include "action/words.hpp"

void SCExpressionAction::describe(KindTable<Self> &kind) {
	kind.about("data", "calculate",
			"Work out a formula and keep the answer in a variable, for example speed * 2 + boost, clamp(health - damage, 0, 100) or (target - "
			"here).normalized() * speed.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::formula>("formula", Hint{ PROPERTY_HINT_EXPRESSION },
			"The formula. The machine's variables go by their names, and one whose name has a blank in it stands in braces: {time left} * 2. It takes numbers, "
			"Vectors, true and false, texts in quotes, + - * / % ** and the comparisons, and functions such as min, max, clamp, lerp, abs, floor, round and "
			"randf_range. sine(), cosine(), tangent() and angle_of(x, y) work in degrees, sin() and cos() in radians. Two whole numbers divide to a whole "
			"number, so 1 / 2 is 0 and 1.0 / 2 is 0.5. A node can be compared and handed on, but not asked for anything.");
	kind.setting<&Self::store_in>("store_in", "The variable the answer goes into. It stays as it is when there is no answer.");
}

String SCExpressionAction::summary_default() {
	constexpr int64_t MOST_SHOWN = 60;
	const String line = formula.strip_edges().replace("\n", " ");
	const String shown = line.length() > MOST_SHOWN ? line.left(MOST_SHOWN - 3) + "..." : line;
	return vformat("Set %s to %s", store_in, shown.is_empty() ? String("a formula") : shown);
}

PackedStringArray SCExpressionAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	const PackedStringArray in_formula = read_formula().variables();
	for (int64_t i = 0; i < in_formula.size(); i++) {
		if (!names.has(in_formula[i])) {
			names.push_back(in_formula[i]);
		}
	}
	return names;
}

Formula &SCExpressionAction::read_formula() {
	as_read.read(formula);
	return as_read;
}

// The compiled runtime of Expression. A formula comes from whoever made the game or from a file, so it gets at nothing but the
// variables that it names.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "action/values.hpp"
#include "kinds/data/formula.hpp"
#include "kinds/data/formula_work.hpp"
#include "machine/value_kinds.hpp"

namespace {

class Calculate : public OnceOrRepeating<Calculate> {
	using Kind = SCExpressionAction;

	static constexpr const char *CORRECT_IT = "Correct it under Formula, or what its variables hold.";

	static void tell(SCMachineBase *machine, const SCMachineAction *action, const String &formula, const String &why, const String &remedy = CORRECT_IT) {
		constexpr int64_t MOST_SHOWN = 80;
		const String line = formula.strip_edges().replace("\n", " ");
		verbs::warn(machine, action,
				vformat("\"%s\" was not worked out, and nothing was kept: %s. %s", line.length() > MOST_SHOWN ? line.left(MOST_SHOWN - 3) + "..." : line, why,
						remedy));
	}

	// False, and told, when something that it names is not there.
	static bool fill_in(SCMachineBase *machine, const SCMachineAction *action, Formula &formula) {
		for (const Formula::Place &place : formula.places) {
			Variant held = machine->get_value(place.variable);
			if (held.get_type() == Variant::NIL && !machine->has_value(place.variable)) {
				tell(machine, action, formula.text, vformat("this machine has no variable called %s", place.variable),
						"Add it under Variables, or write the name of one that it has.");
				return false;
			}
			const String kind = formula_work::let_in(held) ? String() : values::kind_in_words(held);
			if (!kind.is_empty()) {
				tell(machine, action, formula.text, vformat("%s holds %s, which no formula can work with as it is", place.variable, kind));
				return false;
			}
			formula.inputs[place.input] = held;
		}
		return true;
	}

	static void empty(Formula &formula) {
		for (const Formula::Place &place : formula.places) {
			formula.inputs[place.input] = Variant();
		}
	}

	// The engine says it in English sentences of its own.
	static String in_words(const String &from_engine) {
		const String said = from_engine.trim_suffix(".").trim_suffix(":");
		if (said.contains("RID")) {
			return "a node or a resource in it can be compared and handed on, and nothing else, so what is wanted of it has to be read with Get Property first";
		}
		if (said.begins_with("On call to")) {
			return vformat("%s() is asked of something that does not have it, or with the wrong things in its brackets", said.get_slice("'", 1));
		}
		return said.left(1).to_lower() + said.substr(1);
	}

	static String problem_with(const Formula &formula, const Variant &answer) {
		const String own = formula_work::problem();
		if (!own.is_empty()) {
			return own;
		}
		if (formula.expression->has_execute_failed()) {
			return in_words(answer.get_type() == Variant::STRING ? String(answer) : formula.expression->get_error_text());
		}
		if (formula_work::is_no_number(answer)) {
			return "it comes to no number, as 0 divided by 0 or the root of -1 does";
		}
		if (!formula.names_endless && formula_work::is_endless(answer)) {
			return "it comes to an endless number, as a division by 0.0 does";
		}
		return String();
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr) {
			return;
		}
		Formula &formula = kind->read_formula();
		if (formula.text.strip_edges().is_empty()) {
			verbs::warn(machine, action, "it has no formula, so there was nothing to work out. Type one under Formula.");
			return;
		}
		if (!formula.problem.is_empty()) {
			tell(machine, action, formula.text, formula.problem);
			return;
		}
		Variant answer;
		String problem;
		if (fill_in(machine, action, formula)) {
			formula_work::forget_problem();
			answer = formula.expression->execute(formula.inputs, nullptr, false, true);
			problem = problem_with(formula, answer);
			answer = problem.is_empty() ? formula_work::let_out(answer) : Variant();
		} else {
			empty(formula);
			return;
		}
		empty(formula);
		if (problem.is_empty()) {
			verbs::keep<&Kind::store_in>(machine, action, answer, "the answer");
		} else {
			tell(machine, action, formula.text, problem);
		}
	}
};

const AddKinds added = {
	add_kind<SCExpressionAction, Calculate>(),
};

} // namespace

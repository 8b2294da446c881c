#include "kinds/data/formula_reading.hpp"

#include "action/words.hpp"
#include "kinds/data/formula_words.hpp"
#include "kinds/data/formula_work.hpp"

#include <cmath>
#include <limits>

namespace {

// The engine reads and works out a formula by calls within calls.
constexpr int MOST_TOKENS = 500;
constexpr int MOST_LETTERS = 10000;
constexpr int DEEPEST = 50;

struct Token {
	enum Kind {
		END,
		NUMBER,
		TEXT,
		NAME,
		BRACED,
		SIGN,
	};

	Kind kind = END;
	// As it was typed; without its quotes or braces for a text and a name.
	String text;
	Variant value;
};

bool is_blank(char32_t letter) {
	return letter == ' ' || letter == '\t' || letter == '\n' || letter == '\r';
}

bool is_digit(char32_t letter) {
	return letter >= '0' && letter <= '9';
}

bool is_hexadecimal(char32_t letter) {
	return is_digit(letter) || (letter >= 'a' && letter <= 'f') || (letter >= 'A' && letter <= 'F');
}

bool goes_on_a_name(const String &text, int64_t at) {
	const char32_t letter = text[at];
	if (letter < 0x80) {
		return is_digit(letter) || letter == '_' || (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
	}
	return ("_" + text.substr(at, 1)).is_valid_unicode_identifier();
}

class Tokens {
	const String &text;
	int64_t at = 0;
	String &problem;

	char32_t letter(int64_t further = 0) const { return at + further < text.length() ? text[at + further] : 0; }

	Token made(Token::Kind kind, int64_t from) const {
		Token token;
		token.kind = kind;
		token.text = text.substr(from, at - from);
		return token;
	}

	Token failed(const String &why) {
		if (problem.is_empty()) {
			problem = why;
		}
		at = text.length();
		return Token();
	}

	Token whole_number(int64_t from, int64_t digits_from, int64_t most_digits, int base) {
		Token token = made(Token::NUMBER, from);
		String digits = text.substr(digits_from, at - digits_from).replace("_", "");
		while (digits.length() > 1 && digits.begins_with("0")) {
			digits = digits.substr(1);
		}
		if (digits.length() > most_digits) {
			return failed(vformat("%s is too large for a whole number; write it with a point, as in 1.0", token.text));
		}
		token.value = base == 16 ? digits.hex_to_int() : (base == 2 ? digits.bin_to_int() : digits.to_int());
		return token;
	}

	// What the engine cuts short in silence, such as 1_000, is read in full.
	Token number() {
		const int64_t from = at;
		const bool is_hex = letter() == '0' && (letter(1) == 'x' || letter(1) == 'X') && is_hexadecimal(letter(2));
		const bool is_binary = letter() == '0' && (letter(1) == 'b' || letter(1) == 'B') && (letter(2) == '0' || letter(2) == '1');
		if (is_hex || is_binary) {
			constexpr int MOST_HEX = 15;
			constexpr int MOST_BINARY = 62;
			at += 2;
			while (letter() == '_' || (is_hex ? is_hexadecimal(letter()) : letter() == '0' || letter() == '1')) {
				at++;
			}
			return whole_number(from, from + 2, is_hex ? MOST_HEX : MOST_BINARY, is_hex ? 16 : 2);
		}
		bool is_whole = true;
		skip_digits();
		if (letter() == '.' && (is_digit(letter(1)) || at + 1 == text.length() || !goes_on_a_name(text, at + 1))) {
			is_whole = false;
			at++;
			skip_digits();
		}
		const bool has_power = letter() == 'e' || letter() == 'E';
		const int64_t sign = has_power && (letter(1) == '-' || letter(1) == '+') ? 1 : 0;
		bool has_room = true;
		if (has_power && is_digit(letter(1 + sign))) {
			constexpr int64_t MOST_POWER = 308;
			is_whole = false;
			at += 1 + sign;
			const int64_t power_from = at;
			skip_digits();
			const String power = text.substr(power_from, at - power_from);
			has_room = power.length() <= 3 && power.to_int() <= MOST_POWER;
		}
		if (is_whole) {
			constexpr int MOST_DIGITS = 18;
			return whole_number(from, from, MOST_DIGITS, 10);
		}
		Token token = made(Token::NUMBER, from);
		const double value = has_room ? token.text.replace("_", "").to_float() : 0.0;
		if (!has_room || !std::isfinite(value)) {
			return failed(vformat("%s is too large or too small for a number", token.text));
		}
		token.value = value;
		return token;
	}

	void skip_digits() {
		while (is_digit(letter()) || (letter() == '_' && is_digit(letter(1)))) {
			at++;
		}
	}

	Token quoted() {
		const char32_t quote = letter();
		const int64_t from = ++at;
		String said;
		while (at < text.length() && letter() != quote) {
			if (letter() == '\\' && at + 1 < text.length()) {
				at++;
				const char32_t escaped = letter();
				said += escaped == 'n' ? String("\n") : (escaped == 't' ? String("\t") : text.substr(at, 1));
			} else {
				said += text.substr(at, 1);
			}
			at++;
		}
		if (at >= text.length()) {
			return failed("a text in it begins with a quotation mark and does not end with one");
		}
		Token token = made(Token::TEXT, from);
		token.value = said;
		at++;
		return token;
	}

	Token braced() {
		const int64_t from = at + 1;
		const int64_t close = text.find("}", from);
		if (close < 0) {
			return failed("a brace in it is opened and never closed");
		}
		Token token;
		token.kind = Token::BRACED;
		token.text = text.substr(from, close - from).strip_edges();
		at = close + 1;
		if (token.text.is_empty() || token.text.contains("\"") || token.text.contains(":")) {
			return failed("braces hold nothing but the name of a variable, as in {time left}");
		}
		return token;
	}

	Token sign() {
		constexpr const char *SIGNS[] = { "**", "==", "!=", "<=", ">=", "&&", "||", "<<", ">>", "+", "-", "*", "/", "%", "<", ">", "!", "&", "|", "^", "(", ")",
			"[", "]", ",", "." };
		for (const char *one : SIGNS) {
			if (text.substr(at, one[1] != '\0' ? 2 : 1) == one) {
				const int64_t from = at;
				at += one[1] != '\0' ? 2 : 1;
				return made(Token::SIGN, from);
			}
		}
		if (letter() == '=') {
			return failed("a single = gives a variable a value, which Store In does; two, ==, compare");
		}
		return failed(vformat("%s has no meaning in a formula", text.substr(at, 1)));
	}

public:
	Tokens(const String &formula, String &told) : text(formula), problem(told) {}

	Token next() {
		while (is_blank(letter())) {
			at++;
		}
		if (at >= text.length()) {
			return Token();
		}
		const int64_t from = at;
		if (is_digit(letter()) || (letter() == '.' && is_digit(letter(1)))) {
			return number();
		}
		if (letter() == '"' || letter() == '\'') {
			return quoted();
		}
		if (letter() == '{') {
			return braced();
		}
		if (!goes_on_a_name(text, at)) {
			return sign();
		}
		while (at < text.length() && goes_on_a_name(text, at)) {
			at++;
		}
		return made(Token::NAME, from);
	}
};

// From what binds least to what binds most, as the engine has it. All go from left to right.
enum Binds {
	LEAST,
	OR,
	AND,
	NOT,
	IN,
	COMPARED,
	BIT_OR,
	BIT_XOR,
	BIT_AND,
	SHIFTED,
	ADDED,
	MULTIPLIED,
	NEGATED,
	POWER,
};

struct Operation {
	const char *sign;
	Binds binds;
	const char *in_engine;
};

constexpr Operation OPERATIONS[] = { { "or", OR, " or " }, { "||", OR, " or " }, { "and", AND, " and " }, { "&&", AND, " and " }, { "in", IN, " in " },
	{ "==", COMPARED, " == " }, { "!=", COMPARED, " != " }, { "<", COMPARED, " < " }, { "<=", COMPARED, " <= " }, { ">", COMPARED, " > " },
	{ ">=", COMPARED, " >= " }, { "|", BIT_OR, " | " }, { "^", BIT_XOR, " ^ " }, { "&", BIT_AND, " & " }, { "<<", SHIFTED, " << " }, { ">>", SHIFTED, " >> " },
	{ "+", ADDED, " + " }, { "-", ADDED, " - " }, { "*", MULTIPLIED, " * " }, { "/", MULTIPLIED, " / " }, { "%", MULTIPLIED, " % " }, { "**", POWER, " ** " } };

class Reader {
	Formula &formula;
	Tokens tokens;
	Token token;
	Token before;
	PackedStringArray input_names;
	int tokens_read = 0;
	int depth = 0;

	bool failed() const { return !formula.problem.is_empty(); }

	String fail(const String &why) {
		if (!failed()) {
			formula.problem = why;
		}
		token = Token();
		return String();
	}

	void step() {
		before = token;
		token = tokens.next();
		tokens_read++;
		if (tokens_read > MOST_TOKENS) {
			fail("it is too long; work it out in two steps, the first into a variable");
		}
	}

	bool is_sign(const char *sign) const { return token.kind == Token::SIGN && token.text == sign; }

	static String shown(const Token &one) {
		switch (one.kind) {
			case Token::END:
				return "the end";
			case Token::TEXT:
				return "\"" + one.text + "\"";
			case Token::BRACED:
				return "{" + one.text + "}";
			default:
				return one.text;
		}
	}

	bool take(const char *sign) {
		if (!is_sign(sign)) {
			if (ends_an_operand(before) && begins_an_operand(token)) {
				fail_side_by_side();
			} else {
				fail(vformat("%s was expected where %s stands", sign, shown(token)));
			}
			return false;
		}
		step();
		return true;
	}

	static bool ends_an_operand(const Token &one) { return one.kind != Token::SIGN ? one.kind != Token::END : one.text == ")" || one.text == "]"; }
	static bool begins_an_operand(const Token &one) { return one.kind != Token::SIGN ? one.kind != Token::END : one.text == "("; }

	void fail_side_by_side() {
		const bool chooses = token.text == "if" || token.text == "else" || token.text == "is" || token.text == "as";
		fail(chooses ? vformat("a formula has no \"%s\"; a Check chooses between two", token.text)
					 : vformat("%s stands behind %s with nothing between them", shown(token), shown(before)));
	}

	String input(const Variant &value) {
		const String name = vformat("p%d", input_names.size());
		input_names.push_back(name);
		formula.inputs.push_back(value);
		return name;
	}

	String variable(const StringName &name) {
		for (const Formula::Place &place : formula.places) {
			if (place.variable == name) {
				return input_names[place.input];
			}
		}
		Formula::Place place;
		place.variable = name;
		place.input = input_names.size();
		formula.places.push_back(place);
		return input(Variant());
	}

	String by_work(const Callable &work, const String &arguments) { return vformat("%s.call(%s)", input(work), arguments); }

	// What stands between brackets, with commas between; the opening one has been taken.
	PackedStringArray listed(const char *closes) {
		PackedStringArray list;
		while (!failed() && !is_sign(closes)) {
			list.push_back(expression(LEAST));
			if (!is_sign(",")) {
				break;
			}
			step();
		}
		take(closes);
		return list;
	}

	String function(const String &name) {
		const PackedStringArray arguments = listed(")");
		const String together = String(", ").join(arguments);
		const bool in_degrees = name == "sine" || name == "cosine" || name == "tangent";
		const int64_t wanted = in_degrees ? 1 : (name == "angle_of" || name == "posmod" ? 2 : -1);
		if (wanted >= 0 && arguments.size() != wanted) {
			return fail(vformat("%s() takes %s", name, wanted == 1 ? "one number, an angle in degrees" : (name == "posmod" ? "two numbers" : "two, x and y")));
		}
		if (in_degrees) {
			return vformat("%s(deg_to_rad(%s))", name == "sine" ? "sin" : (name == "cosine" ? "cos" : "tan"), together);
		}
		if (name == "angle_of") {
			return vformat("rad_to_deg(atan2(%s, %s))", arguments[1], arguments[0]);
		}
		if (name == "posmod") {
			return by_work(formula_work::positive_remainder(), together);
		}
		if (name == "str") {
			return by_work(formula_work::text(), "[" + together + "]");
		}
		if (name == "Color" && (arguments.size() == 1 || arguments.size() == 2)) {
			return by_work(formula_work::color(), "[" + together + "]");
		}
		if (formula_words::is_function(name) || formula_words::is_made(name)) {
			return vformat("%s(%s)", name, together);
		}
		return fail(vformat("it has no function %s(); a formula works with its variables, with the functions of numbers and with nothing else", name));
	}

	String method(const String &base, const String &name) {
		const PackedStringArray arguments = listed(")");
		const String together = String(", ").join(arguments);
		if (name == "rotated" || name == "bounce" || name == "reflect" || name == "slide") {
			return by_work(formula_work::turned(), vformat("%s, %s, [%s]", base, input(name), together));
		}
		if (formula_words::is_method(name)) {
			return vformat("%s.%s(%s)", base, name, together);
		}
		return fail(vformat("it has no .%s(); a formula asks places, colors, texts and lists, and never a node or anything else of the game", name));
	}

	String after_point(const String &base) {
		const Token field = token;
		if (field.kind != Token::NAME) {
			return fail(vformat("a point is followed by %s", shown(token)));
		}
		step();
		if (is_sign("(")) {
			step();
			return method(base, field.text);
		}
		return vformat("%s[%s]", base, input(field.text));
	}

	String operand() {
		const Token taken = token;
		step();
		Variant constant;
		switch (taken.kind) {
			case Token::NUMBER:
			case Token::TEXT:
				return input(taken.value);
			case Token::BRACED:
				return variable(taken.text);
			case Token::NAME:
				if (is_sign("(")) {
					step();
					return function(taken.text);
				}
				if (formula_words::is_constant(taken.text, constant)) {
					formula.names_endless |= taken.text == "INF";
					return input(constant);
				}
				if (taken.text == "and" || taken.text == "or" || taken.text == "in") {
					break;
				}
				return variable(taken.text);
			case Token::SIGN:
				if (taken.text == "(") {
					const String inside = expression(LEAST);
					take(")");
					return "(" + inside + ")";
				}
				if (taken.text == "[") {
					return "[" + String(", ").join(listed("]")) + "]";
				}
				break;
			case Token::END:
				return fail("it ends where something is missing");
		}
		return fail(vformat("something is missing before %s", shown(taken)));
	}

	String with_what_follows() {
		String base = operand();
		while (!failed()) {
			if (is_sign(".")) {
				step();
				base = after_point(base);
			} else if (is_sign("[")) {
				step();
				const String place = expression(LEAST);
				take("]");
				base = vformat("%s[%s]", base, place);
			} else {
				break;
			}
		}
		return base;
	}

	String with_what_precedes() {
		if (is_sign("+") || is_sign("-")) {
			const bool turns = is_sign("-");
			step();
			const String inside = expression(NEGATED);
			return turns ? "(-" + inside + ")" : inside;
		}
		if (is_sign("!") || (token.kind == Token::NAME && token.text == "not")) {
			step();
			return "(not " + expression(NOT) + ")";
		}
		return with_what_follows();
	}

	const Operation *operation() const {
		if (token.kind == Token::SIGN || token.kind == Token::NAME) {
			for (const Operation &one : OPERATIONS) {
				if (token.text == one.sign) {
					return &one;
				}
			}
		}
		return nullptr;
	}

	// The smallest whole number divided by -1 stops the engine, and so does a place divided by what has nothing but zeros in its
	// lower 32 bits, so that what may be that goes another way.
	static bool divides_safely(const Token &by) {
		if (by.kind != Token::NUMBER) {
			return false;
		}
		const int64_t number = by.value.get_type() == Variant::INT ? int64_t(by.value) : 1;
		return number > 0 && number <= std::numeric_limits<int32_t>::max();
	}

	String expression(int lowest) {
		depth++;
		if (depth > DEEPEST) {
			return fail("there is too much within brackets; work it out in two steps, the first into a variable");
		}
		String left = with_what_precedes();
		for (const Operation *found = operation(); !failed() && found != nullptr && found->binds >= lowest; found = operation()) {
			step();
			const Token first_of_right = token;
			const int64_t read_before = tokens_read;
			const String right = expression(found->binds + 1);
			const bool is_one_token = tokens_read == read_before + 1;
			if (found->sign[0] == '%') {
				left = by_work(formula_work::remainder(), left + ", " + right);
			} else if (found->sign[0] == '/' && !(is_one_token && divides_safely(first_of_right))) {
				left = by_work(formula_work::division(), left + ", " + right);
			} else {
				left = "(" + left + String(found->in_engine) + right + ")";
			}
		}
		depth--;
		return left;
	}

public:
	explicit Reader(Formula &read_into) : formula(read_into), tokens(read_into.text, read_into.problem) {}

	void read() {
		if (formula.text.length() > MOST_LETTERS) {
			fail("it is too long; work it out in two steps, the first into a variable");
			return;
		}
		step();
		const String in_engine = expression(LEAST);
		if (!failed() && token.kind != Token::END) {
			if (begins_an_operand(token)) {
				fail_side_by_side();
			} else {
				fail(vformat("%s is one too many", shown(token)));
			}
		}
		if (failed()) {
			return;
		}
		formula.expression.instantiate();
		if (formula.expression->parse(in_engine, input_names) != OK) {
			const String said = formula.expression->get_error_text().trim_suffix(".");
			formula.problem = said.left(1).to_lower() + said.substr(1);
		}
	}
};

} // namespace

void Formula::read(const String &formula) {
	if (is_read && text == formula) {
		return;
	}
	is_read = true;
	text = formula;
	problem = String();
	expression.unref();
	inputs = Array();
	places.clear();
	names_endless = false;
	if (!text.strip_edges().is_empty()) {
		Reader(*this).read();
	}
}

PackedStringArray Formula::variables() const {
	PackedStringArray names;
	for (const Place &place : places) {
		names.push_back(place.variable);
	}
	return names;
}

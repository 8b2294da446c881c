#include "value_probe.hpp"

#include "math_case.hpp"
#include "variant_checks.hpp"

#include <godot_cpp/variant/callable_custom.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

using namespace godot;

namespace bindings_test {

namespace {

// Replies with a value that it owns, as long as its target lives.
class ReplyCallable : public CallableCustom {
	ObjectID target;
	Variant reply;

	static bool is_same(const CallableCustom *a, const CallableCustom *b) {
		return a->get_object() == b->get_object();
	}
	static bool comes_before(const CallableCustom *a, const CallableCustom *b) {
		return a->get_object() < b->get_object();
	}

public:
	ReplyCallable(ObjectID target_id, const Variant &value) :
			target(target_id), reply(value) {}

	uint32_t hash() const override { return static_cast<uint32_t>(static_cast<uint64_t>(target)); }
	String get_as_text() const override { return "Reply"; }
	CompareEqualFunc get_compare_equal_func() const override { return &ReplyCallable::is_same; }
	CompareLessFunc get_compare_less_func() const override { return &ReplyCallable::comes_before; }
	ObjectID get_object() const override { return target; }
	int get_argument_count(bool &r_is_valid) const override {
		r_is_valid = true;
		return 1;
	}

	void call(const Variant **arguments, int count, Variant &r_return, GDExtensionCallError &r_error) const override {
		if (!is_valid()) {
			r_error.error = GDEXTENSION_CALL_ERROR_INSTANCE_IS_NULL;
			return;
		}
		if (count != 1) {
			r_error.error = count < 1 ? GDEXTENSION_CALL_ERROR_TOO_FEW_ARGUMENTS : GDEXTENSION_CALL_ERROR_TOO_MANY_ARGUMENTS;
			r_error.expected = 1;
			return;
		}
		r_return = Array::make(*arguments[0], reply);
	}
};

template <typename T>
Variant repeated(const Variant &packed) {
	T values = packed;
	values.append_array(values.duplicate());
	return values;
}

String describe(const String &text, int64_t number) {
	return text + String::num_int64(number);
}

} // namespace

int64_t BindingsCounted::live = 0;

void BindingsCounted::_bind_methods() {
	ClassDB::bind_static_method("BindingsCounted", D_METHOD("get_live"), &BindingsCounted::get_live);
	ClassDB::bind_method(D_METHOD("set_number", "value"), &BindingsCounted::set_number);
	ClassDB::bind_method(D_METHOD("get_number"), &BindingsCounted::get_number);
	ADD_PROPERTY(PropertyInfo(Variant::INT, "number"), "set_number", "get_number");
}

Ref<BindingsCounted> BindingsValues::make_counted(int64_t number) const {
	Ref<BindingsCounted> counted;
	counted.instantiate();
	counted->set_number(number);
	return counted;
}

int64_t BindingsValues::number_of(const Ref<BindingsCounted> &counted) const {
	return counted.is_valid() ? counted->get_number() : -1;
}

// Copies, moves and drops a value in every way the bindings offer; the caller sees from the reference count whether all was given back.
void BindingsValues::churn(const Variant &value, int64_t times) const {
	for (int64_t i = 0; i < times; i++) {
		Variant copy = value;
		Variant moved = std::move(copy);
		copy = moved;
		const Variant &itself = copy;
		copy = itself;
		moved = Variant();
		Array array = Array::make(copy, copy);
		array.append(array[0]);
		Dictionary dictionary;
		dictionary[copy] = array.duplicate();
		dictionary["again"] = copy;
		Variant list = array;
		const Array back = list;
		list.clear();
		Ref<RefCounted> reference = copy;
		Ref<RefCounted> other = reference;
		reference.unref();
		copy = other;
		const Callable bound = Callable(other.ptr(), "get_reference_count").bind(copy);
		moved = bound;
	}
}

Array BindingsValues::reversed(const Array &array) const {
	Array result;
	for (int64_t i = array.size() - 1; i >= 0; i--) {
		result.append(array[i]);
	}
	return result;
}

Dictionary BindingsValues::inverted(const Dictionary &dictionary) const {
	Dictionary result;
	const Array keys = dictionary.keys();
	for (const Variant &key : keys) {
		result[dictionary[key]] = key;
	}
	return result;
}

Variant BindingsValues::doubled(const Variant &packed) const {
	switch (packed.get_type()) {
		case Variant::PACKED_BYTE_ARRAY:
			return repeated<PackedByteArray>(packed);
		case Variant::PACKED_INT32_ARRAY:
			return repeated<PackedInt32Array>(packed);
		case Variant::PACKED_INT64_ARRAY:
			return repeated<PackedInt64Array>(packed);
		case Variant::PACKED_FLOAT32_ARRAY:
			return repeated<PackedFloat32Array>(packed);
		case Variant::PACKED_FLOAT64_ARRAY:
			return repeated<PackedFloat64Array>(packed);
		case Variant::PACKED_STRING_ARRAY:
			return repeated<PackedStringArray>(packed);
		case Variant::PACKED_VECTOR2_ARRAY:
			return repeated<PackedVector2Array>(packed);
		case Variant::PACKED_VECTOR3_ARRAY:
			return repeated<PackedVector3Array>(packed);
		case Variant::PACKED_COLOR_ARRAY:
			return repeated<PackedColorArray>(packed);
		case Variant::PACKED_VECTOR4_ARRAY:
			return repeated<PackedVector4Array>(packed);
		default:
			return Variant();
	}
}

int64_t BindingsValues::sum(const TypedArray<int64_t> &numbers) const {
	int64_t total = 0;
	for (int64_t i = 0; i < numbers.size(); i++) {
		total += static_cast<int64_t>(numbers[i]);
	}
	return total;
}

TypedArray<Node> BindingsValues::children_of(Node *parent) const {
	TypedArray<Node> children;
	for (int32_t i = 0; parent && i < parent->get_child_count(); i++) {
		children.append(parent->get_child(i));
	}
	return children;
}

TypedDictionary<StringName, int64_t> BindingsValues::lengths(const TypedArray<StringName> &names) const {
	TypedDictionary<StringName, int64_t> result;
	for (int64_t i = 0; i < names.size(); i++) {
		result[names[i]] = String(names[i]).length();
	}
	return result;
}

String BindingsValues::with_defaults(int64_t number, const String &text, double share, const Array &list) const {
	return vformat("%d %s %.2f %d", number, text, share, list.size());
}

Variant BindingsValues::join_all(const Variant **arguments, GDExtensionInt count, GDExtensionCallError &error) {
	String joined;
	for (GDExtensionInt i = 0; i < count; i++) {
		if (arguments[i]->get_type() == Variant::NIL) {
			error.error = GDEXTENSION_CALL_ERROR_INVALID_ARGUMENT;
			error.argument = static_cast<int32_t>(i);
			error.expected = GDEXTENSION_VARIANT_TYPE_STRING;
			return Variant();
		}
		joined = joined + (i > 0 ? "," : "") + arguments[i]->stringify();
	}
	error.error = GDEXTENSION_CALL_OK;
	return joined;
}

BitField<BindingsValues::Trait> BindingsValues::with_trait(BitField<Trait> traits, Trait trait) const {
	traits.set_flag(trait);
	return traits;
}

Callable BindingsValues::custom_callable(Object *target, const Variant &reply) const {
	return Callable(memnew(ReplyCallable(target ? ObjectID(target->get_instance_id()) : ObjectID(), reply)));
}

Callable BindingsValues::own_method() {
	return callable_mp(this, &BindingsValues::note);
}

Callable BindingsValues::method_of(Node *node) const {
	return callable_mp(node, &Node::get_child_count);
}

Callable BindingsValues::static_function() const {
	return callable_mp_static(&describe);
}

bool BindingsValues::callables_agree() {
	const Callable first = callable_mp(this, &BindingsValues::note);
	const Callable second = callable_mp(this, &BindingsValues::note);
	const Callable getter = callable_mp(this, &BindingsValues::get_calls);
	return first == second && first != getter && first.hash() == second.hash() && first.get_object() == this && first.is_custom() &&
			first.get_custom() != nullptr && callable_mp_static(&describe) == callable_mp_static(&describe);
}

int64_t BindingsValues::note(int64_t amount, const String &text) {
	calls += amount;
	return calls + text.length();
}

void BindingsValues::emit_happened(int64_t number, const Ref<BindingsCounted> &counted) {
	emit_signal("happened", number, counted);
}

bool BindingsValues::connect_itself() {
	const Callable listener = callable_mp(this, &BindingsValues::on_happened);
	return connect("happened", listener) == OK && is_connected("happened", listener);
}

void BindingsValues::on_happened(int64_t number, const Ref<BindingsCounted> &counted) {
	calls += number;
	held = counted;
}

PackedStringArray BindingsValues::check_variants() const {
	return bindings_test::check_variants();
}

Array BindingsValues::math_cases() const {
	Array cases;
	for (const MathCase *math_case : all_math_cases()) {
		Array types;
		for (const char *type : math_case->types) {
			if (type) {
				types.append(type);
			}
		}
		cases.append(Array::make(math_case->expression, types));
	}
	return cases;
}

Variant BindingsValues::math_result(int64_t index, const Array &arguments) const {
	const LocalVector<const MathCase *> cases = all_math_cases();
	ERR_FAIL_INDEX_V(index, static_cast<int64_t>(cases.size()), Variant());
	Variant values[MathCase::MAX_ARGUMENTS];
	for (int64_t i = 0; i < arguments.size() && i < MathCase::MAX_ARGUMENTS; i++) {
		values[i] = arguments[i];
	}
	return cases[static_cast<uint32_t>(index)]->compute(values);
}

void BindingsValues::_bind_methods() {
	ClassDB::bind_method(D_METHOD("echo", "value"), &BindingsValues::echo);
	ClassDB::bind_method(D_METHOD("echo_ref", "value"), &BindingsValues::echo_ref);
	ClassDB::bind_method(D_METHOD("echo_object", "value"), &BindingsValues::echo_object);
	ClassDB::bind_method(D_METHOD("echo_string", "value"), &BindingsValues::echo_string);
	ClassDB::bind_method(D_METHOD("echo_name", "value"), &BindingsValues::echo_name);
	ClassDB::bind_method(D_METHOD("echo_path", "value"), &BindingsValues::echo_path);

	ClassDB::bind_method(D_METHOD("make_counted", "number"), &BindingsValues::make_counted);
	ClassDB::bind_method(D_METHOD("number_of", "counted"), &BindingsValues::number_of);
	ClassDB::bind_method(D_METHOD("hold", "value"), &BindingsValues::hold);
	ClassDB::bind_method(D_METHOD("hold_value", "value"), &BindingsValues::hold_value);
	ClassDB::bind_method(D_METHOD("get_held_value"), &BindingsValues::get_held_value);
	ClassDB::bind_method(D_METHOD("churn", "value", "times"), &BindingsValues::churn);
	ClassDB::bind_method(D_METHOD("holds_live_object"), &BindingsValues::holds_live_object);

	ClassDB::bind_method(D_METHOD("append_to", "array", "value"), &BindingsValues::append_to);
	ClassDB::bind_method(D_METHOD("reversed", "array"), &BindingsValues::reversed);
	ClassDB::bind_method(D_METHOD("inverted", "dictionary"), &BindingsValues::inverted);
	ClassDB::bind_method(D_METHOD("doubled", "packed"), &BindingsValues::doubled);
	ClassDB::bind_method(D_METHOD("sum", "numbers"), &BindingsValues::sum);
	ClassDB::bind_method(D_METHOD("children_of", "parent"), &BindingsValues::children_of);
	ClassDB::bind_method(D_METHOD("lengths", "names"), &BindingsValues::lengths);
	ClassDB::bind_method(D_METHOD("is_refused", "nodes"), &BindingsValues::is_refused);

	ClassDB::bind_method(D_METHOD("with_defaults", "number", "text", "share", "list"), &BindingsValues::with_defaults, DEFVAL("none"), DEFVAL(0.5), DEFVAL(Array()));
	MethodInfo join("join_all", PropertyInfo(Variant::STRING, "first"));
	ClassDB::bind_vararg_method(METHOD_FLAGS_DEFAULT, "join_all", &BindingsValues::join_all, join);
	ClassDB::bind_static_method("BindingsValues", D_METHOD("add", "a", "b"), &BindingsValues::add);
	ClassDB::bind_method(D_METHOD("next_season", "season"), &BindingsValues::next_season);
	ClassDB::bind_method(D_METHOD("with_trait", "traits", "trait"), &BindingsValues::with_trait);
	ClassDB::bind_method(D_METHOD("as_small", "value"), &BindingsValues::as_small);
	ClassDB::bind_method(D_METHOD("as_single", "value"), &BindingsValues::as_single);

	ClassDB::bind_method(D_METHOD("custom_callable", "target", "reply"), &BindingsValues::custom_callable);
	ClassDB::bind_method(D_METHOD("own_method"), &BindingsValues::own_method);
	ClassDB::bind_method(D_METHOD("method_of", "node"), &BindingsValues::method_of);
	ClassDB::bind_method(D_METHOD("static_function"), &BindingsValues::static_function);
	ClassDB::bind_method(D_METHOD("callables_agree"), &BindingsValues::callables_agree);
	ClassDB::bind_method(D_METHOD("hold_callable", "callable"), &BindingsValues::hold_callable);
	ClassDB::bind_method(D_METHOD("call_held", "arguments"), &BindingsValues::call_held);
	ClassDB::bind_method(D_METHOD("call_back", "callable", "argument"), &BindingsValues::call_back);
	ClassDB::bind_method(D_METHOD("note", "amount", "text"), &BindingsValues::note);
	ClassDB::bind_method(D_METHOD("get_calls"), &BindingsValues::get_calls);

	ClassDB::bind_method(D_METHOD("emit_happened", "number", "counted"), &BindingsValues::emit_happened);
	ClassDB::bind_method(D_METHOD("connect_itself"), &BindingsValues::connect_itself);
	ADD_SIGNAL(MethodInfo("happened", PropertyInfo(Variant::INT, "number"), PropertyInfo(Variant::OBJECT, "counted", PROPERTY_HINT_RESOURCE_TYPE, "BindingsCounted")));

	ClassDB::bind_method(D_METHOD("check_variants"), &BindingsValues::check_variants);
	ClassDB::bind_method(D_METHOD("math_cases"), &BindingsValues::math_cases);
	ClassDB::bind_method(D_METHOD("math_result", "index", "arguments"), &BindingsValues::math_result);

	BIND_ENUM_CONSTANT(SPRING);
	BIND_ENUM_CONSTANT(SUMMER);
	BIND_ENUM_CONSTANT(AUTUMN);
	BIND_ENUM_CONSTANT(WINTER);
	BIND_BITFIELD_FLAG(TRAIT_LIGHT);
	BIND_BITFIELD_FLAG(TRAIT_LOUD);
}

} // namespace bindings_test

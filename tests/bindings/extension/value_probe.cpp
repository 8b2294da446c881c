#include "value_probe.hpp"

#include "math_cases.hpp"

#include <godot_cpp/variant/callable_custom.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

using namespace godot;

namespace bindings_test {

namespace {

// Replies with a value that it owns, as long as its target lives.
class ReplyCallable : public CallableCustom {
	ObjectID target;
	Variant reply;

	static bool is_same(const CallableCustom *a, const CallableCustom *b) { return a->get_object() == b->get_object(); }
	static bool comes_before(const CallableCustom *a, const CallableCustom *b) { return a->get_object() < b->get_object(); }

public:
	ReplyCallable(ObjectID target_id, const Variant &value) : target(target_id), reply(value) {}

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

// What is packed, behind itself, for the type that it is of.
template <typename... T>
Variant repeated(const Variant &packed) {
	const auto twice = [](auto values) -> Variant {
		values.append_array(values.duplicate());
		return values;
	};
	Variant result;
	((packed.get_type() == Variant(T()).get_type() ? void(result = twice(T(packed))) : void()), ...);
	return result;
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

Variant BindingsValues::doubled(const Variant &packed) const {
	return repeated<PackedByteArray, PackedInt32Array, PackedInt64Array, PackedFloat32Array, PackedFloat64Array, PackedStringArray, PackedVector2Array,
			PackedVector3Array, PackedColorArray, PackedVector4Array>(packed);
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

Callable BindingsValues::custom_callable(Object *target, const Variant &reply) const {
	return Callable(memnew(ReplyCallable(target ? ObjectID(target->get_instance_id()) : ObjectID(), reply)));
}

Callable BindingsValues::own_method() {
	return callable_mp(this, &BindingsValues::note);
}

Callable BindingsValues::method_of(Node *node) const {
	return callable_mp(node, &Node::get_child_count);
}

int64_t BindingsValues::note(int64_t amount, const String &text) {
	calls += amount;
	return calls + text.length();
}

PackedStringArray BindingsValues::check_variants() const {
	return bindings_test::check_variants();
}

Array BindingsValues::math_cases() const {
	Array cases;
	for (int64_t i = 0; i < MATH_CASE_COUNT; i++) {
		cases.append(Array::make(MATH_CASES[i].expression, String(MATH_CASES[i].types).split(",")));
	}
	return cases;
}

Variant BindingsValues::math_result(int64_t index, const Array &arguments) const {
	ERR_FAIL_INDEX_V(index, MATH_CASE_COUNT, Variant());
	Variant values[MathCase::MAX_ARGUMENTS];
	for (int64_t i = 0; i < arguments.size() && i < MathCase::MAX_ARGUMENTS; i++) {
		values[i] = arguments[i];
	}
	return MATH_CASES[index].compute(values);
}

void BindingsValues::_bind_methods() {
	ClassDB::bind_method(D_METHOD("echo", "value"), &BindingsValues::echo);
	ClassDB::bind_method(D_METHOD("echo_ref", "value"), &BindingsValues::echo_ref);
	ClassDB::bind_method(D_METHOD("echo_object", "value"), &BindingsValues::echo_object);
	ClassDB::bind_method(D_METHOD("echo_string", "value"), &BindingsValues::echo_string);
	ClassDB::bind_method(D_METHOD("make_counted", "number"), &BindingsValues::make_counted);
	ClassDB::bind_method(D_METHOD("number_of", "counted"), &BindingsValues::number_of);
	ClassDB::bind_method(D_METHOD("hold", "value"), &BindingsValues::hold);
	ClassDB::bind_method(D_METHOD("hold_value", "value"), &BindingsValues::hold_value);
	ClassDB::bind_method(D_METHOD("churn", "value", "times"), &BindingsValues::churn);
	ClassDB::bind_method(D_METHOD("holds_live_object"), &BindingsValues::holds_live_object);
	ClassDB::bind_method(D_METHOD("append_to", "array", "value"), &BindingsValues::append_to);
	ClassDB::bind_method(D_METHOD("doubled", "packed"), &BindingsValues::doubled);
	ClassDB::bind_method(D_METHOD("sum", "numbers"), &BindingsValues::sum);
	ClassDB::bind_method(D_METHOD("children_of", "parent"), &BindingsValues::children_of);
	ClassDB::bind_method(D_METHOD("lengths", "names"), &BindingsValues::lengths);
	ClassDB::bind_method(D_METHOD("with_defaults", "number", "text", "share"), &BindingsValues::with_defaults, DEFVAL("none"), DEFVAL(0.5));
	ClassDB::bind_static_method("BindingsValues", D_METHOD("add", "a", "b"), &BindingsValues::add);
	ClassDB::bind_method(D_METHOD("as_small", "value"), &BindingsValues::as_small);
	ClassDB::bind_method(D_METHOD("custom_callable", "target", "reply"), &BindingsValues::custom_callable);
	ClassDB::bind_method(D_METHOD("own_method"), &BindingsValues::own_method);
	ClassDB::bind_method(D_METHOD("method_of", "node"), &BindingsValues::method_of);
	ClassDB::bind_method(D_METHOD("hold_callable", "callable"), &BindingsValues::hold_callable);
	ClassDB::bind_method(D_METHOD("call_held", "arguments"), &BindingsValues::call_held);
	ClassDB::bind_method(D_METHOD("note", "amount", "text"), &BindingsValues::note);
	ClassDB::bind_method(D_METHOD("get_calls"), &BindingsValues::get_calls);
	ClassDB::bind_method(D_METHOD("check_variants"), &BindingsValues::check_variants);
	ClassDB::bind_method(D_METHOD("math_cases"), &BindingsValues::math_cases);
	ClassDB::bind_method(D_METHOD("math_result", "index", "arguments"), &BindingsValues::math_result);
}

} // namespace bindings_test

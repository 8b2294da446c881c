#include "value_probe.hpp"

#include <godot_cpp/classes/object.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <limits>

using namespace godot;

namespace bindings_test {

namespace {

// Only the text of what was not true is kept, so that a failure names itself.
#define CHECK(m_condition) ((m_condition) ? void() : void(failures.append("Variant: " #m_condition)))

void check_numbers(PackedStringArray &failures) {
	CHECK(static_cast<uint64_t>(Variant(std::numeric_limits<uint64_t>::max())) == std::numeric_limits<uint64_t>::max());
	CHECK(static_cast<int64_t>(Variant("42")) == 42);
	CHECK(!static_cast<bool>(Variant(Array())));
	CHECK(static_cast<Vector2>(Variant(int64_t(3))) == Vector2());
	const double nan = std::numeric_limits<double>::quiet_NaN();
	CHECK(Variant(int64_t(1)) == Variant(int32_t(1)));
	CHECK(Variant(int64_t(1)) != Variant(1.0));
	CHECK(Variant(nan) != Variant(nan));
	CHECK(Variant(Array::make(1, "two")) == Variant(Array::make(1, "two")));
	CHECK(Variant(int64_t(1)) < Variant(int64_t(2)));
	CHECK(Variant(int64_t(9)) < Variant("a"));
}

void check_containers(PackedStringArray &failures) {
	Variant list = Array::make(int64_t(3), int64_t(4));
	bool valid = false;
	bool out_of_bounds = false;
	CHECK(static_cast<int64_t>(list.get_indexed(1, valid, out_of_bounds)) == 4);
	CHECK(valid && !out_of_bounds);
	list.get_indexed(2, valid, out_of_bounds);
	CHECK(out_of_bounds);
	list.set_indexed(0, "three", valid, out_of_bounds);
	CHECK(valid && static_cast<String>(list.get(int64_t(0))) == "three");

	Variant table = Dictionary();
	table.set("b", int64_t(2), &valid);
	CHECK(valid && static_cast<int64_t>(table.get("b", &valid)) == 2);
	table.get("c", &valid);
	CHECK(!valid);

	const Variant point = Vector2(1, 2);
	CHECK(static_cast<double>(point.get_named("y", valid)) == 2.0);
	point.get_named("nothing", valid);
	CHECK(!valid);
}

void check_calls(PackedStringArray &failures) {
	Variant text = "Some Text";
	CHECK(static_cast<String>(text.call("substr", int64_t(5), int64_t(4))) == "Text");

	Variant result;
	GDExtensionCallError error;
	text.callp("to_nothing", nullptr, 0, result, error);
	CHECK(error.error == GDEXTENSION_CALL_ERROR_INVALID_METHOD && result.get_type() == Variant::NIL);
	const Variant wrong = Array();
	const Variant *arguments[] = { &wrong };
	text.callp("substr", arguments, 1, result, error);
	CHECK(error.error == GDEXTENSION_CALL_ERROR_INVALID_ARGUMENT && error.argument == 0);

	bool valid = false;
	Variant::evaluate(Variant::OP_ADD, text, "!", result, valid);
	CHECK(valid && static_cast<String>(result) == "Some Text!");
	Variant::evaluate(Variant::OP_ADD, text, Array(), result, valid);
	CHECK(!valid);
	Variant::evaluate(Variant::OP_ADD, text, "!", text, valid);
	CHECK(!valid);

	CHECK(vformat("%s has %d of %.1f", "It", 3, 2.5) == "It has 3 of 2.5");
}

void check_texts(PackedStringArray &failures) {
	const String degree = String::utf8("\xc2\xb0");
	CHECK(degree.length() == 1 && degree == String(U"\u00b0"));
	CHECK(String("\xb0") == degree && degree == "\xb0" && degree != "\xc2\xb0");
	CHECK(StringName("\xb0") == StringName(degree) && static_cast<String>(Variant("\xb0")) == degree);
	CHECK(vformat("%s", "\xb0") == degree && "\xb0" + degree == String::chr(0xb0) + degree);
	CHECK(String(U"\u00e4\U0001f600").length() == 2);
	String twice = "ab";
	twice += twice;
	CHECK(twice == "abab" && twice + 'c' == "ababc" && "x" + twice == "xabab");
	CHECK(String::num_real(3.0) == "3.0" && String::num_real(0.1) == "0.1");
	CHECK(StringName("name") + String("!") == "name!" && StringName("name") != "nam");
}

void check_objects(PackedStringArray &failures) {
	Object *object = memnew(Object);
	const Variant holder = object;
	const ObjectID id(object->get_instance_id());
	CHECK(holder.get_validated_object() == object);
	CHECK(static_cast<ObjectID>(holder) == id);
	CHECK(static_cast<Object *>(holder) == object);
	memdelete(object);
	bool freed = false;
	CHECK(holder.get_validated_object() == nullptr);
	CHECK(static_cast<Object *>(holder) == nullptr);
	CHECK(holder.get_validated_object_with_check(freed) == nullptr && freed);
	CHECK(static_cast<ObjectID>(holder) == id);
	CHECK(ObjectDB::get_instance(id) == nullptr);

	const Variant nothing = static_cast<Object *>(nullptr);
	CHECK(nothing.get_type() == Variant::OBJECT && nothing.get_validated_object() == nullptr);
	nothing.get_validated_object_with_check(freed);
	CHECK(!freed);
}

void check_lifetimes(PackedStringArray &failures) {
	Variant value = "first";
	const Variant &itself = value;
	value = itself;
	Variant taken = std::move(value);
	CHECK(value.get_type() == Variant::NIL && static_cast<String>(taken) == "first");
	taken = Array::make(taken, taken);
	Array array = taken;
	array.append(int64_t(3));
	CHECK(static_cast<Array>(taken).size() == 3);
	taken = static_cast<Array>(taken)[0];
	CHECK(static_cast<String>(taken) == "first");
	taken.clear();
	CHECK(taken.get_type() == Variant::NIL);

	PackedInt32Array packed = { 1, 2, 3 };
	const Variant shared = packed;
	packed.set(0, 9);
	CHECK(static_cast<PackedInt32Array>(shared)[0] == 1);
	CHECK(static_cast<Basis>(Variant(Basis().scaled(Vector3(2, 2, 2)))) == Basis().scaled(Vector3(2, 2, 2)));
	CHECK(static_cast<String>(Variant(static_cast<const char *>(nullptr))) == "");
}

} // namespace

PackedStringArray check_variants() {
	PackedStringArray failures;
	check_numbers(failures);
	check_containers(failures);
	check_calls(failures);
	check_texts(failures);
	check_objects(failures);
	check_lifetimes(failures);
	return failures;
}

} // namespace bindings_test

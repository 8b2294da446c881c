#include "variant_checks.hpp"

#include <godot_cpp/classes/object.hpp>
#include <godot_cpp/classes/ref.hpp>
#include <godot_cpp/classes/ref_counted.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <cmath>
#include <limits>

using namespace godot;

namespace bindings_test {

namespace {

// Only the text of what was not true is kept, so that a failure names itself.
class Checks {
	PackedStringArray failures;

public:
	void operator()(bool is_true, const char *what) {
		if (!is_true) {
			failures.append(String("Variant: ") + what);
		}
	}
	PackedStringArray result() const { return failures; }
};

#define CHECK(m_condition) check((m_condition), #m_condition)

void check_numbers(Checks &check) {
	CHECK(Variant().get_type() == Variant::NIL);
	CHECK(Variant(true).get_type() == Variant::BOOL);
	CHECK(Variant(int8_t(-5)).get_type() == Variant::INT);
	CHECK(static_cast<int64_t>(Variant(int8_t(-5))) == -5);
	CHECK(static_cast<uint8_t>(Variant(uint8_t(200))) == 200);
	CHECK(static_cast<int64_t>(Variant(std::numeric_limits<int64_t>::min())) == std::numeric_limits<int64_t>::min());
	CHECK(static_cast<uint64_t>(Variant(std::numeric_limits<uint64_t>::max())) == std::numeric_limits<uint64_t>::max());
	CHECK(Variant(1.5f).get_type() == Variant::FLOAT);
	CHECK(static_cast<double>(Variant(1.5)) == 1.5);
	CHECK(static_cast<int64_t>(Variant(2.9)) == 2);
	CHECK(static_cast<int64_t>(Variant(true)) == 1);
	CHECK(static_cast<double>(Variant(int64_t(7))) == 7.0);
	CHECK(static_cast<double>(Variant(true)) == 1.0);
	CHECK(static_cast<int64_t>(Variant("42")) == 42);
	CHECK(static_cast<double>(Variant("2.5")) == 2.5);
	CHECK(static_cast<int64_t>(Variant()) == 0);
	CHECK(static_cast<bool>(Variant(int64_t(3))));
	CHECK(!static_cast<bool>(Variant(0.0)));
	CHECK(static_cast<bool>(Variant("text")));
	CHECK(!static_cast<bool>(Variant("")));
	CHECK(!static_cast<bool>(Variant(Array())));
	CHECK(static_cast<Vector2>(Variant(int64_t(3))) == Vector2());
	CHECK(static_cast<Vector2i>(Variant(Vector2(1.9f, -1.9f))) == Vector2i(1, -1));
	CHECK(Variant(Variant::OP_AND).get_type() == Variant::INT);
}

void check_comparisons(Checks &check) {
	const double nan = std::numeric_limits<double>::quiet_NaN();
	CHECK(Variant() == Variant());
	CHECK(Variant(int64_t(1)) == Variant(int32_t(1)));
	CHECK(Variant(int64_t(1)) != Variant(1.0));
	CHECK(Variant(false) != Variant());
	CHECK(Variant(nan) != Variant(nan));
	CHECK(Variant(nan).hash_compare(Variant(nan)));
	CHECK(Variant("a") == Variant("a"));
	CHECK(Variant(StringName("one")) == Variant(StringName("one")));
	CHECK(Variant(StringName("one")) != Variant(StringName("two")));
	CHECK(Variant(Vector3(1, 2, 3)) == Variant(Vector3(1, 2, 3)));
	CHECK(Variant(Transform3D()) == Variant(Transform3D()));
	CHECK(Variant(Array::make(1, "two")) == Variant(Array::make(1, "two")));
	CHECK(Variant(Array::make(1)) != Variant(Array::make(2)));
	CHECK(Variant(int64_t(1)) < Variant(int64_t(2)));
	CHECK(Variant("a") < Variant("b"));
	CHECK(Variant(int64_t(9)) < Variant("a"));
	CHECK(Variant("key").hash() == Variant(String("key")).hash());
	CHECK(Variant(int64_t(1)).hash() != Variant(int64_t(2)).hash());
	CHECK(Variant(Array::make(1, 2)).recursive_hash(0) == Variant(Array::make(1, 2)).recursive_hash(0));
}

void check_containers(Checks &check) {
	Variant list = Array::make(int64_t(3), int64_t(4));
	bool valid = false;
	bool out_of_bounds = false;
	CHECK(static_cast<int64_t>(list.get_indexed(1, valid, out_of_bounds)) == 4);
	CHECK(valid && !out_of_bounds);
	list.get_indexed(2, valid, out_of_bounds);
	CHECK(out_of_bounds);
	list.set_indexed(0, "three", valid, out_of_bounds);
	CHECK(valid && static_cast<String>(list.get(int64_t(0))) == "three");
	CHECK(list.in(int64_t(4)));
	CHECK(!list.in(int64_t(5)));

	Variant table = Dictionary();
	table.set_keyed("a", int64_t(1), valid);
	table.set("b", int64_t(2), &valid);
	CHECK(valid && table.has_key("a") && !table.has_key("c"));
	CHECK(static_cast<int64_t>(table.get_keyed("b", valid)) == 2);
	table.get_keyed("c", valid);
	CHECK(!valid);

	int64_t sum = 0;
	Variant iterator;
	for (bool more = table.iter_init(iterator, valid); more; more = table.iter_next(iterator, valid)) {
		sum += static_cast<int64_t>(table.get(table.iter_get(iterator, valid)));
	}
	CHECK(sum == 3);

	Variant point = Vector2(1, 2);
	point.set_named("x", 5.0, valid);
	CHECK(valid && static_cast<Vector2>(point) == Vector2(5, 2));
	CHECK(static_cast<double>(point.get_named("y", valid)) == 2.0);
	point.get_named("nothing", valid);
	CHECK(!valid);

	const Array nested = Array::make(Array::make(1));
	Variant shallow = Variant(nested).duplicate();
	Variant deep = Variant(nested).duplicate(true);
	static_cast<Array>(nested[0]).append(2);
	CHECK(static_cast<Array>(static_cast<Array>(shallow)[0]).size() == 2);
	CHECK(static_cast<Array>(static_cast<Array>(deep)[0]).size() == 1);
}

void check_calls(Checks &check) {
	Variant text = "Some Text";
	CHECK(static_cast<String>(text.call("to_upper")) == "SOME TEXT");
	CHECK(static_cast<String>(text.call("substr", int64_t(5), int64_t(4))) == "Text");
	CHECK(text.has_method("to_upper") && !text.has_method("to_nothing"));
	CHECK(static_cast<String>(Variant::call_static(Variant::STRING, "num_int64", int64_t(255), int64_t(16))) == "ff");

	Variant result;
	GDExtensionCallError error;
	text.callp("to_nothing", nullptr, 0, result, error);
	CHECK(error.error == GDEXTENSION_CALL_ERROR_INVALID_METHOD && result.get_type() == Variant::NIL);
	text.callp("substr", nullptr, 0, result, error);
	CHECK(error.error == GDEXTENSION_CALL_ERROR_TOO_FEW_ARGUMENTS);
	const Variant wrong = Array();
	const Variant *arguments[] = { &wrong };
	text.callp("substr", arguments, 1, result, error);
	CHECK(error.error == GDEXTENSION_CALL_ERROR_INVALID_ARGUMENT && error.argument == 0);

	bool valid = false;
	Variant::evaluate(Variant::OP_ADD, text, "!", text, valid);
	CHECK(valid && static_cast<String>(text) == "Some Text!");
	Variant::evaluate(Variant::OP_ADD, text, Array(), result, valid);
	CHECK(!valid);

	CHECK(Variant(Vector2i(1, 2)).stringify() == "(1, 2)");
	CHECK(Variant::get_type_name(Variant::PACKED_COLOR_ARRAY) == "PackedColorArray");
	CHECK(Variant::can_convert(Variant::INT, Variant::STRING));
	CHECK(!Variant::can_convert_strict(Variant::INT, Variant::STRING));
	CHECK(Variant::has_member(Variant::VECTOR2, "x") && !Variant::has_member(Variant::VECTOR2, "z"));
	CHECK(vformat("%s has %d of %.1f", "It", 3, 2.5) == "It has 3 of 2.5");
}

void check_objects(Checks &check) {
	Object *object = memnew(Object);
	const Variant holder = object;
	const ObjectID id(object->get_instance_id());
	CHECK(holder.get_type() == Variant::OBJECT);
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
	CHECK(Variant("text").get_validated_object() == nullptr);

	Ref<RefCounted> counted;
	counted.instantiate();
	{
		const Variant first = counted;
		const Variant second = first;
		CHECK(counted->get_reference_count() == 3);
		const Ref<RefCounted> back = second;
		CHECK(back == counted && counted->get_reference_count() == 4);
	}
	CHECK(counted->get_reference_count() == 1);
}

void check_lifetimes(Checks &check) {
	Variant value = "first";
	const Variant &itself = value;
	value = itself;
	CHECK(static_cast<String>(value) == "first");
	Variant taken = std::move(value);
	CHECK(value.get_type() == Variant::NIL && static_cast<String>(taken) == "first");
	taken = Array::make(taken, taken);
	CHECK(static_cast<Array>(taken).size() == 2);
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
	CHECK(static_cast<NodePath>(Variant("a/b")).get_name_count() == 2);
	CHECK(static_cast<StringName>(Variant("name")) == StringName("name"));
	CHECK(static_cast<String>(Variant(StringName("name"))) == "name");
	CHECK(static_cast<String>(Variant(static_cast<const char *>(nullptr))) == "");
	CHECK(static_cast<String>(Variant(U"\u00e4\U0001f600")).length() == 2);
}

} // namespace

PackedStringArray check_variants() {
	Checks check;
	check_numbers(check);
	check_comparisons(check);
	check_containers(check);
	check_calls(check);
	check_objects(check);
	check_lifetimes(check);
	return check.result();
}

} // namespace bindings_test

#include <godot_cpp/variant/variant.hpp>

#include <godot_cpp/classes/object.hpp>
#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/core/object.hpp>

#include <new>

namespace godot {

namespace {

GDExtensionVariantFromTypeConstructorFunc variant_from_type[Variant::VARIANT_MAX];
GDExtensionTypeFromVariantConstructorFunc type_from_variant[Variant::VARIANT_MAX];

GDExtensionVariantType to_c(Variant::Type p_type) {
	return static_cast<GDExtensionVariantType>(p_type);
}

// A value that the engine constructs in place.
template <typename T>
union Uninitialized {
	T value;
	Uninitialized() {}
	~Uninitialized() {}
};

} // namespace

// The start-up probe: one value of each way in which the engine stores its types.
bool Variant::layout_matches_engine() {
	const auto from_engine = [](Type p_type, const void *p_value, Uninitialized<Variant> &r_variant) {
		variant_from_type[p_type](&r_variant.value, const_cast<void *>(p_value));
		return r_variant.value.tag == p_type;
	};
	const auto stores = [&](Type p_type, const void *p_value, size_t p_size) {
		Uninitialized<Variant> made;
		const bool same = from_engine(p_type, p_value, made) && std::memcmp(made.value.payload, p_value, p_size) == 0;
		gdextension_interface::variant_destroy(&made.value);
		return same;
	};

	const GDExtensionBool boolean = 1;
	const int64_t integer = 0x0123456789abcdef;
	const double number = -1234.5678;
	const float vector[4] = { 1.5f, -2.5f, 3.5f, -4.5f };
	const StringName name("storage");
	if (!stores(BOOL, &boolean, sizeof(boolean)) || !stores(INT, &integer, sizeof(integer)) || !stores(FLOAT, &number, sizeof(number)) ||
			!stores(VECTOR4, vector, sizeof(vector)) || !stores(COLOR, vector, sizeof(vector)) || !stores(STRING_NAME, name._native_ptr(), sizeof(void *))) {
		return false;
	}

	const StringName class_name("RefCounted");
	void *object = gdextension_interface::classdb_construct_object2(class_name._native_ptr());
	if (!object) {
		return false;
	}
	Uninitialized<Variant> holder;
	bool same = from_engine(OBJECT, &object, holder);
	if (same) {
		const ObjectData data = holder.value.read<ObjectData>();
		same = data.object == object && data.id == gdextension_interface::object_get_instance_id(object) && ObjectID(data.id).is_ref_counted();
	}
	gdextension_interface::variant_destroy(&holder.value);
	return same;
}

bool Variant::init_bindings() {
	for (int type = NIL + 1; type < VARIANT_MAX; type++) {
		variant_from_type[type] = gdextension_interface::get_variant_from_type_constructor(to_c(static_cast<Type>(type)));
		type_from_variant[type] = gdextension_interface::get_variant_to_type_constructor(to_c(static_cast<Type>(type)));
		ERR_FAIL_COND_V_MSG(!variant_from_type[type] || !type_from_variant[type], false, "The engine offers no conversions for one of its types.");
	}
	ERR_FAIL_COND_V_MSG(!layout_matches_engine(), false,
			"This engine stores values in another way than the library was built for. Use a library made for this version of the engine.");
	return true;
}

void Variant::copy_owning(const Variant &p_other) {
	gdextension_interface::variant_new_copy(this, &p_other);
}

void Variant::destroy_owning() {
	gdextension_interface::variant_destroy(this);
}

void Variant::construct_from(Type p_type, const void *p_value) {
	variant_from_type[p_type](this, const_cast<void *>(p_value));
}

void Variant::convert_into(Type p_type, void *r_value) const {
	type_from_variant[p_type](r_value, const_cast<Variant *>(this));
}

bool Variant::convert_to_bool() const {
	switch (tag) {
		case NIL:
			return false;
		case INT:
			return read<int64_t>() != 0;
		case FLOAT:
			return read<double>() != 0.0;
		default:
			return gdextension_interface::variant_booleanize(this) != 0;
	}
}

int64_t Variant::convert_to_int() const {
	switch (tag) {
		case NIL:
			return 0;
		case BOOL:
			return payload[0] != 0 ? 1 : 0;
		default: {
			int64_t value = 0;
			convert_into(INT, &value);
			return value;
		}
	}
}

double Variant::convert_to_float() const {
	switch (tag) {
		case NIL:
			return 0.0;
		case BOOL:
			return payload[0] != 0 ? 1.0 : 0.0;
		case INT:
			return static_cast<double>(read<int64_t>());
		default: {
			double value = 0.0;
			convert_into(FLOAT, &value);
			return value;
		}
	}
}

Variant::Variant(GDExtensionConstVariantPtr p_native) {
	if (p_native) {
		gdextension_interface::variant_new_copy(this, p_native);
	}
}

Variant::Variant(const char *p_value) : Variant(p_value ? String(p_value) : String()) {}

Variant::Variant(const char32_t *p_value) : Variant(p_value ? String(p_value) : String()) {}

Variant::Variant(const Object *p_value) {
	// A null object is a Variant of type Object too, as in the engine.
	void *object = p_value ? p_value->_owner : nullptr;
	construct_from(OBJECT, &object);
}

Variant::Variant(const ObjectID &p_value) : Variant(static_cast<int64_t>(p_value)) {}

Variant::operator Object *() const {
	return get_validated_object();
}

Variant::operator ObjectID() const {
	switch (tag) {
		case INT:
			return ObjectID(read<int64_t>());
		case OBJECT:
			return ObjectID(read<ObjectData>().id);
		default:
			return ObjectID();
	}
}

Object *Variant::get_validated_object() const {
	if (tag != OBJECT) {
		return nullptr;
	}
	const ObjectData data = read<ObjectData>();
	if (data.id == 0) {
		return nullptr;
	}
	// A Variant keeps a reference-counted object alive; any other may have been freed, and then only its id tells.
	void *object = ObjectID(data.id).is_ref_counted() ? data.object : gdextension_interface::object_get_instance_from_id(data.id);
	return object ? internal::get_object_instance_binding(object) : nullptr;
}

Object *Variant::get_validated_object_with_check(bool &r_previously_freed) const {
	Object *object = get_validated_object();
	r_previously_freed = tag == OBJECT && !object && read<ObjectData>().id != 0;
	return object;
}

#define VARIANT_CONSTRUCTOR(m_class, m_type)                                                                                                                   \
	Variant::Variant(const m_class &p_value) {                                                                                                                 \
		construct_from(m_type, static_cast<const void *>(&p_value));                                                                                           \
	}

// The engine constructs what it converts to in storage that it takes for uninitialised.
#define VARIANT_CONVERSION(m_class, m_type)                                                                                                                    \
	Variant::operator m_class() const {                                                                                                                        \
		m_class value;                                                                                                                                         \
		value.~m_class();                                                                                                                                      \
		convert_into(m_type, static_cast<void *>(&value));                                                                                                     \
		return value;                                                                                                                                          \
	}

// A handle lies in the payload as it does in its class, so that copying that is enough.
#define VARIANT_HANDLE_CONVERSION(m_class, m_type)                                                                                                             \
	Variant::operator m_class() const {                                                                                                                        \
		if (likely(tag == m_type)) {                                                                                                                           \
			return *reinterpret_cast<const m_class *>(payload);                                                                                                \
		}                                                                                                                                                      \
		m_class value;                                                                                                                                         \
		value.~m_class();                                                                                                                                      \
		convert_into(m_type, static_cast<void *>(&value));                                                                                                     \
		return value;                                                                                                                                          \
	}

#define VARIANT_BLOCK_TYPE(m_class, m_type)                                                                                                                    \
	VARIANT_CONSTRUCTOR(m_class, m_type)                                                                                                                       \
	VARIANT_CONVERSION(m_class, m_type)

#define VARIANT_HANDLE_TYPE(m_class, m_type)                                                                                                                   \
	VARIANT_CONSTRUCTOR(m_class, m_type)                                                                                                                       \
	VARIANT_HANDLE_CONVERSION(m_class, m_type)

using BoundingBox = ::godot::AABB;

VARIANT_HANDLE_TYPE(String, STRING)
VARIANT_HANDLE_TYPE(StringName, STRING_NAME)
VARIANT_HANDLE_TYPE(NodePath, NODE_PATH)
VARIANT_BLOCK_TYPE(Transform2D, TRANSFORM2D)
VARIANT_BLOCK_TYPE(BoundingBox, AABB)
VARIANT_BLOCK_TYPE(Basis, BASIS)
VARIANT_BLOCK_TYPE(Transform3D, TRANSFORM3D)
VARIANT_BLOCK_TYPE(Projection, PROJECTION)
VARIANT_HANDLE_TYPE(Callable, CALLABLE)
VARIANT_HANDLE_TYPE(Signal, SIGNAL)
VARIANT_HANDLE_TYPE(Dictionary, DICTIONARY)
VARIANT_HANDLE_TYPE(Array, ARRAY)
VARIANT_BLOCK_TYPE(PackedByteArray, PACKED_BYTE_ARRAY)
VARIANT_BLOCK_TYPE(PackedInt32Array, PACKED_INT32_ARRAY)
VARIANT_BLOCK_TYPE(PackedInt64Array, PACKED_INT64_ARRAY)
VARIANT_BLOCK_TYPE(PackedFloat32Array, PACKED_FLOAT32_ARRAY)
VARIANT_BLOCK_TYPE(PackedFloat64Array, PACKED_FLOAT64_ARRAY)
VARIANT_BLOCK_TYPE(PackedStringArray, PACKED_STRING_ARRAY)
VARIANT_BLOCK_TYPE(PackedVector2Array, PACKED_VECTOR2_ARRAY)
VARIANT_BLOCK_TYPE(PackedVector3Array, PACKED_VECTOR3_ARRAY)
VARIANT_BLOCK_TYPE(PackedColorArray, PACKED_COLOR_ARRAY)
VARIANT_BLOCK_TYPE(PackedVector4Array, PACKED_VECTOR4_ARRAY)

#undef VARIANT_HANDLE_TYPE
#undef VARIANT_BLOCK_TYPE
#undef VARIANT_HANDLE_CONVERSION
#undef VARIANT_CONVERSION
#undef VARIANT_CONSTRUCTOR

bool Variant::operator==(const Variant &p_other) const {
	if (tag != p_other.tag) {
		return false;
	}
	switch (tag) {
		case NIL:
			return true;
		case BOOL:
			return payload[0] == p_other.payload[0];
		case INT:
		case STRING_NAME: // Names are interned: the handle is the identity.
			return read<int64_t>() == p_other.read<int64_t>();
		case FLOAT:
			return read<double>() == p_other.read<double>();
		default: {
			bool valid = false;
			Variant result;
			evaluate(OP_EQUAL, *this, p_other, result, valid);
			return result.operator bool();
		}
	}
}

bool Variant::operator<(const Variant &p_other) const {
	if (tag != p_other.tag) {
		return tag < p_other.tag;
	}
	bool valid = false;
	Variant result;
	evaluate(OP_LESS, *this, p_other, result, valid);
	return result.operator bool();
}

// The engine constructs its answer in storage that it takes for uninitialised, and the place the caller named may be the value worked on: so
// the answer is made apart and moved there.

void Variant::callp(const StringName &p_method, const Variant **p_args, int p_argcount, Variant &r_ret, GDExtensionCallError &r_error) {
	Variant result;
	gdextension_interface::variant_call(this, p_method._native_ptr(), reinterpret_cast<GDExtensionConstVariantPtr *>(p_args), p_argcount, &result, &r_error);
	r_ret = std::move(result);
}

void Variant::callp_static(
		Variant::Type p_type, const StringName &p_method, const Variant **p_args, int p_argcount, Variant &r_ret, GDExtensionCallError &r_error) {
	Variant result;
	gdextension_interface::variant_call_static(
			to_c(p_type), p_method._native_ptr(), reinterpret_cast<GDExtensionConstVariantPtr *>(p_args), p_argcount, &result, &r_error);
	r_ret = std::move(result);
}

void Variant::evaluate(const Operator &p_op, const Variant &p_a, const Variant &p_b, Variant &r_ret, bool &r_valid) {
	// The engine empties the place of its answer before it reads the operands, so that may be neither of them.
	r_ret.clear();
	GDExtensionBool valid = 0;
	gdextension_interface::variant_evaluate(static_cast<GDExtensionVariantOperator>(p_op), &p_a, &p_b, &r_ret, &valid);
	r_valid = valid != 0;
}

void Variant::set(const Variant &p_key, const Variant &p_value, bool *r_valid) {
	GDExtensionBool valid = 0;
	gdextension_interface::variant_set(this, &p_key, &p_value, &valid);
	if (r_valid) {
		*r_valid = valid != 0;
	}
}

void Variant::set_named(const StringName &p_name, const Variant &p_value, bool &r_valid) {
	GDExtensionBool valid = 0;
	gdextension_interface::variant_set_named(this, p_name._native_ptr(), &p_value, &valid);
	r_valid = valid != 0;
}

void Variant::set_indexed(int64_t p_index, const Variant &p_value, bool &r_valid, bool &r_oob) {
	GDExtensionBool valid = 0;
	GDExtensionBool out_of_bounds = 0;
	gdextension_interface::variant_set_indexed(this, p_index, &p_value, &valid, &out_of_bounds);
	r_valid = valid != 0;
	r_oob = out_of_bounds != 0;
}

void Variant::set_keyed(const Variant &p_key, const Variant &p_value, bool &r_valid) {
	GDExtensionBool valid = 0;
	gdextension_interface::variant_set_keyed(this, &p_key, &p_value, &valid);
	r_valid = valid != 0;
}

Variant Variant::get(const Variant &p_key, bool *r_valid) const {
	Variant result;
	GDExtensionBool valid = 0;
	gdextension_interface::variant_get(this, &p_key, &result, &valid);
	if (r_valid) {
		*r_valid = valid != 0;
	}
	return result;
}

Variant Variant::get_named(const StringName &p_name, bool &r_valid) const {
	Variant result;
	GDExtensionBool valid = 0;
	gdextension_interface::variant_get_named(this, p_name._native_ptr(), &result, &valid);
	r_valid = valid != 0;
	return result;
}

Variant Variant::get_indexed(int64_t p_index, bool &r_valid, bool &r_oob) const {
	Variant result;
	GDExtensionBool valid = 0;
	GDExtensionBool out_of_bounds = 0;
	gdextension_interface::variant_get_indexed(this, p_index, &result, &valid, &out_of_bounds);
	r_valid = valid != 0;
	r_oob = out_of_bounds != 0;
	return result;
}

Variant Variant::get_keyed(const Variant &p_key, bool &r_valid) const {
	Variant result;
	GDExtensionBool valid = 0;
	gdextension_interface::variant_get_keyed(this, &p_key, &result, &valid);
	r_valid = valid != 0;
	return result;
}

bool Variant::in(const Variant &p_index, bool *r_valid) const {
	Variant result;
	bool valid = false;
	evaluate(OP_IN, p_index, *this, result, valid);
	if (r_valid) {
		*r_valid = valid;
	}
	return result.operator bool();
}

bool Variant::iter_init(Variant &r_iter, bool &r_valid) const {
	Variant iterator;
	GDExtensionBool valid = 0;
	const bool more = gdextension_interface::variant_iter_init(this, &iterator, &valid) != 0;
	r_iter = std::move(iterator);
	r_valid = valid != 0;
	return more;
}

bool Variant::iter_next(Variant &r_iter, bool &r_valid) const {
	GDExtensionBool valid = 0;
	const bool more = gdextension_interface::variant_iter_next(this, &r_iter, &valid) != 0;
	r_valid = valid != 0;
	return more;
}

Variant Variant::iter_get(const Variant &r_iter, bool &r_valid) const {
	Variant result;
	GDExtensionBool valid = 0;
	gdextension_interface::variant_iter_get(this, r_iter._native_ptr(), &result, &valid);
	r_valid = valid != 0;
	return result;
}

bool Variant::has_method(const StringName &p_method) const {
	return gdextension_interface::variant_has_method(this, p_method._native_ptr()) != 0;
}

bool Variant::has_key(const Variant &p_key, bool *r_valid) const {
	GDExtensionBool valid = 0;
	const bool has = gdextension_interface::variant_has_key(this, &p_key, &valid) != 0;
	if (r_valid) {
		*r_valid = valid != 0;
	}
	return has;
}

bool Variant::has_member(Variant::Type p_type, const StringName &p_member) {
	return gdextension_interface::variant_has_member(to_c(p_type), p_member._native_ptr()) != 0;
}

uint32_t Variant::hash() const {
	return static_cast<uint32_t>(gdextension_interface::variant_hash(this));
}

uint32_t Variant::recursive_hash(int p_recursion_count) const {
	return static_cast<uint32_t>(gdextension_interface::variant_recursive_hash(this, p_recursion_count));
}

bool Variant::hash_compare(const Variant &p_other) const {
	return gdextension_interface::variant_hash_compare(this, &p_other) != 0;
}

String Variant::stringify() const {
	String text;
	gdextension_interface::variant_stringify(this, text._native_ptr());
	return text;
}

Variant Variant::duplicate(bool p_deep) const {
	Variant result;
	gdextension_interface::variant_duplicate(this, &result, p_deep);
	return result;
}

String Variant::get_type_name(Variant::Type p_type) {
	String text;
	gdextension_interface::variant_get_type_name(to_c(p_type), text._native_ptr());
	return text;
}

bool Variant::can_convert(Variant::Type p_from, Variant::Type p_to) {
	return gdextension_interface::variant_can_convert(to_c(p_from), to_c(p_to)) != 0;
}

bool Variant::can_convert_strict(Variant::Type p_from, Variant::Type p_to) {
	return gdextension_interface::variant_can_convert_strict(to_c(p_from), to_c(p_to)) != 0;
}

} // namespace godot

// A value of any engine type: what scripts, signals, properties and untyped containers exchange. It owns what it holds, as the engine's own
// does, and has the same 24 bytes.
//
// Storage: the engine keeps the type as a 32-bit number at offset 0 and 16 bytes of payload at offset 8. Booleans, integers, floats, vectors,
// rectangles, planes, quaternions, colours and RIDs lie in the payload as they are; a string, name, path, callable, signal, dictionary or array
// lies there as its handle; an object as its id followed by its pointer; larger math types and packed arrays as a pointer to a shared block.
// Everything that relies on this is in this file and in variant.cpp; init_bindings() compares it with what the engine writes, and the extension
// does not load when they differ.

#ifndef GODOT_CPP_VARIANT_VARIANT_HPP
#define GODOT_CPP_VARIANT_VARIANT_HPP

#include <godot_cpp/core/defs.hpp>
#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/variant/builtin_types.hpp>
#include <godot_cpp/variant/variant_arguments.hpp>

#include <gdextension_interface.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace godot {

class Object;

template <class T>
class BitField;

class Variant {
public:
	enum Type {
		NIL,

		BOOL,
		INT,
		FLOAT,
		STRING,

		VECTOR2,
		VECTOR2I,
		RECT2,
		RECT2I,
		VECTOR3,
		VECTOR3I,
		TRANSFORM2D,
		VECTOR4,
		VECTOR4I,
		PLANE,
		QUATERNION,
		AABB,
		BASIS,
		TRANSFORM3D,
		PROJECTION,

		COLOR,
		STRING_NAME,
		NODE_PATH,
		RID,
		OBJECT,
		CALLABLE,
		SIGNAL,
		DICTIONARY,
		ARRAY,

		PACKED_BYTE_ARRAY,
		PACKED_INT32_ARRAY,
		PACKED_INT64_ARRAY,
		PACKED_FLOAT32_ARRAY,
		PACKED_FLOAT64_ARRAY,
		PACKED_STRING_ARRAY,
		PACKED_VECTOR2_ARRAY,
		PACKED_VECTOR3_ARRAY,
		PACKED_COLOR_ARRAY,
		PACKED_VECTOR4_ARRAY,

		VARIANT_MAX
	};

	enum Operator {
		OP_EQUAL,
		OP_NOT_EQUAL,
		OP_LESS,
		OP_LESS_EQUAL,
		OP_GREATER,
		OP_GREATER_EQUAL,

		OP_ADD,
		OP_SUBTRACT,
		OP_MULTIPLY,
		OP_DIVIDE,
		OP_NEGATE,
		OP_POSITIVE,
		OP_MODULE,
		OP_POWER,

		OP_SHIFT_LEFT,
		OP_SHIFT_RIGHT,
		OP_BIT_AND,
		OP_BIT_OR,
		OP_BIT_XOR,
		OP_BIT_NEGATE,

		OP_AND,
		OP_OR,
		OP_XOR,
		OP_NOT,

		OP_IN,
		OP_MAX
	};

private:
	static constexpr size_t PAYLOAD_SIZE = 16;

	int32_t tag = NIL;
	alignas(8) uint8_t payload[PAYLOAD_SIZE] = {};

	// Types whose 24 bytes are the whole value: copying the bytes copies the value, and nothing has to be released.
	static constexpr uint64_t PLAIN_TYPES = uint64_t(1) << NIL | uint64_t(1) << BOOL | uint64_t(1) << INT | uint64_t(1) << FLOAT | uint64_t(1) << VECTOR2 |
			uint64_t(1) << VECTOR2I | uint64_t(1) << RECT2 | uint64_t(1) << RECT2I | uint64_t(1) << VECTOR3 | uint64_t(1) << VECTOR3I | uint64_t(1) << VECTOR4 |
			uint64_t(1) << VECTOR4I | uint64_t(1) << PLANE | uint64_t(1) << QUATERNION | uint64_t(1) << COLOR | uint64_t(1) << RID;

	_FORCE_INLINE_ bool is_plain() const { return ((PLAIN_TYPES >> tag) & 1) != 0; }

	template <typename T>
	_FORCE_INLINE_ void write(Type p_type, const T &p_value) {
		static_assert(sizeof(T) <= PAYLOAD_SIZE, "The engine keeps this type outside the Variant.");
		tag = p_type;
		std::memcpy(payload, static_cast<const void *>(&p_value), sizeof(T));
	}

	template <typename T>
	_FORCE_INLINE_ T read() const {
		static_assert(sizeof(T) <= PAYLOAD_SIZE, "The engine keeps this type outside the Variant.");
		T value;
		std::memcpy(static_cast<void *>(&value), payload, sizeof(T));
		return value;
	}

	template <typename T>
	_FORCE_INLINE_ T read_or_convert(Type p_type) const {
		if (likely(tag == p_type)) {
			return read<T>();
		}
		T value;
		convert_into(p_type, &value);
		return value;
	}

	void copy_owning(const Variant &p_other);
	void destroy_owning();
	void construct_from(Type p_type, const void *p_value);
	void convert_into(Type p_type, void *r_value) const;
	bool convert_to_bool() const;
	int64_t convert_to_int() const;
	double convert_to_float() const;

	struct ObjectData {
		uint64_t id;
		void *object;
	};

	static bool layout_matches_engine();

public:
	// Called once, when the interface has been loaded and before any Variant is made. False when the engine's storage is not the one described
	// above; the reason has been reported then.
	static bool init_bindings();

	_FORCE_INLINE_ GDExtensionVariantPtr _native_ptr() const { return const_cast<Variant *>(this); }

	_FORCE_INLINE_ Variant() {}
	_FORCE_INLINE_ Variant(std::nullptr_t) {}
	explicit Variant(GDExtensionConstVariantPtr p_native);

	_FORCE_INLINE_ Variant(const Variant &p_other) {
		if (likely(p_other.is_plain())) {
			copy_bytes(p_other);
		} else {
			copy_owning(p_other);
		}
	}

	_FORCE_INLINE_ Variant(Variant &&p_other) noexcept {
		copy_bytes(p_other);
		p_other.tag = NIL;
	}

	_FORCE_INLINE_ ~Variant() {
		if (!is_plain()) {
			destroy_owning();
		}
	}

	_FORCE_INLINE_ Variant(bool p_value) { write(BOOL, p_value); }
	_FORCE_INLINE_ Variant(int64_t p_value) { write(INT, p_value); }
	_FORCE_INLINE_ Variant(int32_t p_value) : Variant(static_cast<int64_t>(p_value)) {}
	_FORCE_INLINE_ Variant(int16_t p_value) : Variant(static_cast<int64_t>(p_value)) {}
	_FORCE_INLINE_ Variant(int8_t p_value) : Variant(static_cast<int64_t>(p_value)) {}
	_FORCE_INLINE_ Variant(uint64_t p_value) : Variant(static_cast<int64_t>(p_value)) {}
	_FORCE_INLINE_ Variant(uint32_t p_value) : Variant(static_cast<int64_t>(p_value)) {}
	_FORCE_INLINE_ Variant(uint16_t p_value) : Variant(static_cast<int64_t>(p_value)) {}
	_FORCE_INLINE_ Variant(uint8_t p_value) : Variant(static_cast<int64_t>(p_value)) {}
	template <typename T, std::enable_if_t<std::is_enum_v<T>, int> = 0>
	_FORCE_INLINE_ Variant(T p_value) : Variant(static_cast<int64_t>(p_value)) {}
	template <typename T>
	_FORCE_INLINE_ Variant(const BitField<T> &p_value) : Variant(static_cast<int64_t>(p_value)) {}
	_FORCE_INLINE_ Variant(double p_value) { write(FLOAT, p_value); }
	_FORCE_INLINE_ Variant(float p_value) : Variant(static_cast<double>(p_value)) {}

	Variant(const char *p_value);
	Variant(const char32_t *p_value);
	Variant(const String &p_value);
	Variant(const StringName &p_value);
	Variant(const NodePath &p_value);

	_FORCE_INLINE_ Variant(const Vector2 &p_value) { write(VECTOR2, p_value); }
	_FORCE_INLINE_ Variant(const Vector2i &p_value) { write(VECTOR2I, p_value); }
	_FORCE_INLINE_ Variant(const Rect2 &p_value) { write(RECT2, p_value); }
	_FORCE_INLINE_ Variant(const Rect2i &p_value) { write(RECT2I, p_value); }
	_FORCE_INLINE_ Variant(const Vector3 &p_value) { write(VECTOR3, p_value); }
	_FORCE_INLINE_ Variant(const Vector3i &p_value) { write(VECTOR3I, p_value); }
	_FORCE_INLINE_ Variant(const Vector4 &p_value) { write(VECTOR4, p_value); }
	_FORCE_INLINE_ Variant(const Vector4i &p_value) { write(VECTOR4I, p_value); }
	_FORCE_INLINE_ Variant(const Plane &p_value) { write(PLANE, p_value); }
	_FORCE_INLINE_ Variant(const Quaternion &p_value) { write(QUATERNION, p_value); }
	_FORCE_INLINE_ Variant(const Color &p_value) { write(COLOR, p_value); }
	_FORCE_INLINE_ Variant(const ::godot::RID &p_value) { write(RID, p_value); }
	Variant(const Transform2D &p_value);
	Variant(const ::godot::AABB &p_value);
	Variant(const Basis &p_value);
	Variant(const Transform3D &p_value);
	Variant(const Projection &p_value);

	Variant(const Object *p_value);
	Variant(const ObjectID &p_value);
	// Takes pointers to every wrapped class. It also stands in the way of the silent conversion to bool that a pointer to a class which is only
	// declared would take: that is an error here, with the remedy of including the class's header.
	template <typename T, std::enable_if_t<std::is_class_v<T>, int> = 0>
	_FORCE_INLINE_ Variant(T *p_value) : Variant(static_cast<const Object *>(p_value)) {}

	Variant(const Callable &p_value);
	Variant(const Signal &p_value);
	Variant(const Dictionary &p_value);
	Variant(const Array &p_value);
	Variant(const PackedByteArray &p_value);
	Variant(const PackedInt32Array &p_value);
	Variant(const PackedInt64Array &p_value);
	Variant(const PackedFloat32Array &p_value);
	Variant(const PackedFloat64Array &p_value);
	Variant(const PackedStringArray &p_value);
	Variant(const PackedVector2Array &p_value);
	Variant(const PackedVector3Array &p_value);
	Variant(const PackedColorArray &p_value);
	Variant(const PackedVector4Array &p_value);

	// Conversions follow the engine's rules: what cannot be converted becomes the default value of the wanted type.
	_FORCE_INLINE_ operator bool() const { return likely(tag == BOOL) ? payload[0] != 0 : convert_to_bool(); }
	_FORCE_INLINE_ operator int64_t() const { return likely(tag == INT) ? read<int64_t>() : convert_to_int(); }
	_FORCE_INLINE_ operator int32_t() const { return static_cast<int32_t>(operator int64_t()); }
	_FORCE_INLINE_ operator int16_t() const { return static_cast<int16_t>(operator int64_t()); }
	_FORCE_INLINE_ operator int8_t() const { return static_cast<int8_t>(operator int64_t()); }
	_FORCE_INLINE_ operator uint64_t() const { return static_cast<uint64_t>(operator int64_t()); }
	_FORCE_INLINE_ operator uint32_t() const { return static_cast<uint32_t>(operator int64_t()); }
	_FORCE_INLINE_ operator uint16_t() const { return static_cast<uint16_t>(operator int64_t()); }
	_FORCE_INLINE_ operator uint8_t() const { return static_cast<uint8_t>(operator int64_t()); }
	_FORCE_INLINE_ operator double() const { return likely(tag == FLOAT) ? read<double>() : convert_to_float(); }
	_FORCE_INLINE_ operator float() const { return static_cast<float>(operator double()); }

	operator String() const;
	operator StringName() const;
	operator NodePath() const;

	_FORCE_INLINE_ operator Vector2() const { return read_or_convert<Vector2>(VECTOR2); }
	_FORCE_INLINE_ operator Vector2i() const { return read_or_convert<Vector2i>(VECTOR2I); }
	_FORCE_INLINE_ operator Rect2() const { return read_or_convert<Rect2>(RECT2); }
	_FORCE_INLINE_ operator Rect2i() const { return read_or_convert<Rect2i>(RECT2I); }
	_FORCE_INLINE_ operator Vector3() const { return read_or_convert<Vector3>(VECTOR3); }
	_FORCE_INLINE_ operator Vector3i() const { return read_or_convert<Vector3i>(VECTOR3I); }
	_FORCE_INLINE_ operator Vector4() const { return read_or_convert<Vector4>(VECTOR4); }
	_FORCE_INLINE_ operator Vector4i() const { return read_or_convert<Vector4i>(VECTOR4I); }
	_FORCE_INLINE_ operator Plane() const { return read_or_convert<Plane>(PLANE); }
	_FORCE_INLINE_ operator Quaternion() const { return read_or_convert<Quaternion>(QUATERNION); }
	_FORCE_INLINE_ operator Color() const { return read_or_convert<Color>(COLOR); }
	_FORCE_INLINE_ operator ::godot::RID() const { return read_or_convert<::godot::RID>(RID); }
	operator Transform2D() const;
	operator ::godot::AABB() const;
	operator Basis() const;
	operator Transform3D() const;
	operator Projection() const;

	// Null when the object has been freed, unlike the engine's own conversion.
	operator Object *() const;
	operator ObjectID() const;

	operator Callable() const;
	operator Signal() const;
	operator Dictionary() const;
	operator Array() const;
	operator PackedByteArray() const;
	operator PackedInt32Array() const;
	operator PackedInt64Array() const;
	operator PackedFloat32Array() const;
	operator PackedFloat64Array() const;
	operator PackedStringArray() const;
	operator PackedVector2Array() const;
	operator PackedVector3Array() const;
	operator PackedColorArray() const;
	operator PackedVector4Array() const;

	_FORCE_INLINE_ Variant &operator=(const Variant &p_other) {
		if (likely(is_plain() && p_other.is_plain())) {
			copy_bytes(p_other);
		} else if (this != &p_other) {
			Variant copy(p_other);
			swap(copy);
		}
		return *this;
	}

	_FORCE_INLINE_ Variant &operator=(Variant &&p_other) noexcept {
		if (likely(is_plain() && p_other.is_plain())) {
			copy_bytes(p_other);
			return *this;
		}
		// By way of a local, so that releasing the old value, which may free an object and run a script, finds this one complete.
		Variant taken(std::move(p_other));
		swap(taken);
		return *this;
	}

	bool operator==(const Variant &p_other) const;
	_FORCE_INLINE_ bool operator!=(const Variant &p_other) const { return !(*this == p_other); }
	bool operator<(const Variant &p_other) const;

	void callp(const StringName &p_method, const Variant **p_args, int p_argcount, Variant &r_ret, GDExtensionCallError &r_error);
	static void callp_static(
			Variant::Type p_type, const StringName &p_method, const Variant **p_args, int p_argcount, Variant &r_ret, GDExtensionCallError &r_error);

	template <typename... Args>
	Variant call(const StringName &p_method, const Args &...p_args) {
		internal::VariantArguments<sizeof...(Args)> arguments(p_args...);
		Variant result;
		GDExtensionCallError error;
		callp(p_method, arguments.pointers(), arguments.count(), result, error);
		return result;
	}

	template <typename... Args>
	static Variant call_static(Variant::Type p_type, const StringName &p_method, const Args &...p_args) {
		internal::VariantArguments<sizeof...(Args)> arguments(p_args...);
		Variant result;
		GDExtensionCallError error;
		callp_static(p_type, p_method, arguments.pointers(), arguments.count(), result, error);
		return result;
	}

	static void evaluate(const Operator &p_op, const Variant &p_a, const Variant &p_b, Variant &r_ret, bool &r_valid);

	void set(const Variant &p_key, const Variant &p_value, bool *r_valid = nullptr);
	void set_named(const StringName &p_name, const Variant &p_value, bool &r_valid);
	void set_indexed(int64_t p_index, const Variant &p_value, bool &r_valid, bool &r_oob);
	void set_keyed(const Variant &p_key, const Variant &p_value, bool &r_valid);
	Variant get(const Variant &p_key, bool *r_valid = nullptr) const;
	Variant get_named(const StringName &p_name, bool &r_valid) const;
	Variant get_indexed(int64_t p_index, bool &r_valid, bool &r_oob) const;
	Variant get_keyed(const Variant &p_key, bool &r_valid) const;
	bool in(const Variant &p_index, bool *r_valid = nullptr) const;

	bool iter_init(Variant &r_iter, bool &r_valid) const;
	bool iter_next(Variant &r_iter, bool &r_valid) const;
	Variant iter_get(const Variant &r_iter, bool &r_valid) const;

	_FORCE_INLINE_ Type get_type() const { return static_cast<Type>(tag); }
	bool has_method(const StringName &p_method) const;
	bool has_key(const Variant &p_key, bool *r_valid = nullptr) const;
	static bool has_member(Variant::Type p_type, const StringName &p_member);

	uint32_t hash() const;
	uint32_t recursive_hash(int p_recursion_count) const;
	bool hash_compare(const Variant &p_other) const;
	_FORCE_INLINE_ bool booleanize() const { return operator bool(); }
	String stringify() const;
	Variant duplicate(bool p_deep = false) const;

	_FORCE_INLINE_ void clear() {
		if (!is_plain()) {
			Variant released(std::move(*this));
		}
		tag = NIL;
	}

	// Null when this holds no object, or one that has been freed.
	Object *get_validated_object() const;
	Object *get_validated_object_with_check(bool &r_previously_freed) const;

	static String get_type_name(Variant::Type p_type);
	static bool can_convert(Variant::Type p_from, Variant::Type p_to);
	static bool can_convert_strict(Variant::Type p_from, Variant::Type p_to);

private:
	_FORCE_INLINE_ void copy_bytes(const Variant &p_other) {
		tag = p_other.tag;
		// Half by half: a number has just been written to one half as often as not, and a processor that is to read the whole
		// then waits for the half to arrive.
		uint64_t low;
		uint64_t high;
		std::memcpy(&low, p_other.payload, sizeof(low));
		std::memcpy(&high, p_other.payload + sizeof(low), sizeof(high));
		std::memcpy(payload, &low, sizeof(low));
		std::memcpy(payload + sizeof(low), &high, sizeof(high));
	}

	_FORCE_INLINE_ void swap(Variant &p_other) {
		std::swap(tag, p_other.tag);
		std::swap(payload, p_other.payload);
	}
};

static_assert(sizeof(Variant) == 24, "A Variant has the size of the engine's.");

struct VariantHasher {
	static _FORCE_INLINE_ uint32_t hash(const Variant &p_value) { return p_value.hash(); }
};

struct VariantComparator {
	static _FORCE_INLINE_ bool compare(const Variant &p_a, const Variant &p_b) { return p_a.hash_compare(p_b); }
};

} // namespace godot

#include <godot_cpp/variant/builtin_vararg_methods.hpp>
#include <godot_cpp/variant/vformat.hpp>

#endif // GODOT_CPP_VARIANT_VARIANT_HPP

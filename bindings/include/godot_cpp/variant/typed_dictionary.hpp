// A Dictionary that the engine keeps to one type of keys and one of values; otherwise as TypedArray.

#ifndef GODOT_CPP_VARIANT_TYPED_DICTIONARY_HPP
#define GODOT_CPP_VARIANT_TYPED_DICTIONARY_HPP

#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/typed_array.hpp>

namespace godot {

template <typename K, typename V>
class TypedDictionary : public Dictionary {
	using Key = internal::ElementType<K>;
	using Value = internal::ElementType<V>;

	void set_types() {
		if constexpr (!std::is_same_v<K, Variant> || !std::is_same_v<V, Variant>) {
			set_typed(Key::type(), Key::class_name(), Variant(), Value::type(), Value::class_name(), Variant());
		}
	}

public:
	TypedDictionary() { set_types(); }
	TypedDictionary(const TypedDictionary &) = default;
	TypedDictionary(TypedDictionary &&) = default;
	TypedDictionary &operator=(const TypedDictionary &) = default;
	TypedDictionary &operator=(TypedDictionary &&) = default;

	TypedDictionary(const Dictionary &p_dictionary) : TypedDictionary() {
		if (is_same_typed(p_dictionary)) {
			Dictionary::operator=(p_dictionary);
		} else {
			assign(p_dictionary);
		}
	}

	TypedDictionary(const Variant &p_value) : TypedDictionary(p_value.operator Dictionary()) {}

	TypedDictionary &operator=(const Dictionary &p_dictionary) {
		*this = TypedDictionary(p_dictionary);
		return *this;
	}
};

template <typename K, typename V>
struct PtrToArg<TypedDictionary<K, V>> {
	typedef Dictionary EncodeT;
	static TypedDictionary<K, V> convert(const void *p_ptr) { return TypedDictionary<K, V>(*static_cast<const Dictionary *>(p_ptr)); }
	static void encode(const TypedDictionary<K, V> &p_value, void *p_ptr) { *static_cast<Dictionary *>(p_ptr) = p_value; }
};

template <typename K, typename V>
struct GetTypeInfo<TypedDictionary<K, V>> {
	static constexpr GDExtensionVariantType VARIANT_TYPE = GDEXTENSION_VARIANT_TYPE_DICTIONARY;
	static constexpr GDExtensionClassMethodArgumentMetadata METADATA = GDEXTENSION_METHOD_ARGUMENT_METADATA_NONE;
	static PropertyInfo get_class_info() {
		return PropertyInfo(Variant::DICTIONARY, StringName(), PROPERTY_HINT_DICTIONARY_TYPE,
				internal::ElementType<K>::hint() + String(";") + internal::ElementType<V>::hint());
	}
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_TYPED_DICTIONARY_HPP

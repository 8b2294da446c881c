#pragma once

// What scripts call with nodes and machines that they may hold for too long. The engine hands a statically typed variable over
// as a bare pointer, even when its object has been freed; as a Variant it can be told that it is gone, and is taken for null.
//
//	bind(D_METHOD("position_of", "node"), object_arguments::guarded<&position_of>("position_of"));

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <tuple>
#include <type_traits>

using namespace godot;

namespace object_arguments {

void report_wrong_type(const char *method, int argument, const StringName &wanted, const Variant &given);

// Null for nothing and for what has been freed. What is something else is reported, and `fits` turns false.
template <class T>
T *taken(const Variant &given, const char *method, int argument, bool &fits) {
	if (given.get_type() == Variant::NIL) {
		return nullptr;
	}
	Object *object = given.get_validated_object();
	T *found = Object::cast_to<T>(object);
	if (found == nullptr && (given.get_type() != Variant::OBJECT || object != nullptr)) {
		fits = false;
		report_wrong_type(method, argument, T::get_class_static(), given);
	}
	return found;
}

template <class A>
struct Argument {
	using Bound = A;
	static A take(A given, const char *, int &number, bool &) {
		number++;
		return given;
	}
};

template <class T>
struct Argument<T *> {
	using Bound = const Variant &;
	static T *take(const Variant &given, const char *method, int &number, bool &fits) { return taken<std::remove_const_t<T>>(given, method, ++number, fits); }
};

template <auto Function>
struct Guarded;

template <class R, class... A, R (*Function)(A...)>
struct Guarded<Function> {
	inline static const char *name = "";

	static R call(typename Argument<A>::Bound... given) {
		bool fits = true;
		int number = 0;
		// In braces, which keeps the order.
		std::tuple<A...> held{ Argument<A>::take(given, name, number, fits)... };
		return fits ? std::apply(Function, held) : R();
	}
};

template <auto Function>
auto guarded(const char *name) {
	Guarded<Function>::name = name;
	return &Guarded<Function>::call;
}

} // namespace object_arguments

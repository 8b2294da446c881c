#include <godot_cpp/variant/callable.hpp>

#include <godot_cpp/variant/callable_custom.hpp>

namespace godot {

Callable::Callable(CallableCustom *p_custom) : OpaqueValue(internal::Unconstructed()) {
	internal::construct_custom_callable(_native_ptr(), p_custom);
}

CallableCustom *Callable::get_custom() const {
	return internal::get_custom_callable(_native_ptr());
}

} // namespace godot

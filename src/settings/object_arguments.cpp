#include "settings/object_arguments.hpp"

#include <godot_cpp/core/error_macros.hpp>

void object_arguments::report_wrong_type(const char *method, int argument, const StringName &wanted, const Variant &given) {
	const Object *object = given.get_validated_object();
	const String kind = object != nullptr ? object->get_class() : Variant::get_type_name(given.get_type());
	_err_print_error(method, __FILE__, __LINE__, vformat("Argument %d of %s takes a %s and was given a %s.", argument, method, wanted, kind));
}

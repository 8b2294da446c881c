"""What belongs to no class: the global enumerations and the utility functions."""

from .builtins import call_lines, parameter_list, vararg_front
from .types import Types, escape

SOURCES = ["src/variant/utility_functions.cpp"]


def emit_globals(api, out):
    types = Types(api)
    # Variant's own enumerations are nested in it.
    enums = [enum for enum in api["global_enums"] if "." not in enum["name"]]
    emit_constants(enums, api["global_constants"], out)
    emit_casts(enums, out)
    emit_utility_functions(types, api["utility_functions"], out)


def emit_constants(enums, constants, out):
    lines = ["// Generated from the engine's description.", "", "#include <cstdint>", "", "namespace godot {", ""]
    for constant in constants:
        lines += ["const int64_t %s = %d;" % (escape(constant["name"]), constant["value"])]
    for enum in enums:
        lines.append(("enum %s : uint64_t {" if enum["is_bitfield"] else "enum %s {") % enum["name"])
        lines += ["\t%s = %d," % (escape(value["name"]), value["value"]) for value in enum["values"]]
        lines += ["};", ""]
    lines.append("} // namespace godot")
    out.write_header("godot_cpp/classes/global_constants.hpp", "\n".join(lines))


def emit_casts(enums, out):
    lines = [
        "// Generated from the engine's description: lets the global enumerations pass through Variants and bound methods.",
        "",
        "#include <godot_cpp/classes/global_constants.hpp>",
        "#include <godot_cpp/core/binder_common.hpp>",
        "",
    ]
    # The macros name namespace godot themselves where they specialise its templates.
    for enum in enums:
        lines.append("VARIANT_%s_CAST(godot::%s);" % ("BITFIELD" if enum["is_bitfield"] else "ENUM", enum["name"]))
    out.write_header("godot_cpp/classes/global_constants_binds.hpp", "\n".join(lines))


def emit_utility_functions(types, functions, out):
    public, private, body = [], [], []
    for function in functions:
        arguments = function.get("arguments", [])
        return_type = function.get("return_type")
        result = types.value(return_type) if return_type else "void"
        if not result.endswith("*"):
            result += " "
        finder = 'internal::find_utility_function("%s", %d)' % (function["name"], function["hash"])
        if function["is_vararg"]:
            front, front_body = vararg_front(types, function["name"], return_type, arguments, static=True)
            public += ["\ttemplate <typename... Args>", "\tstatic %s {" % front, *("\t" + line for line in front_body), "\t}"]
            signature = "%s_internal(const Variant **p_arguments, int p_count)" % function["name"]
            private.append("\tstatic %s%s;" % (result, signature))
            body += [
                "%sUtilityFunctions::%s {" % (result, signature),
                "\tstatic const GDExtensionPtrUtilityFunction function = %s;" % finder,
                "\t%sinternal::call_utility<%s>(function, reinterpret_cast<const GDExtensionConstTypePtr *>(p_arguments), p_count);"
                % ("return " if return_type else "", result.strip()),
                "}",
                "",
            ]
            continue
        name = escape(function["name"])
        public.append("\tstatic %s%s(%s);" % (result, name, ", ".join(parameter_list(types, arguments, True))))
        body.append("%sUtilityFunctions::%s(%s) {" % (result, name, ", ".join(parameter_list(types, arguments, False))))
        body += call_lines(types, "GDExtensionPtrUtilityFunction function", return_type, finder, [], arguments)
        body += ["}", ""]
    header = [
        "// Generated from the engine's description.",
        "",
        "#include <godot_cpp/variant/builtin_types.hpp>",
        "#include <godot_cpp/variant/variant.hpp>",
        "#include <godot_cpp/variant/variant_arguments.hpp>",
        "",
        "namespace godot {",
        "",
        "class Object;",
        "",
        "class UtilityFunctions {",
        *private,
        "",
        "public:",
        *public,
        "};",
        "",
        "} // namespace godot",
    ]
    out.write_header("godot_cpp/variant/utility_functions.hpp", "\n".join(header))
    source = [
        "// Generated from the engine's description.",
        "",
        "#include <godot_cpp/classes/object.hpp>",
        "#include <godot_cpp/core/builtin_ptrcall.hpp>",
        "#include <godot_cpp/variant/utility_functions.hpp>",
        "",
        "namespace godot {",
        "",
        *body,
        "} // namespace godot",
    ]
    out.write("src/variant/utility_functions.cpp", "\n".join(source) + "\n")

"""Wrappers of the builtin types whose inside belongs to the engine: String, Array, Callable and so on. What the description cannot
tell, such as C strings and element access, is written by hand in the .inc files that the generated classes include."""

from .types import MATH_TYPES, Types, escape, snake_case

# Sources are made in these groups, so that the build knows their names beforehand.
GROUPS = {
    "builtin_strings": ["String", "NodePath"],
    "builtin_string_names": ["StringName"],
    "builtin_containers": ["Callable", "Signal", "Dictionary", "Array"],
    "builtin_packed_bytes": ["PackedByteArray", "PackedInt32Array", "PackedInt64Array", "PackedFloat32Array", "PackedFloat64Array"],
    "builtin_packed_values": ["PackedStringArray", "PackedVector2Array", "PackedVector3Array", "PackedColorArray", "PackedVector4Array"],
}
SOURCES = ["src/variant/%s.cpp" % group for group in GROUPS]

# Empty ones own a shared block; the others are zero bits while empty.
SHARED = {"Dictionary", "Array"}

PACKED_ELEMENTS = {
    "PackedByteArray": "uint8_t",
    "PackedInt32Array": "int32_t",
    "PackedInt64Array": "int64_t",
    "PackedFloat32Array": "float",
    "PackedFloat64Array": "double",
    "PackedStringArray": "String",
    "PackedVector2Array": "Vector2",
    "PackedVector3Array": "Vector3",
    "PackedColorArray": "Color",
    "PackedVector4Array": "Vector4",
}

HAND_WRITTEN = {
    "String": "string_members.inc",
    "StringName": "string_name_members.inc",
    "NodePath": "node_path_members.inc",
    "Callable": "callable_members.inc",
    "Dictionary": "dictionary_members.inc",
    "Array": "array_members.inc",
}

# Declared in the .inc file: the same answer without a call into the engine.
HAND_WRITTEN_METHODS = {("StringName", "is_empty"), ("StringName", "hash"), ("NodePath", "is_empty")}
HAND_WRITTEN_OPERATORS = {("StringName", "==", "StringName"), ("StringName", "!=", "StringName"), ("StringName", "not", None), ("NodePath", "not", None)}

HEADERS = {
    "String": ["<godot_cpp/classes/global_constants.hpp>", "<godot_cpp/variant/char_string.hpp>"],
    "Array": ["<godot_cpp/variant/variant_arguments.hpp>", "<initializer_list>"],
}
FOOTERS = {
    "String": ["<godot_cpp/variant/string_functions.hpp>"],
    "StringName": ["<godot_cpp/variant/string_name_functions.hpp>"],
}
# What these take and give is mostly Variants: a source that includes one needs Variant whole.
WITH_VARIANT = {"Callable", "Signal", "Dictionary", "Array"}

FORWARDS = {"String": ["StringName", "NodePath"], "Callable": ["CallableCustom"]}

OPERATORS = {"==": "EQUAL", "!=": "NOT_EQUAL", "<": "LESS", "<=": "LESS_EQUAL", ">": "GREATER", ">=": "GREATER_EQUAL", "+": "ADD", "*": "MULTIPLY"}

TEXTS = ("String", "StringName")


def header(name):
    return "<godot_cpp/variant/%s.hpp>" % snake_case(name)


def type_constant(name):
    return "GDEXTENSION_VARIANT_TYPE_%s" % snake_case(name).upper()


def parameter_list(types, arguments, with_defaults):
    """Parameters as declared. A Variant left out is an overload instead, as a default value would need Variant whole."""
    parts = []
    for argument in arguments:
        text = types.parameter(argument["type"]) + "p_" + argument["name"]
        if with_defaults and "default_value" in argument and argument["type"] != "Variant":
            text += " = " + types.default_value(argument["type"], argument["default_value"])
        parts.append(text)
    return parts


def argument_addresses(arguments):
    """Arguments as a braced list of addresses, and the lines that make pointers to engine objects of wrappers."""
    lines, addresses = [], []
    for argument in arguments:
        name = "p_" + argument["name"]
        if argument["type"] == "Object":
            owner = argument["name"] + "_owner"
            lines.append("\tconst GDExtensionObjectPtr %s = %s ? %s->_owner : nullptr;" % (owner, name, name))
            name = owner
        addresses.append("&" + name)
    return lines, "{ %s }" % ", ".join(addresses)


def call_lines(types, function, return_type, finder, first, arguments):
    """Body of a wrapper: find once, call."""
    lines, addresses = argument_addresses(arguments)
    lines.insert(0, "\tstatic const %s = %s;" % (function, finder))
    result = types.value(return_type) if return_type else "void"
    name = function.split()[-1]
    passed = [name] + first + ([addresses] if arguments else [])
    kind = "call_utility" if "Utility" in function else "call_builtin"
    if return_type == "Object":
        lines.append("\tconst GDExtensionObjectPtr found = internal::%s<GDExtensionObjectPtr>(%s);" % (kind, ", ".join(passed)))
        lines.append("\treturn found ? internal::get_object_instance_binding(found) : nullptr;")
    else:
        statement = "internal::%s<%s>(%s);" % (kind, result, ", ".join(passed))
        lines.append("\t" + (statement if result == "void" else "return " + statement))
    return lines


def vararg_front(types, name, return_type, arguments, static=False, scope=""):
    """Template that packs what it is given into Variants and hands them to the method of the same name with _internal: its
    signature, and its body's lines."""
    parameters = parameter_list(types, arguments, False) + ["const Args &...p_arguments"]
    passed = ["p_" + argument["name"] for argument in arguments] + ["p_arguments..."]
    count = "sizeof...(Args)" + (" + %d" % len(arguments) if arguments else "")
    result = types.value(return_type) if return_type else "void"
    signature = "%s %s%s(%s)%s" % (result, scope, escape(name), ", ".join(parameters), "" if static else " const")
    body = [
        "\tinternal::VariantArguments<%s> arguments(%s);" % (count, ", ".join(passed)),
        "\t%s%s_internal(arguments.pointers(), arguments.count());" % ("return " if return_type else "", name),
    ]
    return signature, body


class BuiltinWriter:
    def __init__(self, types, data, size):
        self.types = types
        self.data = data
        self.name = data["name"]
        self.size = size
        self.constant = type_constant(self.name)
        self.includes = set(HEADERS.get(self.name, []))
        self.mentioned = set(FORWARDS.get(self.name, [])) | {"Variant"}
        self.public = []
        self.private = []
        self.body = []
        self.templates = []

    def mention(self, arguments, return_type=None):
        for argument in arguments:
            self.mentioned.add(argument["type"])
            if "default_value" in argument and argument["type"] in TEXTS and argument["type"] != self.name:
                self.includes.add(header(argument["type"]))
        if return_type:
            self.mentioned.add(return_type)

    def base(self):
        if self.name in PACKED_ELEMENTS:
            return "internal::PackedArrayAccess<%s, %s, %s>" % (self.name, PACKED_ELEMENTS[self.name], self.constant)
        shared = ", false" if self.name in SHARED else ""
        return "internal::OpaqueValue<%s, %d%s>" % (self.constant, self.size, shared)

    def base_name(self):
        return "PackedArrayAccess" if self.name in PACKED_ELEMENTS else "OpaqueValue"

    def constructors(self):
        self.public.append("\t%s() = default;" % self.name)
        for constructor in self.data["constructors"]:
            arguments = constructor.get("arguments", [])
            # The empty one and the copy belong to the base.
            if constructor["index"] < 2:
                continue
            self.mention(arguments)
            parameters = ", ".join(parameter_list(self.types, arguments, False))
            self.public.append("\t%s(%s);" % (self.name, parameters))
            lines, addresses = argument_addresses(arguments)
            self.body += [
                "%s::%s(%s) :" % (self.name, self.name, parameters),
                "\t\t%s(internal::Unconstructed()) {" % self.base_name(),
                "\tstatic const GDExtensionPtrConstructor constructor = internal::find_builtin_constructor(%s, %d);" % (self.constant, constructor["index"]),
                *lines,
                "\tinternal::construct_builtin(constructor, _native_ptr(), %s);" % addresses,
                "}",
                "",
            ]
        element = PACKED_ELEMENTS.get(self.name)
        if element:
            self.includes.add("<godot_cpp/variant/packed_array_access.hpp>")
            if element in MATH_TYPES or element == "String":
                self.includes.add(header(element))
            self.public.append("\t%s(std::initializer_list<%s> p_values) { fill_from(p_values); }" % (self.name, element))

    def operators(self):
        self.public.append("")
        for operator in self.data["operators"]:
            name, right = operator["name"], operator.get("right_type")
            if (self.name, name, right) in HAND_WRITTEN_OPERATORS:
                continue
            if name == "not":
                self.operator("operator!() const", "bool", "NOT", "GDEXTENSION_VARIANT_TYPE_NIL", "nullptr")
            elif name in ("==", "!=") and right == "Variant":
                # The description means "compared with null" here; comparing with what the Variant holds serves callers better.
                self.public.append("\tbool operator%s(const Variant &p_other) const;" % name)
                self.body += ["bool %s::operator%s(const Variant &p_other) const {" % (self.name, name), "\treturn %sinternal::equals_variant(*this, p_other);" % ("!" if name == "!=" else ""), "}", ""]
            elif name in OPERATORS and (right == self.name or (self.name in TEXTS and right in TEXTS) or right in MATH_TYPES):
                self.mentioned.add(right)
                result = self.types.value(operator["return_type"])
                self.operator("operator%s(const %s &p_other) const" % (name, right), result, OPERATORS[name], type_constant(right), "p_other._native_ptr()" if right not in MATH_TYPES else "&p_other")

    def operator(self, declaration, result, operator, right_constant, right):
        self.public.append("\t%s %s;" % (result, declaration))
        self.body += [
            "%s %s::%s {" % (result, self.name, declaration),
            "\tstatic const GDExtensionPtrOperatorEvaluator evaluator = internal::find_builtin_operator(GDEXTENSION_VARIANT_OP_%s, %s, %s);" % (operator, self.constant, right_constant),
            "\treturn internal::evaluate_builtin<%s>(evaluator, _native_ptr(), %s);" % (result, right),
            "}",
            "",
        ]

    def methods(self):
        self.public.append("")
        for method in self.data.get("methods", []):
            if (self.name, method["name"]) in HAND_WRITTEN_METHODS:
                continue
            arguments = method.get("arguments", [])
            return_type = method.get("return_type")
            self.mention(arguments, return_type)
            finder = 'internal::find_builtin_method(%s, "%s", %d)' % (self.constant, method["name"], method["hash"])
            if method["is_vararg"]:
                self.vararg_method(method, arguments, return_type, finder)
                continue
            self.method(method, arguments, return_type, finder)
            if arguments and arguments[-1].get("default_value") is not None and arguments[-1]["type"] == "Variant":
                self.without_last(method, arguments, return_type)

    def signature(self, method, parameters, scope=""):
        return "%s%s(%s)%s" % (scope, escape(method["name"]), ", ".join(parameters), " const" if method["is_const"] and not method["is_static"] else "")

    def result(self, return_type):
        text = self.types.value(return_type) if return_type else "void"
        return text if text.endswith("*") else text + " "

    def method(self, method, arguments, return_type, finder):
        result = self.result(return_type)
        static = "static " if method["is_static"] else ""
        self.public.append("\t%s%s%s;" % (static, result, self.signature(method, parameter_list(self.types, arguments, True))))
        self.body.append("%s%s {" % (result, self.signature(method, parameter_list(self.types, arguments, False), self.name + "::")))
        base = "nullptr" if method["is_static"] else "_native_ptr()"
        self.body += call_lines(self.types, "GDExtensionPtrBuiltInMethod method", return_type, finder, [base], arguments)
        self.body += ["}", ""]

    def without_last(self, method, arguments, return_type):
        result = self.result(return_type)
        shorter = arguments[:-1]
        self.public.append("\t%s%s;" % (result, self.signature(method, parameter_list(self.types, shorter, True))))
        passed = ["p_" + argument["name"] for argument in shorter] + ["Variant()"]
        self.body += [
            "%s%s {" % (result, self.signature(method, parameter_list(self.types, shorter, False), self.name + "::")),
            "\treturn %s(%s);" % (escape(method["name"]), ", ".join(passed)),
            "}",
            "",
        ]

    def vararg_method(self, method, arguments, return_type, finder):
        front, _ = vararg_front(self.types, method["name"], return_type, arguments)
        self.public += ["\ttemplate <typename... Args>", "\t%s;" % front]
        front, front_body = vararg_front(self.types, method["name"], return_type, arguments, scope=self.name + "::")
        self.templates += ["template <typename... Args>", "%s {" % front, *front_body, "}", ""]
        result = self.result(return_type)
        signature = "%s_internal(const Variant **p_arguments, int p_count) const" % method["name"]
        self.private.append("\t%s%s;" % (result, signature))
        self.body += [
            "%s%s::%s {" % (result, self.name, signature),
            "\tstatic const GDExtensionPtrBuiltInMethod method = %s;" % finder,
            "\t%sinternal::call_builtin<%s>(method, _native_ptr(), reinterpret_cast<const GDExtensionConstTypePtr *>(p_arguments), p_count);"
            % ("return " if return_type else "", result.strip()),
            "}",
            "",
        ]

    def forwards(self):
        names = sorted(n for n in self.mentioned if n and n not in ("bool", "int", "float", "void", self.name))
        return ["%s %s;" % ("struct" if n in MATH_TYPES else "class", n) for n in names]

    def write(self, out):
        """Writes the header; the bodies are left for the group's source and the header of templates."""
        self.constructors()
        if self.name in HAND_WRITTEN:
            self.public += ["", "#include <godot_cpp/variant/%s>" % HAND_WRITTEN[self.name]]
        self.operators()
        self.methods()
        self.includes.add("<godot_cpp/variant/opaque_value.hpp>")
        lines = ["// Generated from the engine's description.", ""]
        lines += ["#include " + include for include in sorted(self.includes)]
        lines += ["", "namespace godot {", "", *self.forwards(), "", "class %s : public %s {" % (self.name, self.base())]
        if self.private:
            lines += [*self.private, ""]
        lines += ["public:", *self.public, "};", "", "} // namespace godot"]
        footer = FOOTERS.get(self.name)
        if footer:
            lines += ["", *("#include " + include for include in footer)]
        if self.name in WITH_VARIANT:
            lines += ["", "// Not from within the list of all types, which Variant waits for.", "#ifndef GODOT_CPP_LISTING_BUILTIN_TYPES"]
            lines += ["#include <godot_cpp/variant/variant.hpp>", "#endif"]
        out.write_header("godot_cpp/variant/%s.hpp" % snake_case(self.name), "\n".join(lines))


def builtin_sizes(api):
    for configuration in api["builtin_class_sizes"]:
        if configuration["build_configuration"] == "float_64":
            return {entry["name"]: entry["size"] for entry in configuration["sizes"]}
    raise SystemExit("The engine's description has no sizes for 64-bit, single precision.")


def emit_builtins(api, out):
    types = Types(api)
    sizes = builtin_sizes(api)
    classes = {data["name"]: data for data in api["builtin_classes"]}
    templates = []
    for group, names in GROUPS.items():
        body = []
        for name in names:
            writer = BuiltinWriter(types, classes[name], sizes[name])
            writer.write(out)
            body += writer.body
            templates += writer.templates
        lines = [
            "// Generated from the engine's description.",
            "",
            "#include <godot_cpp/classes/object.hpp>",
            "#include <godot_cpp/core/builtin_ptrcall.hpp>",
            "#include <godot_cpp/variant/builtin_types.hpp>",
            "#include <godot_cpp/variant/variant.hpp>",
            "",
            "namespace godot {",
            "",
            *body,
            "} // namespace godot",
        ]
        out.write("src/variant/%s.cpp" % group, "\n".join(lines) + "\n")
    emit_vararg_methods(templates, out)


def emit_vararg_methods(templates, out):
    lines = [
        "// Generated from the engine's description: methods that take any number of arguments. Their bodies need Variant whole, while the",
        "// classes' own headers only name it; variant.hpp includes this at its end.",
        "",
        "#include <godot_cpp/variant/variant.hpp>",
        "#include <godot_cpp/variant/variant_arguments.hpp>",
        "#include <godot_cpp/variant/vformat.hpp>",
        "",
        "namespace godot {",
        "",
        *templates,
        "} // namespace godot",
    ]
    out.write_header("godot_cpp/variant/builtin_vararg_methods.hpp", "\n".join(lines))

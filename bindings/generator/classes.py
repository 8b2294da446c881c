"""Engine class wrappers: whole for the classes that sources include, hollow for those that their signatures name.

A whole class has every method; a hollow one has its place in the inheritance, its enumerations and constants, which is what it takes to hold
and pass it. The rest of the engine's classes are forward declarations at most.
"""

import zlib

from .types import escape, is_pointer, snake_case

BATCHES = 12

# Whole whether or not a source includes them: the hand-written core calls them.
ALWAYS = ("Object", "RefCounted", "Resource", "ClassDB", "Engine", "OS")

# Locals of the generated bodies, which a parameter must not hide.
LOCALS = {"method", "singleton"}


def batch_of(name):
    """A class stays in its batch, whatever else is wrapped."""
    return zlib.crc32(name.encode()) % BATCHES


def batch_path(index):
    return "src/engine_classes_%02d.cpp" % index


class Method:
    """One method of the description, spelled in C++."""

    def __init__(self, types, data):
        self.api_name = data["name"]
        self.name = escape(data["name"])
        self.hash = data.get("hash", 0)
        self.is_const = data["is_const"]
        self.is_static = data["is_static"]
        self.is_virtual = data["is_virtual"]
        self.is_vararg = data["is_vararg"]
        returned = data.get("return_value")
        self.return_type = types.value(returned["type"], returned.get("meta")) if returned else "void"
        self.arguments = []
        self.type_names = [returned["type"]] if returned else []
        for argument in data.get("arguments", []):
            name = escape(argument["name"])
            if name in LOCALS:
                name += "_"
            kind = types.parameter(argument["type"], argument.get("meta"))
            default = argument.get("default_value")
            if default is not None:
                default = types.default_value(argument["type"], default, argument.get("meta"))
            self.arguments.append((kind, name, default, argument["type"]))
            self.type_names.append(argument["type"])
        # Raw memory and native structs: the traffic of server extensions, which these bindings leave out.
        self.is_skipped = any(is_pointer(t) for t in self.type_names)

    def parameters(self, defaults):
        return ", ".join(
            kind + name + (" = %s" % default if defaults and default is not None else "") for kind, name, default, _t in self.arguments
        )

    def returns(self):
        return self.return_type if self.return_type.endswith("*") else self.return_type + " "


class ClassWriter:
    def __init__(self, api, types):
        self.api = api
        self.types = types
        self.singletons = {s["type"]: s["name"] for s in api["singletons"]}
        self.by_header = {snake_case(types.class_name(name)): name for name in types.classes}

    # Which classes.

    def ancestors(self, name):
        while name:
            yield name
            name = self.types.classes[name].get("inherits")

    def choose(self, headers):
        """The whole classes and the hollow ones for a set of included headers."""
        whole = set()
        for name in list(ALWAYS) + [self.by_header[h] for h in headers if h in self.by_header]:
            whole.update(self.ancestors(name))
        hollow = set()
        for name in whole:
            for mentioned in self.mentioned_classes(name):
                hollow.update(self.ancestors(mentioned))
        return whole, hollow - whole

    def methods(self, name):
        made = [Method(self.types, m) for m in self.types.classes[name].get("methods", [])]
        return [m for m in made if not m.is_skipped]

    def mentioned_classes(self, name):
        """Every class that the signatures of a class name, itself aside."""
        mentioned = set()
        for method in self.methods(name):
            for type_name in method.type_names:
                mentioned.update(self.types.element_class(type_name))
                owner = self.types.enum_class(type_name)
                if owner:
                    mentioned.add(owner)
        mentioned.discard(name)
        return mentioned

    # Headers.

    def header_includes(self, name, whole):
        includes = set()
        forward = set()
        inherits = self.types.classes[name].get("inherits")
        if not whole:
            return includes, forward
        for method in self.methods(name):
            for _kind, _name, default, type_name in method.arguments:
                # An empty typed array as a default argument needs its class whole, unlike all else that a signature names.
                if default is not None and type_name.startswith("typed"):
                    includes.update(self.types.header(element) for element in self.types.element_class(type_name))
            if method.is_vararg:
                includes.add("godot_cpp/variant/variant_arguments.hpp")
            for type_name in method.type_names:
                owner = self.types.enum_class(type_name)
                if owner and owner != name:
                    includes.add(self.types.header(owner))
                elif type_name.startswith(("enum::", "bitfield::")) and "." not in type_name:
                    includes.add("godot_cpp/classes/global_constants.hpp")
                elif type_name.startswith("typedarray::"):
                    includes.add("godot_cpp/variant/typed_array.hpp")
                elif type_name.startswith("typeddictionary::"):
                    includes.add("godot_cpp/variant/typed_dictionary.hpp")
                elif type_name in self.types.builtins and type_name not in ("bool", "int", "float"):
                    includes.add("godot_cpp/variant/%s.hpp" % snake_case(type_name))
                elif type_name == "Variant":
                    includes.add("godot_cpp/variant/variant.hpp")
                for mentioned in self.types.element_class(type_name):
                    if mentioned not in (name, inherits):
                        forward.add(self.types.class_name(mentioned))
                    if self.types.is_refcounted(mentioned) and not type_name.startswith("typed"):
                        includes.add("godot_cpp/classes/ref.hpp")
        return includes, forward

    def enum_lines(self, name):
        lines = []
        casts = []
        data = self.types.classes[name]
        cpp = self.types.class_name(name)
        for enum in data.get("enums", []):
            lines.append("\t" + ("enum %s : uint64_t {" if enum["is_bitfield"] else "enum %s {") % enum["name"])
            lines += ["\t\t%s = %d," % (v["name"], v["value"]) for v in enum["values"]]
            lines.append("\t};")
            lines.append("")
            casts.append("VARIANT_%s_CAST(%s::%s);" % ("BITFIELD" if enum["is_bitfield"] else "ENUM", cpp, enum["name"]))
        for constant in data.get("constants", []):
            kind = "int" if -(2**31) <= constant["value"] < 2**31 else "int64_t"
            lines.append("\tstatic constexpr %s %s = %d;" % (kind, constant["name"], constant["value"]))
        if data.get("constants"):
            lines.append("")
        return lines, casts

    def declaration_lines(self, name):
        """The methods of a whole class: public ones, then what virtual wiring and vararg fronts need."""
        public = []
        private = []
        if name in self.singletons:
            public.append("\tstatic %s *get_singleton();" % self.types.class_name(name))
        for m in self.methods(name):
            const = " const" if m.is_const else ""
            if m.is_vararg:
                public += self.vararg_front(m)
                private.append("\t%s%s_internal(const Variant **args, GDExtensionInt count)%s;" % (m.returns(), m.name, const))
            elif m.is_virtual:
                public.append("\tvirtual %s%s(%s)%s;" % (m.returns(), m.name, m.parameters(False), const))
            elif m.is_static:
                public.append("\tstatic %s%s(%s);" % (m.returns(), m.name, m.parameters(True)))
            else:
                public.append("\t%s%s(%s)%s;" % (m.returns(), m.name, m.parameters(True), const))
        return public, private

    def vararg_front(self, m):
        parameters = "".join("%s%s, " % (kind, name) for kind, name, _d, _t in m.arguments)
        names = "".join("%s, " % name for _k, name, _d, _t in m.arguments)
        returned = "" if m.return_type == "void" else "return "
        return [
            "\ttemplate <class... Args>",
            "\t%s%s(%sconst Args &...args)%s {" % (m.returns(), m.name, parameters, " const" if m.is_const else ""),
            "\t\tinternal::VariantArguments<%d + sizeof...(Args)> values(%sargs...);" % (len(m.arguments), names),
            "\t\t%s%s_internal(values.pointers(), values.count());" % (returned, m.name),
            "\t}",
        ]

    def virtual_lines(self, name, whole):
        inherits = self.types.classes[name].get("inherits")
        lines = ["\ttemplate <class T, class B>", "\tstatic void register_virtuals() {"]
        if inherits:
            lines.append("\t\t%s::register_virtuals<T, B>();" % self.types.class_name(inherits))
        for m in self.methods(name):
            if whole and m.is_virtual:
                lines.append("\t\tif constexpr (!std::is_same_v<decltype(&B::%s), decltype(&T::%s)>) {" % (m.name, m.name))
                lines.append("\t\t\tBIND_VIRTUAL_METHOD(T, %s, %d);" % (m.name, m.hash))
                lines.append("\t\t}")
        lines.append("\t}")
        return lines

    def header(self, name, whole):
        data = self.types.classes[name]
        cpp = self.types.class_name(name)
        inherits = data.get("inherits")
        includes, forward = self.header_includes(name, whole)
        enums, casts = self.enum_lines(name)
        if name == "Object":
            includes |= {"godot_cpp/classes/wrapped.hpp", "godot_cpp/variant/variant.hpp"}
        else:
            includes.add(self.types.header(inherits))
        if name not in ("Object", "ClassDB"):
            includes.add("godot_cpp/core/class_db.hpp")
        elif casts:
            includes.add("godot_cpp/core/binder_common.hpp")
        lines = []
        if not whole:
            lines += ["// Hollow: no source includes this header. Including it (and building again) gives %s its methods." % cpp, ""]
        lines += ["#include <%s>" % include for include in sorted(includes)]
        if whole:
            lines += ["", "#include <type_traits>"]
        lines += ["", "namespace godot {", ""]
        if forward:
            lines += ["class %s;" % f for f in sorted(forward)] + [""]
        base = self.types.class_name(inherits) if inherits else "Wrapped"
        lines.append("class %s : public %s {" % (cpp, base))
        if cpp == name:
            lines.append("\tGDEXTENSION_CLASS(%s, %s)" % (cpp, base))
        else:
            lines.append("\tGDEXTENSION_CLASS_ALIAS(%s, %s, %s)" % (cpp, name, base))
        lines += ["", "public:"] + enums
        if whole:
            public, private = self.declaration_lines(name)
            lines += public
            if name == "Object":
                lines += [
                    "",
                    "\ttemplate <class T>",
                    "\tstatic T *cast_to(Object *object);",
                    "\ttemplate <class T>",
                    "\tstatic const T *cast_to(const Object *object);",
                ]
            if private:
                lines += ["", "private:"] + private
        lines += ["", "protected:"]
        lines += self.virtual_lines(name, whole)
        lines += ["};", "", "} // namespace godot"]
        if casts:
            lines += [""] + casts
        if name == "ClassDB":
            lines += [""] + self.forward_macro(name)
        return "\n".join(lines)

    def forward_macro(self, name):
        """The engine's ClassDB methods as statics of the bindings' ClassDB class."""
        cpp = self.types.class_name(name)
        lines = ["#define CLASSDB_SINGLETON_FORWARD_METHODS"]
        for enum in self.types.classes[name].get("enums", []):
            lines.append("\tusing %s = %s::%s;" % (enum["name"], cpp, enum["name"]))
        for m in self.methods(name):
            call = "%s::get_singleton()->%s" % (cpp, m.name)
            returned = "" if m.return_type == "void" else "return "
            if m.is_vararg:
                parameters = "".join("%s%s, " % (kind, arg) for kind, arg, _d, _t in m.arguments)
                names = "".join("%s, " % arg for _k, arg, _d, _t in m.arguments)
                lines.append("\ttemplate <class... Args>")
                lines.append("\tstatic %s%s(%sconst Args &...args) {" % (m.returns(), m.name, parameters))
                lines.append("\t\t%s%s(%sargs...);" % (returned, call, names))
            else:
                lines.append("\tstatic %s%s(%s) {" % (m.returns(), m.name, m.parameters(True)))
                lines.append("\t\t%s%s(%s);" % (returned, call, ", ".join(arg for _k, arg, _d, _t in m.arguments)))
            lines.append("\t}")
        return [line + " \\" for line in lines[:-1]] + lines[-1:]

    # Sources.

    def source_lines(self, name):
        cpp = self.types.class_name(name)
        lines = []
        if name in self.singletons:
            lines += [
                "%s *%s::get_singleton() {" % (cpp, cpp),
                '\tstatic internal::EngineSingleton singleton("%s");' % self.singletons[name],
                "\treturn static_cast<%s *>(singleton.get());" % cpp,
                "}",
                "",
            ]
        for m in self.methods(name):
            const = " const" if m.is_const else ""
            handle = '\tstatic internal::EngineMethod method("%s", "%s", %d);' % (name, m.api_name, m.hash)
            if m.is_virtual:
                unnamed = ", ".join(kind.rstrip() for kind, _n, _d, _t in m.arguments)
                body = "" if m.return_type == "void" else " return %s; " % self.empty_value(m.return_type)
                lines += ["%s%s::%s(%s)%s {%s}" % (m.returns(), cpp, m.name, unnamed, const, body), ""]
            elif m.is_vararg:
                call = "internal::engine_vararg_call(method, _owner, args, count)"
                lines += [
                    "%s%s::%s_internal(const Variant **args, GDExtensionInt count)%s {" % (m.returns(), cpp, m.name, const),
                    handle,
                    "\t" + self.vararg_result(m, call),
                    "}",
                    "",
                ]
            else:
                owner = "nullptr" if m.is_static else "_owner"
                arguments = "".join(", " + arg for _k, arg, _d, _t in m.arguments)
                returned = "" if m.return_type == "void" else "return "
                lines += [
                    "%s%s::%s(%s)%s {" % (m.returns(), cpp, m.name, m.parameters(False), const),
                    handle,
                    "\t%sinternal::engine_call<%s>(method, %s%s);" % (returned, m.return_type, owner, arguments),
                    "}",
                    "",
                ]
        return lines

    def empty_value(self, return_type):
        if return_type == "bool":
            return "false"
        if return_type.endswith("*"):
            return "nullptr"
        return "%s()" % return_type

    def vararg_result(self, m, call):
        if m.return_type == "Variant":
            return "return %s;" % call
        if m.return_type == "void":
            return "%s;" % call
        if m.return_type == "Error":
            return "return static_cast<Error>(static_cast<int64_t>(%s));" % call
        return "return %s;" % call

    def batch(self, index, names, whole):
        lines = ["#include <godot_cpp/core/engine_ptrcall.hpp>", "#include <godot_cpp/core/object.hpp>", ""]
        headers = {self.types.header(n) for n in names}
        for name in names:
            if name in whole:
                headers |= {self.types.header(m) for m in self.mentioned_classes(name)}
        lines += ["#include <%s>" % h for h in sorted(headers)]
        lines += ["", "namespace godot {", ""]
        for name in names:
            if name in whole:
                lines += self.source_lines(name)
        lines += ["namespace internal {", "", "void register_engine_classes_%02d() {" % index]
        for name in names:
            cpp = self.types.class_name(name)
            lines.append("\tregister_engine_class(%s::get_class_static(), &%s::_gde_binding_callbacks);" % (cpp, cpp))
        lines += ["}", "", "} // namespace internal", "} // namespace godot"]
        return "\n".join(lines)

    def registration(self):
        names = ["register_engine_classes_%02d" % i for i in range(BATCHES)]
        lines = ["namespace godot {", "namespace internal {", ""]
        lines += ["void %s();" % n for n in names]
        lines += ["", "void register_engine_classes();", "", "void register_engine_classes() {"]
        lines += ["\t%s();" % n for n in names]
        lines += ["}", "", "} // namespace internal", "} // namespace godot"]
        return "\n".join(lines)

    def emit(self, headers, out):
        whole, hollow = self.choose(headers)
        for name in whole | hollow:
            out.write_header(self.types.header(name), self.header(name, name in whole))
        for index in range(BATCHES):
            names = sorted(n for n in whole | hollow if batch_of(n) == index)
            out.write(batch_path(index), self.batch(index, names, whole))
        out.write("src/register_engine_classes.cpp", self.registration())
        return whole, hollow

"""How the API description's type names are spelled in C++: parameters, returns, default values."""

import re

INTEGERS = {
    "int8": "int8_t",
    "int16": "int16_t",
    "int32": "int32_t",
    "int64": "int64_t",
    "uint8": "uint8_t",
    "uint16": "uint16_t",
    "uint32": "uint32_t",
    "uint64": "uint64_t",
    "char16": "char16_t",
    "char32": "char32_t",
}

# Handed over by value; every other builtin goes by reference.
SCALARS = {"bool", "int", "float"}

# Plain structs, written by hand.
MATH_TYPES = {
    "Vector2",
    "Vector2i",
    "Vector3",
    "Vector3i",
    "Vector4",
    "Vector4i",
    "Rect2",
    "Rect2i",
    "Transform2D",
    "Plane",
    "Quaternion",
    "AABB",
    "Basis",
    "Transform3D",
    "Projection",
    "Color",
}

# Words that C++ keeps for itself; the escaped forms are the ones users of the public names know.
KEYWORDS = {
    "new": "new_",
    "typeof": "type_of",
    "typename": "type_name",
}
KEYWORDS.update(
    {
        word: "_" + word
        for word in (
            "and auto bool break case catch char class const continue default delete do double else enum explicit export extern false "
            "float for friend goto if inline int long mutable namespace not operator or private protected public register return short "
            "signed sizeof static struct switch template this throw true try typedef union unsigned using virtual void volatile while xor"
        ).split()
    }
)


def escape(name):
    """A name of the API as a C++ identifier."""
    return KEYWORDS.get(name, name)


def snake_case(name):
    """File name of a class: NavigationAgent2D -> navigation_agent2d, RegEx -> reg_ex, HTTPClient -> http_client."""
    spaced = re.sub(r"(?<=.)(?=[A-Z][a-z])|(?<=[a-z0-9])(?=[A-Z])", "_", name)
    return re.sub(r"([23])_D", r"\1D", spaced).lower()


def is_pointer(type_name):
    """Raw memory and native structures, which only the engine's own server extensions exchange."""
    return "*" in type_name


class Types:
    """Answers that need the whole description: what is a class, what counts references."""

    # The engine's ClassDB object and the bindings' ClassDB class would share a name.
    ALIASES = {"ClassDB": "ClassDBSingleton"}

    def __init__(self, api):
        self.classes = {c["name"]: c for c in api["classes"]}
        self.builtins = {b["name"] for b in api["builtin_classes"]} - {"Nil"}

    def class_name(self, name):
        return self.ALIASES.get(name, name)

    def header(self, name):
        """Include path of an engine class."""
        return "godot_cpp/classes/%s.hpp" % snake_case(self.class_name(name))

    def is_class(self, type_name):
        return type_name in self.classes

    def is_refcounted(self, type_name):
        return type_name in self.classes and self.classes[type_name]["is_refcounted"]

    def value(self, type_name, meta=None):
        """The type as a member or a return: what a caller holds."""
        if is_pointer(type_name):
            return type_name.replace("**", "* *")
        if type_name.startswith("enum::"):
            return self._scoped(type_name[6:])
        if type_name.startswith("bitfield::"):
            return "BitField<%s>" % self._scoped(type_name[10:])
        if type_name.startswith("typedarray::"):
            return "TypedArray<%s>" % self._element(type_name[12:])
        if type_name.startswith("typeddictionary::"):
            key, element = type_name[17:].split(";")
            return "TypedDictionary<%s, %s>" % (self._element(key), self._element(element))
        if type_name == "int":
            return INTEGERS.get(meta, "int64_t")
        if type_name == "float":
            return "float" if meta == "float" else "double"
        if type_name == "Nil":
            return "Variant"
        if self.is_class(type_name):
            name = self.class_name(type_name)
            return "Ref<%s>" % name if self.is_refcounted(type_name) else "%s *" % name
        return type_name

    def parameter(self, type_name, meta=None):
        """The type as a parameter, without its name; ends in a space or a mark, so that a name can follow."""
        cpp = self.value(type_name, meta)
        if cpp.endswith("*"):
            return cpp
        by_value = type_name in SCALARS or type_name.startswith(("enum::", "bitfield::"))
        return cpp + " " if by_value else "const %s &" % cpp

    def default_value(self, type_name, text, meta=None):
        """A default as the description writes it, as a C++ expression for a parameter of that type."""
        cpp = self.value(type_name, meta)
        if type_name.startswith(("enum::", "bitfield::")):
            return "(%s)%s" % (cpp[9:-1] if cpp.startswith("BitField<") else cpp, text)
        if type_name.startswith(("typedarray::", "typeddictionary::")) or type_name in ("Array", "Dictionary"):
            return "%s()" % cpp
        if self.is_class(type_name):
            return "nullptr"
        if type_name == "Variant":
            return "Variant()" if text == "null" else "Variant(%s)" % text
        if type_name in ("String", "StringName"):
            literal = text.lstrip("&^")
            if literal == '""':
                return "%s()" % cpp
            return literal if literal.isascii() else "String::utf8(%s)" % literal
        if type_name == "NodePath" or text.endswith("()"):
            return "%s()" % cpp
        if type_name == "Transform2D":
            return "Transform2D()"
        if type_name == "Transform3D":
            return "Transform3D()"
        if type_name == "float" and cpp == "float" and "." in text:
            return text + "f"
        if type_name == "int" and text == "4294967295":
            return "4294967295U"
        return text

    def element_class(self, type_name):
        """The engine classes that a type mentions, without its wrapping."""
        names = []
        for prefix in ("typedarray::", "typeddictionary::"):
            if type_name.startswith(prefix):
                names = [part.split(":")[-1] for part in type_name[len(prefix) :].split(";")]
        return [name for name in names or [type_name] if self.is_class(name)]

    def enum_class(self, type_name):
        """The engine class that an enumeration is nested in, or None."""
        for prefix in ("enum::", "bitfield::"):
            if type_name.startswith(prefix) and "." in type_name:
                owner = type_name[len(prefix) :].split(".")[0]
                return owner if self.is_class(owner) else None
        return None

    def _scoped(self, name):
        owner, dot, enum = name.partition(".")
        return "%s::%s" % (self.class_name(owner), enum) if dot else owner

    def _element(self, name):
        # Elements of a restricted kind are written "24/17:Class"; the class is what matters here.
        name = name.split(":")[-1]
        if name == "int":
            return "int64_t"
        if name == "float":
            return "double"
        return self.class_name(name)

"""The table of C interface functions: one pointer each, under the interface's own names."""

import re

HEADER = """// Every function of the engine's C interface, as a pointer of the same name. Filled once, when the engine opens the library;
// everything else in the bindings calls through it.

#include <gdextension_interface.h>

namespace godot {
namespace gdextension_interface {

// False, after naming what is missing, where the engine lacks a function that the bindings rely on.
bool load_interface(GDExtensionInterfaceGetProcAddress p_get_proc_address);

%s

} // namespace gdextension_interface
} // namespace godot
"""

SOURCE = """#include <godot_cpp/core/gdextension_interface_loader.hpp>

#include <cstdio>

namespace godot {
namespace gdextension_interface {

%s

namespace {

struct Entry {
	const char *name;
	GDExtensionInterfaceFunctionPtr *function;
	bool required;
};

template <class Function>
constexpr GDExtensionInterfaceFunctionPtr *slot(Function &p_function) {
	return reinterpret_cast<GDExtensionInterfaceFunctionPtr *>(&p_function);
}

} // namespace

bool load_interface(GDExtensionInterfaceGetProcAddress p_get_proc_address) {
	if (p_get_proc_address == nullptr) {
		return false;
	}
	const Entry entries[] = {
%s
	};
	bool complete = true;
	for (const Entry &entry : entries) {
		*entry.function = p_get_proc_address(entry.name);
		if (*entry.function == nullptr && entry.required) {
			complete = false;
			char message[160];
			snprintf(message, sizeof(message), "The engine does not offer \\"%%s\\"; version 4.6 or later is needed.", entry.name);
			// The two needed to say so come from every engine that can open an extension.
			if (print_error == nullptr) {
				print_error = reinterpret_cast<GDExtensionInterfacePrintError>(p_get_proc_address("print_error"));
			}
			if (print_error != nullptr) {
				print_error(message, "load_interface", "gdextension_interface_loader.cpp", __LINE__, false);
			}
		}
	}
	return complete;
}

} // namespace gdextension_interface
} // namespace godot
"""


def _type_name(function):
    return "GDExtensionInterface" + "".join(part[:1].upper() + part[1:] for part in function["name"].split("_"))


def _required(function):
    return not function.get("deprecated") and tuple(int(n) for n in function["since"].split(".")) <= (4, 6)


def emit_interface_loader(interface, header_text, out):
    # The engine's own header keeps the names that some types had before all were made from the functions' names.
    for function in interface["interface"]:
        legacy = function.get("legacy_type_name")
        if legacy:
            header_text = re.sub(r"\b%s\b" % legacy, _type_name(function), header_text)
    header_text = header_text.replace("#pragma once\n", "")
    typedefs = set(re.findall(r"\(\s*\*\s*(GDExtensionInterface\w+)\s*\)", header_text))
    functions = []
    for function in interface["interface"]:
        type_name = _type_name(function)
        # get_proc_address itself is what the loader is handed, not what it looks up.
        if type_name not in typedefs:
            raise SystemExit("gdextension_interface.h has no type %s for %s" % (type_name, function["name"]))
        functions.append((function["name"], type_name, _required(function)))
    declarations = "\n".join("extern %s %s;" % (t, n) for n, t, _r in functions)
    definitions = "\n".join("%s %s = nullptr;" % (t, n) for n, t, _r in functions)
    entries = "\n".join('\t\t{ "%s", slot(%s), %s },' % (n, n, "true" if r else "false") for n, _t, r in functions)
    out.write_header("godot_cpp/core/gdextension_interface_loader.hpp", HEADER % declarations)
    out.write("src/gdextension_interface_loader.cpp", SOURCE % (definitions, entries))
    out.write_header("gdextension_interface.h", header_text)


def emit_version(header, out):
    lines = ["// The engine whose description these bindings were generated from.", ""]
    for key in ("major", "minor", "patch"):
        lines.append("#define GODOT_VERSION_%s %d" % (key.upper(), header["version_" + key]))
    for key in ("status", "build"):
        lines.append('#define GODOT_VERSION_%s "%s"' % (key.upper(), header["version_" + key]))
    out.write_header("godot_cpp/core/version.hpp", "\n".join(lines))

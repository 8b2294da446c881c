#include "by_hand_node.h"

#include <stdint.h>
#include <stdlib.h>

/* A StringName is a pointer to what the engine holds of the name; equal names have equal pointers. */
typedef struct {
	void *data;
} Name;

typedef struct {
	int64_t frames;
} Node;

static GDExtensionClassLibraryPtr owner;
static GDExtensionInterfaceClassdbConstructObject construct_object;
static GDExtensionInterfaceObjectSetInstance set_instance;
static GDExtensionInterfaceClassdbUnregisterExtensionClass unregister_class;
static Name class_name, parent_name, process_name;

static void process(GDExtensionClassInstancePtr instance, const GDExtensionConstTypePtr *arguments, GDExtensionTypePtr answer) {
	(void)arguments;
	(void)answer;
	((Node *)instance)->frames++;
}

static GDExtensionClassCallVirtual get_virtual(void *userdata, GDExtensionConstStringNamePtr name, uint32_t hash) {
	(void)userdata;
	(void)hash;
	return ((const Name *)name)->data == process_name.data ? process : NULL;
}

static GDExtensionObjectPtr create(void *userdata, GDExtensionBool notify) {
	GDExtensionObjectPtr object = construct_object(&parent_name);
	(void)userdata;
	(void)notify;
	set_instance(object, &class_name, calloc(1, sizeof(Node)));
	return object;
}

static void destroy(void *userdata, GDExtensionClassInstancePtr instance) {
	(void)userdata;
	free(instance);
}

typedef void (*AnyFunction)(void);

void register_by_hand_node(GDExtensionInterfaceGetProcAddress get_proc_address, GDExtensionClassLibraryPtr library) {
	GDExtensionInterfaceStringNameNewWithLatin1Chars make_name = (GDExtensionInterfaceStringNameNewWithLatin1Chars)(AnyFunction)get_proc_address("string_name_new_with_latin1_chars");
	GDExtensionInterfaceClassdbRegisterExtensionClass5 register_class = (GDExtensionInterfaceClassdbRegisterExtensionClass5)(AnyFunction)get_proc_address("classdb_register_extension_class5");
	GDExtensionClassCreationInfo5 info = { 0 };
	owner = library;
	construct_object = (GDExtensionInterfaceClassdbConstructObject)(AnyFunction)get_proc_address("classdb_construct_object");
	set_instance = (GDExtensionInterfaceObjectSetInstance)(AnyFunction)get_proc_address("object_set_instance");
	unregister_class = (GDExtensionInterfaceClassdbUnregisterExtensionClass)(AnyFunction)get_proc_address("classdb_unregister_extension_class");
	/* Static names: the engine keeps them, and there is nothing to give back. */
	make_name(&class_name, "BenchByHandNode", 1);
	make_name(&parent_name, "Node", 1);
	make_name(&process_name, "_process", 1);
	info.is_exposed = 1;
	info.create_instance_func = create;
	info.free_instance_func = destroy;
	info.get_virtual_func = get_virtual;
	register_class(library, &class_name, &parent_name, &info);
}

void unregister_by_hand_node(void) {
	unregister_class(owner, &class_name);
}

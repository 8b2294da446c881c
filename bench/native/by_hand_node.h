#pragma once

/* The twin of BenchBindingsNode, for which every call into the engine is written out. */

#include <gdextension_interface.h>

#ifdef __cplusplus
extern "C" {
#endif

void register_by_hand_node(GDExtensionInterfaceGetProcAddress get_proc_address, GDExtensionClassLibraryPtr library);
void unregister_by_hand_node(void);

#ifdef __cplusplus
}
#endif

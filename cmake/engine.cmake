# What the engine says of itself, which the bindings are made from. An installed godot-cpp brings its own.
if(NOT QUILLSTEAD_GODOT_CPP)
	foreach(file extension_api.json gdextension_interface.h gdextension_interface.json)
		if(NOT EXISTS "${QUILLSTEAD_API_DIR}/${file}")
			message(FATAL_ERROR "There is no ${file} in QUILLSTEAD_API_DIR (\"${QUILLSTEAD_API_DIR}\"). "
				"./dev build takes care of it; by hand, run in an empty folder: "
				"godot --headless --dump-extension-api --dump-gdextension-interface --dump-gdextension-interface-json")
		endif()
	endforeach()
endif()

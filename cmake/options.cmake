if(NOT CMAKE_BUILD_TYPE)
	set(CMAKE_BUILD_TYPE Debug CACHE STRING "Debug: the library a game is made with. Release: the one it ships with." FORCE)
endif()

option(QUILLSTEAD_TESTS "Build the native tests and the tests of the bindings." OFF)
option(QUILLSTEAD_SANITIZE "Build with the address and undefined-behaviour sanitizers, into the build folder." OFF)
option(QUILLSTEAD_WARNINGS_AS_ERRORS "Stop at warnings about our own sources, as the presets do." OFF)
set(QUILLSTEAD_GODOT_CPP "" CACHE PATH "Use the godot-cpp 10 installed under this prefix in place of bindings/.")
set(QUILLSTEAD_API_DIR "" CACHE PATH "The folder with the engine's extension_api.json and gdextension_interface.h and .json.")

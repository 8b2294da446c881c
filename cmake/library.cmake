file(GLOB_RECURSE core_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/*.cpp")
add_library(quillstead_core SHARED ${core_sources})

configure_file("${CMAKE_CURRENT_LIST_DIR}/core_version.hpp.in" "${CMAKE_BINARY_DIR}/generated/core_version.hpp" @ONLY)
target_include_directories(quillstead_core PRIVATE "${CMAKE_SOURCE_DIR}/src" "${CMAKE_BINARY_DIR}/generated")
target_link_libraries(quillstead_core PRIVATE quillstead_bindings quillstead_warnings)
if(EXISTS "${CMAKE_SOURCE_DIR}/src/pch.hpp")
	target_precompile_headers(quillstead_core PRIVATE "${CMAKE_SOURCE_DIR}/src/pch.hpp")
endif()

# A sanitized library is not one that a game should find, so it stays in the build folder.
set(output_dir "${CMAKE_SOURCE_DIR}/addons/quillstead/bin")
if(QUILLSTEAD_SANITIZE)
	set(output_dir "${CMAKE_BINARY_DIR}/bin")
endif()
set(output_name "libquillstead_core.${QUILLSTEAD_PLATFORM}.${QUILLSTEAD_TARGET}")
if(NOT APPLE)
	string(APPEND output_name ".${QUILLSTEAD_ARCH}")
endif()
set_target_properties(quillstead_core PROPERTIES
	PREFIX ""
	OUTPUT_NAME "${output_name}"
	LIBRARY_OUTPUT_DIRECTORY "${output_dir}"
	RUNTIME_OUTPUT_DIRECTORY "${output_dir}"
	ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")

# The compiler marks templates of its standard library as visible, whatever it is told; the engine asks for the entry alone.
if(APPLE)
	target_link_options(quillstead_core PRIVATE "LINKER:-exported_symbol,_quillstead_core_init")
elseif(NOT MSVC)
	set(exports "${CMAKE_CURRENT_LIST_DIR}/core_exports.map")
	target_link_options(quillstead_core PRIVATE "LINKER:--version-script,${exports}")
	set_property(TARGET quillstead_core APPEND PROPERTY LINK_DEPENDS "${exports}")
endif()
if(NOT MSVC AND NOT APPLE)
	target_link_options(quillstead_core PRIVATE -Wl,--gc-sections)
	target_compile_options(quillstead_core PRIVATE -ffunction-sections -fdata-sections)
	if(NOT QUILLSTEAD_SANITIZE)
		target_link_options(quillstead_core PRIVATE -Wl,--no-undefined)
	endif()
	if(CMAKE_BUILD_TYPE STREQUAL "Release")
		target_link_options(quillstead_core PRIVATE -s)
	endif()
endif()

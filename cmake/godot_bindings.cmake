# The target quillstead_bindings: ours, or an installed godot-cpp. Both have the same names and include paths.
if(NOT QUILLSTEAD_GODOT_CPP)
	set(QUILLSTEAD_SCAN_DIRS "${CMAKE_SOURCE_DIR}/src")
	if(QUILLSTEAD_TESTS)
		list(APPEND QUILLSTEAD_SCAN_DIRS "${CMAKE_SOURCE_DIR}/tests")
	endif()
	add_subdirectory(bindings)
	return()
endif()

if(NOT IS_DIRECTORY "${QUILLSTEAD_GODOT_CPP}")
	message(FATAL_ERROR "QUILLSTEAD_GODOT_CPP names \"${QUILLSTEAD_GODOT_CPP}\", which is no folder.")
endif()

set(include_dirs)
foreach(dir include gen/include gdextension)
	if(IS_DIRECTORY "${QUILLSTEAD_GODOT_CPP}/${dir}")
		list(APPEND include_dirs "${QUILLSTEAD_GODOT_CPP}/${dir}")
	endif()
endforeach()
foreach(header godot_cpp/godot.hpp godot_cpp/classes/node.hpp gdextension_interface.h)
	find_file(header_path ${header} PATHS ${include_dirs} NO_DEFAULT_PATH NO_CACHE)
	if(NOT header_path)
		message(FATAL_ERROR "${QUILLSTEAD_GODOT_CPP} has no ${header} in include/, gen/include/ or gdextension/. "
			"Build godot-cpp there first, so that its generated headers are in place.")
	endif()
	unset(header_path)
endforeach()

file(GLOB candidates
	"${QUILLSTEAD_GODOT_CPP}/lib*/libgodot-cpp*${CMAKE_STATIC_LIBRARY_SUFFIX}"
	"${QUILLSTEAD_GODOT_CPP}/lib/*/libgodot-cpp*${CMAKE_STATIC_LIBRARY_SUFFIX}"
	"${QUILLSTEAD_GODOT_CPP}/bin/libgodot-cpp*${CMAKE_STATIC_LIBRARY_SUFFIX}")
set(archive)
foreach(candidate IN LISTS candidates)
	if(candidate MATCHES "${QUILLSTEAD_PLATFORM}\\.${QUILLSTEAD_TARGET}\\..*${QUILLSTEAD_ARCH}")
		set(archive "${candidate}")
	endif()
endforeach()
list(LENGTH candidates candidate_count)
if(NOT archive AND candidate_count EQUAL 1)
	set(archive "${candidates}")
endif()
if(NOT archive)
	message(FATAL_ERROR "${QUILLSTEAD_GODOT_CPP} has no libgodot-cpp for ${QUILLSTEAD_PLATFORM} ${QUILLSTEAD_TARGET} "
		"${QUILLSTEAD_ARCH} in lib/ or bin/. Found: ${candidates}")
endif()
message(STATUS "Bindings: ${archive}")

add_library(quillstead_bindings INTERFACE)
target_include_directories(quillstead_bindings SYSTEM INTERFACE ${include_dirs})
target_link_libraries(quillstead_bindings INTERFACE "${archive}")

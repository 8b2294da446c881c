# What every object of the library is compiled with, the bindings included. Warnings are for our own sources: quillstead_warnings.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

# The engine scans its project for resources; it must not find the build's.
file(MAKE_DIRECTORY "${CMAKE_SOURCE_DIR}/build")
file(TOUCH "${CMAKE_SOURCE_DIR}/build/.gdignore")

string(TOLOWER "${CMAKE_SYSTEM_PROCESSOR}" processor)
if(processor MATCHES "^(x86_64|amd64)$")
	set(QUILLSTEAD_ARCH x86_64)
elseif(processor MATCHES "^(aarch64|arm64)$")
	set(QUILLSTEAD_ARCH arm64)
else()
	message(FATAL_ERROR "QuillStead builds for x86_64 and arm64, not for ${CMAKE_SYSTEM_PROCESSOR}.")
endif()

if(CMAKE_BUILD_TYPE STREQUAL "Release")
	set(QUILLSTEAD_TARGET template_release)
else()
	set(QUILLSTEAD_TARGET template_debug)
	add_compile_definitions(DEBUG_ENABLED HOT_RELOAD_ENABLED)
endif()
add_compile_definitions(GDEXTENSION THREADS_ENABLED)

if(WIN32)
	set(QUILLSTEAD_PLATFORM windows)
	add_compile_definitions(WINDOWS_ENABLED)
elseif(APPLE)
	set(QUILLSTEAD_PLATFORM macos)
	add_compile_definitions(MACOS_ENABLED UNIX_ENABLED)
	set(CMAKE_OSX_ARCHITECTURES "x86_64;arm64" CACHE STRING "")
else()
	set(QUILLSTEAD_PLATFORM linux)
	add_compile_definitions(LINUX_ENABLED UNIX_ENABLED)
endif()

add_library(quillstead_warnings INTERFACE)
if(MSVC)
	add_compile_options(/utf-8 $<$<CONFIG:Debug>:/O2>)
	add_compile_definitions(_HAS_EXCEPTIONS=0 NOMINMAX)
	target_compile_options(quillstead_warnings INTERFACE /W4 $<$<BOOL:${QUILLSTEAD_WARNINGS_AS_ERRORS}>:/WX>)
else()
	# An engine error tells the source file: from the root, not from where somebody has it checked out.
	add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions> -fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=)
	# A game is made with the debug library, so it must not be slow; lines for a backtrace are all that is kept.
	set(CMAKE_CXX_FLAGS_DEBUG "-O2 -g1")
	set(CMAKE_CXX_FLAGS_RELEASE "-O3")
	target_compile_options(quillstead_warnings INTERFACE -Wall -Wextra -Wshadow $<$<BOOL:${QUILLSTEAD_WARNINGS_AS_ERRORS}>:-Werror>)
endif()

if(QUILLSTEAD_SANITIZE)
	# The checks make more work for the optimiser than they are worth to a story: less of it compiles in half the time.
	add_compile_options(-O1 -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize=vptr)
	add_link_options(-fsanitize=address,undefined)
endif()

find_program(CCACHE ccache)
if(CCACHE AND NOT MSVC)
	# Without the sloppiness an object that uses a precompiled header is never found again.
	set(launcher "${CMAKE_COMMAND}" -E env
		CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime "${CCACHE}")
	set(CMAKE_C_COMPILER_LAUNCHER "${launcher}")
	set(CMAKE_CXX_COMPILER_LAUNCHER "${launcher}")
	if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
		add_compile_options(-fpch-preprocess)
	endif()
endif()

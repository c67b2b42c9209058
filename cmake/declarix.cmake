# How this project declares its targets. Every folder lists only what it links; sources are what lies in it.

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

add_compile_options(-Wall -Wextra -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-qual
                    -Woverloaded-virtual -fpch-preprocess)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options(-Wno-unused-command-line-argument)
endif()
if(DECLARIX_WERROR)
  add_compile_options(-Werror)
endif()
if(DECLARIX_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # Instrumented code makes GCC see uninitialised variants where there are none; the dev preset keeps the warning.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

# Compiles the headers that nearly every file uses, once for all targets of a kind: "plain", "qt" (screens), "test", "qt_test".
# A header and its users need the same options, so a kind links what gives its targets theirs.
function(dx_precompile kind)
  cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
  file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/pch_${kind}.cpp CONTENT "")
  add_library(pch_${kind} OBJECT ${PROJECT_BINARY_DIR}/pch_${kind}.cpp)
  target_include_directories(pch_${kind} PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(pch_${kind} PRIVATE fmt::fmt ${ARG_LINK})
  if(kind MATCHES "^qt")
    target_compile_definitions(pch_${kind} PRIVATE ${DX_QT_DEFINITIONS})
  endif()
  target_precompile_headers(pch_${kind} PRIVATE ${ARG_HEADERS})
endfunction()
set(DX_QT_DEFINITIONS QT_NO_KEYWORDS QT_NO_CAST_FROM_BYTEARRAY)

# Adds each sub-folder of DIR that has a CMakeLists.txt, in alphabetical order.
function(dx_add_existing dir)
  file(GLOB lists RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} CONFIGURE_DEPENDS ${dir}/*/CMakeLists.txt)
  if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${dir}/CMakeLists.txt)
    add_subdirectory(${dir})
    return()
  endif()
  foreach(list IN LISTS lists)
    get_filename_component(folder ${list} DIRECTORY)
    add_subdirectory(${folder})
  endforeach()
endfunction()

# One library from the sources of this folder (and the named sub-folders), with the folder's public links.
function(dx_library name)
  cmake_parse_arguments(ARG "" "" "SUBFOLDERS;LINK" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  foreach(folder IN LISTS ARG_SUBFOLDERS)
    file(GLOB more CONFIGURE_DEPENDS ${folder}/*.cpp)
    list(APPEND sources ${more})
  endforeach()
  if(NOT sources)  # headers only so far
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} INTERFACE ${ARG_LINK})
    return()
  endif()
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINK})
  target_precompile_headers(${name} REUSE_FROM pch_plain)
endfunction()

# One test program from the sources of this folder; every case becomes a CTest case.
function(dx_test name)
  cmake_parse_arguments(ARG "" "PRECOMPILED" "SOURCES;LINK" ${ARGN})
  if(NOT ARG_PRECOMPILED)
    set(ARG_PRECOMPILED pch_test)
  endif()
  if(ARG_SOURCES)
    set(sources ${ARG_SOURCES})
  else()
    file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  endif()
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_LINK} GTest::gtest GTest::gmock GTest::gtest_main)
  target_precompile_headers(${name} REUSE_FROM ${ARG_PRECOMPILED})
  target_compile_definitions(${name} PRIVATE DECLARIX_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
endfunction()

# Target xlsxwriter::xlsxwriter; the library comes without CMake files of its own.
macro(dx_find_xlsxwriter)
  find_path(XLSXWRITER_INCLUDE_DIR xlsxwriter.h REQUIRED)
  find_library(XLSXWRITER_LIBRARY xlsxwriter REQUIRED)
  add_library(xlsxwriter::xlsxwriter UNKNOWN IMPORTED)
  set_target_properties(xlsxwriter::xlsxwriter PROPERTIES
    IMPORTED_LOCATION "${XLSXWRITER_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${XLSXWRITER_INCLUDE_DIR}")
endmacro()

# Target libzip::zip; its own CMake files ask for the tools too, which are packages apart.
macro(dx_find_libzip)
  find_path(LIBZIP_INCLUDE_DIR zip.h REQUIRED)
  find_library(LIBZIP_LIBRARY zip REQUIRED)
  add_library(libzip::zip UNKNOWN IMPORTED)
  set_target_properties(libzip::zip PROPERTIES
    IMPORTED_LOCATION "${LIBZIP_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${LIBZIP_INCLUDE_DIR}")
endmacro()

# As dx_library, for the shared screen parts and the screens: with Qt's own precompiled header, moc and resources.
function(dx_qt_library name)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h *.qrc icons/*.qrc)
  add_library(${name} STATIC ${sources})
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTORCC ON)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINK})
  target_compile_definitions(${name} PUBLIC ${DX_QT_DEFINITIONS})
  target_precompile_headers(${name} REUSE_FROM pch_qt)
endfunction()

# One test program of screens, run without a display.
function(dx_qt_test name)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  dx_test(${name} PRECOMPILED pch_qt_test LINK test_qt ${ARG_LINK})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()

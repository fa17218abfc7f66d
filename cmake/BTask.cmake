# The project's compile rules and the functions that make its libraries, programs and tests.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)

option(BTASK_BENCH "Build the benchmarks" OFF)
option(BTASK_FUZZ "Build the fuzz targets (clang only)" OFF)
option(BTASK_PCH "Precompile what most files include; whether each includes all it needs only a build without shows" OFF)
option(BTASK_UNITY "Compile several sources as one text, which saves most of the time; each alone shows what it lacks" OFF)
set(BTASK_SANITIZE "" CACHE STRING "Sanitizers, as in -fsanitize=")

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(btask_rules INTERFACE)
target_compile_options(btask_rules INTERFACE -Wall -Wextra -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # This version warns of overlaps in joined strings that cannot be.
  target_compile_options(btask_rules INTERFACE -Wno-restrict)
endif()
target_compile_definitions(btask_rules INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(WIN32)
  # The other semaphores of this compiler's library lose wake-ups where the system has no futex, and a stop callback
  # waits on one when it goes.
  target_compile_definitions(btask_rules INTERFACE _GLIBCXX_USE_POSIX_SEMAPHORE=1)
  target_compile_definitions(btask_rules INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
endif()
if(BTASK_PCH AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(btask_rules INTERFACE -fpch-preprocess) # ccache needs it
endif()
if(BTASK_UNITY AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # It takes a source that is not compiled on its own for a header, whose unnamed namespace would be many.
  target_compile_options(btask_rules INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
endif()
if(BTASK_SANITIZE)
  target_compile_options(btask_rules INTERFACE -fsanitize=${BTASK_SANITIZE} -fno-omit-frame-pointer -g1)
  target_link_options(btask_rules INTERFACE -fsanitize=${BTASK_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # It would warn of every fence in Boost's headers, which the thread sanitizer cannot follow.
    target_compile_options(btask_rules INTERFACE -Wno-tsan)
  endif()
endif()

# A folder's headers are reached as "folder/Name.h" through a link of that name in an include root of its
# own, so that a header of a folder which is not linked is not found at all.
function(btask_include_root target folder scope)
  set(root ${CMAKE_BINARY_DIR}/include/${target})
  file(MAKE_DIRECTORY ${root})
  get_filename_component(name ${folder} NAME)
  file(CREATE_LINK ${folder} ${root}/${name} SYMBOLIC)
  target_include_directories(${target} ${scope} ${root})
endfunction()

# btask_precompiled(NAME HEADERS... LIBS...) makes a set of precompiled headers, btask_precompile(TARGET NAME) uses it.
# The two need the same compiler options and, in what the headers ask for, the same definitions.
function(btask_precompiled name)
  if(BTASK_PCH)
    cmake_parse_arguments(arg "" "" "HEADERS;LIBS" ${ARGN})
    set(source ${CMAKE_CURRENT_BINARY_DIR}/precompiled_${name}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "")
    add_library(btask_precompiled_${name} OBJECT ${source})
    set_target_properties(btask_precompiled_${name} PROPERTIES AUTOMOC OFF)
    list(TRANSFORM arg_HEADERS REPLACE ".+" "<\\0>")
    target_precompile_headers(btask_precompiled_${name} PRIVATE ${arg_HEADERS})
    target_link_libraries(btask_precompiled_${name} PRIVATE btask_rules ${arg_LIBS})
  endif()
endfunction()

function(btask_precompile target name)
  if(BTASK_PCH)
    target_precompile_headers(${target} REUSE_FROM btask_precompiled_${name})
  endif()
endfunction()

if(BTASK_UNITY)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
endif()
# btask_unite(TARGET): its sources are compiled several at a time where that was asked for.
function(btask_unite target)
  if(BTASK_UNITY)
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    execute_process(COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/source_groups.py 8 ${sources}
      WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} OUTPUT_VARIABLE groups COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "[^\n]+" groups "${groups}")
    foreach(line ${groups})
      string(REGEX MATCH "^([0-9]+) (.*)$" line "${line}")
      set_source_files_properties(${CMAKE_MATCH_2} PROPERTIES UNITY_GROUP sources_${CMAKE_MATCH_1})
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  endif()
endfunction()

set(btask_core_headers algorithm array chrono filesystem functional map memory mutex optional stop_token string thread
  utility vector QByteArray QDateTime QDir QFile QString QStringList QTimer)
set(btask_widgets_headers ${btask_core_headers} QApplication QLabel QLineEdit QMouseEvent QPainter QPushButton QVBoxLayout)

# btask_library(NAME [LIBS lower floors and libraries in its headers] [PRIVATE libraries of its sources only])
# makes btask_NAME of src/NAME (or of the folder DIR, whose last part is NAME); posix/ or windows/ below it is chosen here. PCH names the
# precompiled headers.
function(btask_library name)
  cmake_parse_arguments(arg "" "DIR;PCH" "LIBS;PRIVATE" ${ARGN})
  if(NOT arg_DIR)
    set(arg_DIR src/${name})
  endif()
  get_filename_component(arg_DIR ${arg_DIR} ABSOLUTE)
  file(GLOB sources CONFIGURE_DEPENDS ${arg_DIR}/*.cpp ${arg_DIR}/*.h ${arg_DIR}/*.qrc)
  if(WIN32)
    file(GLOB side CONFIGURE_DEPENDS ${arg_DIR}/windows/*.cpp)
  else()
    file(GLOB side CONFIGURE_DEPENDS ${arg_DIR}/posix/*.cpp)
  endif()
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  set(target btask_${name})
  add_library(${target} STATIC ${sources} ${side})
  btask_include_root(${target} ${arg_DIR} PUBLIC)
  list(TRANSFORM arg_LIBS REPLACE "^([a-z]+)$" "btask_\\1")
  target_link_libraries(${target} PUBLIC btask_rules ${arg_LIBS} PRIVATE ${arg_PRIVATE})
  if(arg_PCH)
    btask_precompile(${target} ${arg_PCH})
    btask_unite(${target}) # not where the system's own headers are included: their macros would reach the next source
  endif()
endfunction()

# btask_group(NAME LIBS libraries): one name for all of them.
function(btask_group name)
  cmake_parse_arguments(arg "" "" "LIBS" ${ARGN})
  add_library(btask_${name} INTERFACE)
  list(TRANSFORM arg_LIBS PREPEND "btask_")
  target_link_libraries(btask_${name} INTERFACE ${arg_LIBS})
endfunction()

# Gives a Windows program its icon, manifest and version.
function(btask_windows_resources name description)
  set(file ${CMAKE_CURRENT_BINARY_DIR}/${name}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${file} @ONLY)
  set_source_files_properties(${file} PROPERTIES OBJECT_DEPENDS
    "${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest;${PROJECT_SOURCE_DIR}/packaging/windows/BTaskMMC.ico")
  target_sources(${name} PRIVATE ${file})
endfunction()

# btask_program(NAME [GUI] DESCRIPTION text SOURCES... LIBS...): an executable in bin/.
function(btask_program name)
  cmake_parse_arguments(arg "GUI" "DESCRIPTION" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  list(TRANSFORM arg_LIBS REPLACE "^([a-z]+)$" "btask_\\1")
  target_link_libraries(${name} PRIVATE btask_rules ${arg_LIBS})
  if(arg_GUI)
    set_target_properties(${name} PROPERTIES WIN32_EXECUTABLE ON)
  endif()
  if(WIN32)
    btask_windows_resources(${name} "${arg_DESCRIPTION}")
  endif()
endfunction()

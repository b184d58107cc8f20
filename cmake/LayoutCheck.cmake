# LayoutCheck.cmake -- build-time proof that the host-interface headers have the recorded layouts.
#
#   vorn_add_layout_check(<target> <tsv-file>
#                         [SDK <interface-target>] [INCLUDE_DIRS <dir>...] [HEADERS <name.h>...])
#
# Reads <tsv-file> (columns: record tag, member or "(sizeof)", C type, x86-64 Linux offset,
# x64 Windows offset; '#' lines are comments) at build time and generates a C++ source with one
# static_assert per row, then compiles it as the OBJECT library <target>.  A wrong row or a wrong
# declaration therefore fails the build, and editing the table regenerates the checks.
#
# The headers come from SDK (an interface target such as vorn_sdk, so the same check runs against
# whichever header set that target selects), else from INCLUDE_DIRS, else from the "include"
# folder next to the table.  HEADERS overrides the list of headers the check includes.
#
# The recorded offsets are for 64-bit targets only; elsewhere the generated source just includes
# the headers (which still proves they compile).
#
# This file doubles as the generator: "cmake -P LayoutCheck.cmake" with
#   VORN_LAYOUT_TSV, VORN_LAYOUT_OUT, VORN_LAYOUT_COLUMN (4, 5 or none), VORN_LAYOUT_HEADERS (comma list).

if(CMAKE_SCRIPT_MODE_FILE AND CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  cmake_minimum_required(VERSION 3.20)
  foreach(var VORN_LAYOUT_TSV VORN_LAYOUT_OUT VORN_LAYOUT_COLUMN VORN_LAYOUT_HEADERS)
    if(NOT DEFINED ${var} OR "${${var}}" STREQUAL "")
      message(FATAL_ERROR "LayoutCheck: ${var} is not set")
    endif()
  endforeach()
  if(NOT VORN_LAYOUT_COLUMN MATCHES "^(4|5|none)$")
    message(FATAL_ERROR "LayoutCheck: VORN_LAYOUT_COLUMN must be 4, 5 or none, not '${VORN_LAYOUT_COLUMN}'")
  endif()

  file(READ "${VORN_LAYOUT_TSV}" text)
  # Brackets and semicolons would confuse list handling; no column we use may contain them.
  string(REPLACE "\r" "" text "${text}")
  string(REPLACE ";" "<semicolon>" text "${text}")
  string(REPLACE "[" "<lbracket>" text "${text}")
  string(REPLACE "]" "<rbracket>" text "${text}")
  string(REPLACE "\n" ";" lines "${text}")

  set(ident "^[A-Za-z_][A-Za-z0-9_]*$")
  set(asserts "")
  set(seen "")
  set(records "")
  set(sized "")
  set(line_no 0)
  set(rows 0)
  foreach(line IN LISTS lines)
    math(EXPR line_no "${line_no} + 1")
    if(line STREQUAL "" OR line MATCHES "^#")
      continue()
    endif()
    set(where "${VORN_LAYOUT_TSV}:${line_no}")
    string(REPLACE "\t" ";" cols "${line}")
    list(LENGTH cols ncols)
    if(NOT ncols EQUAL 5)
      message(FATAL_ERROR "${where}: expected 5 tab-separated columns, found ${ncols}")
    endif()
    list(GET cols 0 record)
    list(GET cols 1 field)
    list(GET cols 2 ctype)
    list(GET cols 3 off_linux)
    list(GET cols 4 off_windows)
    if(NOT record MATCHES "${ident}")
      message(FATAL_ERROR "${where}: record '${record}' is not a C identifier")
    endif()
    if(NOT field STREQUAL "(sizeof)" AND NOT field MATCHES "${ident}")
      message(FATAL_ERROR "${where}: member '${field}' is neither a C identifier nor (sizeof)")
    endif()
    if(ctype STREQUAL "")
      message(FATAL_ERROR "${where}: empty type column")
    endif()
    if(NOT off_linux MATCHES "^[0-9]+$" OR NOT off_windows MATCHES "^[0-9]+$")
      message(FATAL_ERROR "${where}: offsets must be decimal numbers ('${off_linux}', '${off_windows}')")
    endif()
    if("${record}.${field}" IN_LIST seen)
      message(FATAL_ERROR "${where}: ${record}.${field} is listed twice")
    endif()
    list(APPEND seen "${record}.${field}")
    if(NOT record IN_LIST records)
      list(APPEND records "${record}")
    endif()

    # The SDK's own tags say which records are unions.
    if(record MATCHES "^un_")
      set(kind union)
    else()
      set(kind struct)
    endif()
    if(VORN_LAYOUT_COLUMN STREQUAL "5")
      set(expected "${off_windows}")
    else()
      set(expected "${off_linux}")
    endif()
    if(field STREQUAL "(sizeof)")
      list(APPEND sized "${record}")
      string(APPEND asserts
        "static_assert(sizeof(${kind} ${record}) == ${expected}, \"sizeof ${record}\");\n")
    else()
      string(APPEND asserts
        "static_assert(offsetof(${kind} ${record}, ${field}) == ${expected}, \"${record}.${field}\");\n")
    endif()
    math(EXPR rows "${rows} + 1")
  endforeach()

  if(rows EQUAL 0)
    message(FATAL_ERROR "${VORN_LAYOUT_TSV}: no layout rows")
  endif()
  foreach(record IN LISTS records)
    if(NOT record IN_LIST sized)
      message(FATAL_ERROR "${VORN_LAYOUT_TSV}: ${record} has no (sizeof) row")
    endif()
  endforeach()

  string(REPLACE "," ";" headers "${VORN_LAYOUT_HEADERS}")
  set(src "// Generated from ${VORN_LAYOUT_TSV} by LayoutCheck.cmake; edit the table, not this file.\n")
  string(APPEND src "#include <stddef.h>\n")
  foreach(h IN LISTS headers)
    string(APPEND src "#include <${h}>\n")
  endforeach()
  string(APPEND src "\n")
  if(VORN_LAYOUT_COLUMN STREQUAL "none")
    string(APPEND src "// ${rows} rows not checked: the table holds 64-bit layouts only.\n")
  else()
    string(APPEND src "// ${rows} rows, offsets from column ${VORN_LAYOUT_COLUMN}.\n")
    string(APPEND src "static_assert(sizeof(void *) == 8, \"the layout table describes 64-bit targets\");\n")
    string(APPEND src "${asserts}")
  endif()
  file(WRITE "${VORN_LAYOUT_OUT}" "${src}")
  return()
endif()

function(vorn_add_layout_check target tsv)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "SDK" "INCLUDE_DIRS;HEADERS")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "vorn_add_layout_check: unexpected arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  get_filename_component(tsv "${tsv}" ABSOLUTE)
  if(NOT EXISTS "${tsv}")
    message(FATAL_ERROR "vorn_add_layout_check: no layout table at ${tsv}")
  endif()

  if(NOT arg_HEADERS)
    set(arg_HEADERS
      lwtypes.h lwserver.h lwmodule.h lwio.h lwxpanel.h lwenvel.h lwmeshes.h lwhandler.h
      lwrender.h lwnodes.h lwdyna.h lwmaster.h lwtxtr.h lwvparm.h lwpanel.h lwhost.h lwshader.h)
  endif()
  list(JOIN arg_HEADERS "," headers)

  if(NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(column none)
  elseif(WIN32)
    set(column 5)
  else()
    set(column 4)
  endif()

  set(out "${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp")
  add_custom_command(
    OUTPUT "${out}"
    COMMAND "${CMAKE_COMMAND}"
            "-DVORN_LAYOUT_TSV=${tsv}"
            "-DVORN_LAYOUT_OUT=${out}"
            "-DVORN_LAYOUT_COLUMN=${column}"
            "-DVORN_LAYOUT_HEADERS=${headers}"
            -P "${CMAKE_CURRENT_FUNCTION_LIST_FILE}"
    DEPENDS "${tsv}" "${CMAKE_CURRENT_FUNCTION_LIST_FILE}"
    COMMENT "Generating layout checks from ${tsv}"
    VERBATIM)

  add_library(${target} OBJECT "${out}")
  set_target_properties(${target} PROPERTIES CXX_STANDARD 17 CXX_STANDARD_REQUIRED ON)
  if(arg_SDK)
    target_link_libraries(${target} PRIVATE ${arg_SDK})
  elseif(arg_INCLUDE_DIRS)
    target_include_directories(${target} PRIVATE ${arg_INCLUDE_DIRS})
  else()
    get_filename_component(tsv_dir "${tsv}" DIRECTORY)
    target_include_directories(${target} PRIVATE "${tsv_dir}/include")
  endif()
endfunction()

# Precompiled headers. Most of a build's time goes into parsing the same
# standard library, {fmt}, CLI11, JSON, GoogleTest and Qt headers in every
# file; each group of targets below parses them once.
#
#   sd_precompile(TARGET KIND)          TARGET gets its own precompiled header
#                                       of KIND: core, cli, test, gui or gui_test
#   sd_precompile_reuse(TARGET FROM)    TARGET uses FROM's (same flags)
#
# SD_PRECOMPILE=OFF turns them off, to check that every file includes what it
# uses.
option(SD_PRECOMPILE "Precompile the headers every file of a target includes" ON)

set(SD_PCH_CORE <algorithm> <array> <cstdint> <filesystem> <functional> <map> <memory>
    <optional> <set> <string> <string_view> <vector> <fmt/xchar.h>)
set(SD_PCH_CLI ${SD_PCH_CORE} <CLI/CLI.hpp> <nlohmann/json.hpp>)
set(SD_PCH_TEST ${SD_PCH_CORE} <gtest/gtest.h> <gmock/gmock.h> <nlohmann/json.hpp>)
set(SD_PCH_GUI ${SD_PCH_CORE} <QtCore> <QtGui> <QtWidgets>)
set(SD_PCH_GUI_TEST ${SD_PCH_GUI} <QtTest>)

function(sd_precompile target kind)
  if(NOT SD_PRECOMPILE)
    return()
  endif()
  string(TOUPPER "${kind}" kind)
  if(NOT DEFINED SD_PCH_${kind})
    message(FATAL_ERROR "sd_precompile: no headers of kind ${kind}")
  endif()
  target_precompile_headers(${target} PRIVATE ${SD_PCH_${kind}})
endfunction()

function(sd_precompile_reuse target from)
  if(SD_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM ${from})
  endif()
endfunction()

# Files that each make the compiler generate the same header-only library code
# (CLI11, JSON, GoogleTest) are compiled BATCH at a time: the code is made once
# a batch instead of once a file.
option(SD_UNITY "Compile the command line's and the tests' files in batches" ON)
function(sd_unity target batch)
  if(SD_UNITY)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${batch})
  endif()
endfunction()

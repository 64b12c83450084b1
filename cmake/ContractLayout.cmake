# Keeps the committed layout of the host contract, the project version and CHANGES.md in step.
#
#   MODE=check   fails unless the printed layout equals LAYOUT_FILE, that file describes
#                VERSION, CHANGES.md has an entry for VERSION and the printer covers every
#                struct and class declared in HEADERS_DIR
#   MODE=update  rewrites LAYOUT_FILE from the printer, but only when the version and
#                CHANGES.md already account for a changed layout
#
# Other variables: PRINTER (the layout printer), CHANGES_FILE, WORK_DIR (scratch folder),
# BUILD_DIR (named in the advice printed on failure).
cmake_minimum_required(VERSION 3.25)

set(update_command "cmake --build ${BUILD_DIR} --target update_contract_layout")

execute_process(COMMAND ${PRINTER} OUTPUT_VARIABLE printed ERROR_VARIABLE printer_errors
                RESULT_VARIABLE printer_result)
if(NOT printer_result EQUAL 0)
    message(FATAL_ERROR "The layout printer's list no longer matches the headers:\n"
                        "${printer_errors}Update tests/contract/PrintContractLayout.cpp.")
endif()

set(problems "")

# Every struct and class the headers define, against the ones the printer lists. Comments are
# dropped first; a definition is the name followed by a base list or a brace, which leaves out
# forward declarations and "enum class".
string(REGEX MATCHALL "\n(record|interface) [A-Za-z_][A-Za-z0-9_]*" listed "\n${printed}")
string(REGEX REPLACE "\n(record|interface) " "" listed "${listed}")
file(GLOB headers "${HEADERS_DIR}/*.h")
foreach(header IN LISTS headers)
    file(READ "${header}" text)
    string(REGEX REPLACE "//[^\n]*" "" text "${text}")
    string(REGEX MATCHALL "(enum[ \t\n]+)?(struct|class)[ \t\n]+[A-Za-z_][A-Za-z0-9_]*[^;{}()<>]*{"
           definitions "${text}")
    foreach(definition IN LISTS definitions)
        if(definition MATCHES "^enum")
            continue()
        endif()
        string(REGEX MATCH "(struct|class)[ \t\n]+([A-Za-z_][A-Za-z0-9_]*)" _ "${definition}")
        if(NOT CMAKE_MATCH_2 IN_LIST listed)
            cmake_path(GET header FILENAME header_name)
            list(APPEND problems
                 "${header_name} declares ${CMAKE_MATCH_2}, which the layout printer does not list: add it to tests/contract/PrintContractLayout.cpp.")
        endif()
    endforeach()
endforeach()

string(REPLACE "." "\\." version_pattern "${VERSION}")
set(changes "")
if(EXISTS "${CHANGES_FILE}")
    file(READ "${CHANGES_FILE}" changes)
endif()
if(NOT "\n${changes}" MATCHES "\n## ${version_pattern}([ \t][^\n]*)?(\n|$)")
    list(APPEND problems
         "CHANGES.md has no entry \"## ${VERSION}\" for the project version: say there what a host built against the previous version must rebuild.")
endif()

set(committed "")
if(EXISTS "${LAYOUT_FILE}")
    file(READ "${LAYOUT_FILE}" committed)
endif()
string(REGEX MATCH "^version ([^\n]*)" _ "${committed}")
set(recorded_version "${CMAKE_MATCH_1}")
# The layout proper: everything after the version line.
function(after_first_line text result)
    string(FIND "${text}" "\n" end)
    if(end EQUAL -1)
        set(${result} "" PARENT_SCOPE)
    else()
        math(EXPR end "${end} + 1")
        string(SUBSTRING "${text}" ${end} -1 rest)
        set(${result} "${rest}" PARENT_SCOPE)
    endif()
endfunction()
after_first_line("${committed}" committed_layout)
after_first_line("${printed}" printed_layout)

if(MODE STREQUAL "update")
    if(NOT committed_layout STREQUAL printed_layout AND recorded_version STREQUAL VERSION)
        list(APPEND problems
             "The contract layout changed, but the project version is still ${VERSION}, the version the committed layout describes: raise the minor version in project(VERSION) in the top CMakeLists.txt and add its CHANGES.md entry first.")
    endif()
    if(problems)
        list(JOIN problems "\n" report)
        message(FATAL_ERROR "${LAYOUT_FILE} was not rewritten:\n${report}")
    endif()
    file(WRITE "${LAYOUT_FILE}" "${printed}")
    message(STATUS "Wrote the layout of version ${VERSION} to ${LAYOUT_FILE}")
    return()
endif()

if(NOT EXISTS "${LAYOUT_FILE}")
    list(APPEND problems "${LAYOUT_FILE} is missing: run\n  ${update_command}")
else()
    if(NOT committed STREQUAL printed)
        set(printed_file "${WORK_DIR}/ContractLayout.printed.txt")
        file(WRITE "${printed_file}" "${printed}")
        execute_process(COMMAND diff -u "${LAYOUT_FILE}" "${printed_file}"
                        OUTPUT_VARIABLE difference)
        message("Committed layout (-) against the headers and version of this build (+):\n"
                "${difference}")
    endif()
    if(NOT recorded_version STREQUAL VERSION)
        list(APPEND problems
             "${LAYOUT_FILE} describes version \"${recorded_version}\", the project is ${VERSION}: once CHANGES.md has its entry, run\n  ${update_command}")
    endif()
    if(NOT committed_layout STREQUAL printed_layout)
        list(APPEND problems
             "The binary layout of include/kvcomctl differs from ${LAYOUT_FILE}. If the change is deliberate, it is a contract change: raise the minor version in project(VERSION) in the top CMakeLists.txt, add a CHANGES.md entry saying what a host must rebuild, then run\n  ${update_command}\nand commit the rewritten layout with them. Otherwise undo the change to the headers.")
    endif()
endif()
if(problems)
    list(JOIN problems "\n" report)
    message(FATAL_ERROR "${report}")
endif()
list(LENGTH listed count)
message(STATUS "Contract layout of version ${VERSION} unchanged: ${count} records and interfaces")

# Picks the Python 3 interpreter the Python module is built for: the first one, in PATH order
# and then the system's /usr/bin/python3, that imports NumPy and has the headers an extension
# compiles against. The first python3 on PATH is often a version manager's interpreter
# (pyenv) that does not see the distribution's NumPy; taking it blindly would leave the module
# unbuilt, or built for an interpreter that cannot import it. A Python3_EXECUTABLE given on the
# command line is taken as it is.
#
# Sets KV_PYTHON_EXECUTABLE (empty when no interpreter qualifies) and, when one does, the
# Python3_EXECUTABLE hint that every later find_package(Python3) follows.
if(DEFINED Python3_EXECUTABLE)
    set(KV_PYTHON_EXECUTABLE ${Python3_EXECUTABLE})
    return()
endif()

set(candidates "")
if(DEFINED ENV{PATH})
    string(REPLACE ":" ";" path_dirs "$ENV{PATH}")
    foreach(dir IN LISTS path_dirs)
        if(dir AND EXISTS "${dir}/python3" AND NOT IS_DIRECTORY "${dir}/python3")
            list(APPEND candidates "${dir}/python3")
        endif()
    endforeach()
endif()
list(APPEND candidates /usr/bin/python3)
list(REMOVE_DUPLICATES candidates)

set(KV_PYTHON_EXECUTABLE "")
foreach(candidate IN LISTS candidates)
    execute_process(
        COMMAND ${candidate} -c
                "import os, sysconfig, numpy; assert os.path.exists(os.path.join(sysconfig.get_paths()['include'], 'Python.h'))"
        RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET TIMEOUT 30)
    if(status EQUAL 0)
        set(KV_PYTHON_EXECUTABLE ${candidate})
        break()
    endif()
endforeach()

if(KV_PYTHON_EXECUTABLE)
    message(STATUS "Python module: built for ${KV_PYTHON_EXECUTABLE}")
    set(Python3_EXECUTABLE ${KV_PYTHON_EXECUTABLE} CACHE FILEPATH
        "The Python 3 interpreter, one that imports NumPy and has its development headers")
else()
    message(STATUS "Python module: no python3 with NumPy and its headers found; not built "
                   "(install python3-dev and python3-numpy)")
endif()

# Empties the folder of test homes and makes a fresh home with its
# configuration, cache and data folders for every test in TESTS, a
# comma-separated list.
file(REMOVE_RECURSE "${ROOT}")
string(REPLACE "," ";" tests "${TESTS}")
foreach(test IN LISTS tests)
    foreach(folder config cache data)
        file(MAKE_DIRECTORY "${ROOT}/${test}/${folder}")
    endforeach()
endforeach()

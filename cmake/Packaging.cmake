# What `cmake --install` puts in place and what `cpack -G DEB` packs: the
# library, the contract headers, the command line, and the files with which a
# host project finds them through find_package(KVComCtl).
include(CMakePackageConfigHelpers)

set(KV_CMAKE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/KVComCtl)

install(TARGETS KVComCtl kv_contract
        EXPORT KVComCtlTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
# The headers only: the layout record beside them (ContractLayout.txt) belongs to the source tree.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/kvcomctl
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h")
install(TARGETS kvcomctl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(EXPORT KVComCtlTargets
        NAMESPACE KVComCtl::
        DESTINATION ${KV_CMAKE_PACKAGE_DIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/KVComCtlConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/KVComCtlConfig.cmake
                              INSTALL_DESTINATION ${KV_CMAKE_PACKAGE_DIR})
# Before 1.0 a new minor version may change the contract, so only the same
# major and minor version satisfies a request.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KVComCtlConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KVComCtlConfig.cmake
              ${PROJECT_BINARY_DIR}/KVComCtlConfigVersion.cmake
        DESTINATION ${KV_CMAKE_PACKAGE_DIR})

# One Debian package holds everything above; dpkg-shlibdeps reads the
# libraries the installed binaries need (Qt, the C++ run time) and makes the
# package depend on them.
set(CPACK_PACKAGE_NAME kvcomctl)
set(CPACK_PACKAGE_VENDOR "KVComCtl developers")
set(CPACK_PACKAGE_CONTACT "KVComCtl developers <kvcomctl@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
    "A shared library a host application loads at run time, with its contract headers, its CMake package files and the kvcomctl command line.")
set(CPACK_PACKAGE_INSTALL_DIRECTORY kvcomctl)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_STRIP_FILES ON)
include(CPack)

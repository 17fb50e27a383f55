# What gets installed: the library, its headers, a CMake package (find_package(oc), target oc::oc),
# a pkg-config file, and the command.
include(CMakePackageConfigHelpers)
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/oc")

install(TARGETS oc EXPORT ocTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/oc" "${PROJECT_SOURCE_DIR}/include/rz"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")
install(EXPORT ocTargets NAMESPACE oc:: DESTINATION "${package_dir}")
if(TARGET glyphline)
  install(TARGETS glyphline RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()

file(WRITE "${PROJECT_BINARY_DIR}/ocConfig.cmake"
  "include(\"\${CMAKE_CURRENT_LIST_DIR}/ocTargets.cmake\")\n")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/ocConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
configure_file("${PROJECT_SOURCE_DIR}/cmake/oc.pc.in" "${PROJECT_BINARY_DIR}/oc.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/ocConfig.cmake" "${PROJECT_BINARY_DIR}/ocConfigVersion.cmake"
  DESTINATION "${package_dir}")
install(FILES "${PROJECT_BINARY_DIR}/oc.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

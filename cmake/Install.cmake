# What is installed, and where. The library lives in a directory of its own, since its configuration
# and its Java archives are looked for beside it.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# No debug information is installed.
install(CODE "set(CMAKE_INSTALL_DO_STRIP TRUE)" ALL_COMPONENTS)

# install_into(BIN INCLUDE LIB MAN LINK_OPTIONS PREFIX [EXCLUDE_FROM_ALL]): PREFIX stands before the
# names of the components; LINK_OPTIONS are what pkg-config gives beside the library itself.
function(install_into bin include lib man link_options prefix)
  set(library COMPONENT ${prefix}library ${ARGN})
  set(development COMPONENT ${prefix}development ${ARGN})
  set(local_grid COMPONENT ${prefix}local-grid ${ARGN})
  set(doctor COMPONENT ${prefix}doctor ${ARGN})

  install(TARGETS vantiro LIBRARY NAMELINK_SKIP DESTINATION ${lib}/vantiro ${library})
  install(TARGETS vantiro LIBRARY NAMELINK_ONLY DESTINATION ${lib}/vantiro ${development})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${include} ${development})
  install(FILES ${PROJECT_SOURCE_DIR}/clients/cpp/vantiro.hpp DESTINATION ${include} ${development})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/clients/cpp/vantiro DESTINATION ${include} ${development})
  get_target_property(archive vantiro_java JAR_FILE)
  install(FILES ${archive} ${PROJECT_SOURCE_DIR}/java/slurm.properties
    DESTINATION ${lib}/vantiro ${local_grid})
  if(TARGET vantiro-keeper)
    install(TARGETS vantiro-keeper RUNTIME DESTINATION ${lib}/vantiro ${local_grid})
  endif()
  if(TARGET vantiro-doctor)
    install(TARGETS vantiro-doctor RUNTIME DESTINATION ${bin} ${doctor})
  endif()

  # How a build of the user's finds the library. The prefix is known only when it is installed.
  set(root "")
  if(NOT IS_ABSOLUTE ${lib})
    set(root @CMAKE_INSTALL_PREFIX@/)
  endif()
  set(generated ${PROJECT_BINARY_DIR}/install/${prefix}development)
  configure_file(cmake/install/vantiro.pc.in ${generated}/vantiro.pc.in @ONLY)
  install(CODE "
    configure_file(\"${generated}/vantiro.pc.in\" \"${generated}/vantiro.pc\" @ONLY)" ${development})
  install(FILES ${generated}/vantiro.pc DESTINATION ${lib}/pkgconfig ${development})

  cmake_path(ABSOLUTE_PATH lib BASE_DIRECTORY / OUTPUT_VARIABLE from)
  cmake_path(ABSOLUTE_PATH include BASE_DIRECTORY / OUTPUT_VARIABLE to)
  cmake_path(RELATIVE_PATH to BASE_DIRECTORY ${from} OUTPUT_VARIABLE include_from_lib)
  configure_file(cmake/install/vantiro-config.cmake.in ${generated}/vantiro-config.cmake @ONLY)
  write_basic_package_version_file(${generated}/vantiro-config-version.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${generated}/vantiro-config.cmake ${generated}/vantiro-config-version.cmake
    DESTINATION ${lib}/cmake/vantiro ${development})

  # scripts/docs makes them.
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/docs/man/man3 DESTINATION ${man} OPTIONAL
    ${development})
endfunction()

install_into(${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_INCLUDEDIR} ${CMAKE_INSTALL_LIBDIR}
  ${CMAKE_INSTALL_MANDIR} "-Wl,-rpath,\${libdir} " "")

# A configuration that was changed where it is installed stays.
if(VANTIRO_JVM)
  install(CODE "
    set(place \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/vantiro\")
    if(NOT EXISTS \"\$ENV{DESTDIR}\${place}/VantiroDLL.conf\")
      file(INSTALL \"${PROJECT_BINARY_DIR}/VantiroDLL.conf\" DESTINATION \"\${place}\")
    endif()"
    COMPONENT library)
endif()

include(cmake/Packages.cmake)

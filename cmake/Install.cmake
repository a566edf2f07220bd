# What is installed, and where. The library lives in a directory of its own, since its configuration
# and its Java archives are looked for beside it.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# No debug information is installed.
install(CODE "set(CMAKE_INSTALL_DO_STRIP TRUE)" ALL_COMPONENTS)

# man_page(PROGRAM SUMMARY): made of what the program says of itself with --help.
find_program(HELP2MAN help2man)
file(TIMESTAMP ${PROJECT_SOURCE_DIR}/CHANGELOG.md changed "%s" UTC)
function(man_page program summary)
  set(page ${PROJECT_BINARY_DIR}/man/${program}.1)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/man)
  add_custom_command(OUTPUT ${page}.gz DEPENDS ${program} VERBATIM
    COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=${changed}
      "PATH=$<TARGET_FILE_DIR:${program}>:$ENV{PATH}"
      ${HELP2MAN} --no-info --version-string=${PROJECT_VERSION} --source=vantiro
      "--name=${summary}" --output=${page} ${program}
    COMMAND gzip -9nf ${page})
  add_custom_target(${program}-page ALL DEPENDS ${page}.gz)
endfunction()
if(TARGET vantiro-doctor AND HELP2MAN)
  man_page(vantiro-doctor "find out why libvantiro does not start")
  man_page(vantiro-each "run a program over many inputs on a grid")
endif()

# install_into(BIN INCLUDE LIB MAN LINK_OPTIONS PREFIX [EXCLUDE_FROM_ALL]): PREFIX stands before the
# names of the components; LINK_OPTIONS are what pkg-config gives beside the library itself.
function(install_into bin include lib man link_options prefix)
  set(library COMPONENT ${prefix}library ${ARGN})
  set(development COMPONENT ${prefix}development ${ARGN})
  set(local_grid COMPONENT ${prefix}local-grid ${ARGN})
  set(tools COMPONENT ${prefix}tools ${ARGN})

  install(TARGETS vantiro LIBRARY NAMELINK_SKIP DESTINATION ${lib}/vantiro ${library})
  install(TARGETS vantiro LIBRARY NAMELINK_ONLY DESTINATION ${lib}/vantiro ${development})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${include} ${development})
  install(FILES ${PROJECT_SOURCE_DIR}/clients/cpp/vantiro.hpp DESTINATION ${include} ${development})
  if(VANTIRO_FORTRAN)
    install(FILES ${VANTIRO_FORTRAN} DESTINATION ${include} ${development} OPTIONAL)
  endif()
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/clients/cpp/vantiro DESTINATION ${include} ${development})
  get_target_property(archive vantiro_java JAR_FILE)
  install(FILES ${archive} ${PROJECT_SOURCE_DIR}/java/slurm.properties
    DESTINATION ${lib}/vantiro ${local_grid})
  if(TARGET vantiro-keeper)
    install(TARGETS vantiro-keeper RUNTIME DESTINATION ${lib}/vantiro ${local_grid})
  endif()
  foreach(program vantiro-doctor vantiro-each)
    if(TARGET ${program})
      install(TARGETS ${program} RUNTIME DESTINATION ${bin} ${tools})
      if(HELP2MAN)
        install(FILES ${PROJECT_BINARY_DIR}/man/${program}.1.gz DESTINATION ${man}/man1 ${tools})
      endif()
    endif()
  endforeach()
  if(TARGET vantiro-each)
    cmake_path(GET man PARENT_PATH share)
    install(FILES ${PROJECT_SOURCE_DIR}/tools/each/completion.bash RENAME vantiro-each
      DESTINATION ${share}/bash-completion/completions ${tools})
  endif()

  # How a build of the user's finds the library. The prefix is known only when it is installed. CMake's
  # own description goes by where it lies itself, as long as all lies together.
  foreach(place lib include)
    set(${place}_place ${${place}})
    if(NOT IS_ABSOLUTE ${${place}})
      set(${place}_place @CMAKE_INSTALL_PREFIX@/${${place}})
    endif()
  endforeach()
  set(include_of_target ${include_place})
  if((IS_ABSOLUTE ${lib} AND IS_ABSOLUTE ${include}) OR NOT (IS_ABSOLUTE ${lib} OR IS_ABSOLUTE ${include}))
    cmake_path(ABSOLUTE_PATH lib BASE_DIRECTORY / OUTPUT_VARIABLE from)
    cmake_path(ABSOLUTE_PATH include BASE_DIRECTORY / OUTPUT_VARIABLE to)
    cmake_path(RELATIVE_PATH to BASE_DIRECTORY ${from} OUTPUT_VARIABLE include_from_lib)
    set(include_of_target \${vantiro_lib}/${include_from_lib})
  endif()
  set(generated ${PROJECT_BINARY_DIR}/install/${prefix}development)
  foreach(file vantiro.pc vantiro-config.cmake)
    configure_file(cmake/install/${file}.in ${generated}/${file}.in @ONLY)
    install(CODE "
      configure_file(\"${generated}/${file}.in\" \"${generated}/${file}\" @ONLY)" ${development})
  endforeach()
  install(FILES ${generated}/vantiro.pc DESTINATION ${lib}/pkgconfig ${development})
  write_basic_package_version_file(${generated}/vantiro-config-version.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${generated}/vantiro-config.cmake ${generated}/vantiro-config-version.cmake
    DESTINATION ${lib}/cmake/vantiro ${development})

  # scripts/docs makes them.
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/docs/man/man3 DESTINATION ${man} OPTIONAL
    ${development})
endfunction()

install_into(${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_INCLUDEDIR} ${CMAKE_INSTALL_LIBDIR}
  ${CMAKE_INSTALL_MANDIR} "\"-Wl,-rpath,\${libdir}\" " "")

# A configuration that was changed where it is installed stays.
if(VANTIRO_JVM)
  install(CODE "
    set(place_in_prefix \"${CMAKE_INSTALL_LIBDIR}/vantiro\")
    cmake_path(ABSOLUTE_PATH place_in_prefix BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\" OUTPUT_VARIABLE place)
    if(NOT EXISTS \"\$ENV{DESTDIR}\${place}/VantiroDLL.conf\")
      file(INSTALL \"${PROJECT_BINARY_DIR}/VantiroDLL.conf\" DESTINATION \"\${place}\")
    endif()"
    COMPONENT library)
endif()

include(cmake/Packages.cmake)

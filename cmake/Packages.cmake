# Debian packages, which `cpack` makes in the build folder: libvantiro1, libvantiro-dev,
# vantiro-local-grid, vantiro-tools and python3-vantiro. The library's directory is found through
# the loader's configuration. Its VantiroDLL.conf names the default Java runtime of the Debian
# release that the packages are built on, and is an administrator's to change.

separate_arguments(flags NATIVE_COMMAND "${CMAKE_C_FLAGS}")
execute_process(COMMAND ${CMAKE_C_COMPILER} ${flags} -print-multiarch
  OUTPUT_VARIABLE multiarch OUTPUT_STRIP_TRAILING_WHITESPACE)
if(multiarch STREQUAL i386-linux-gnu)
  set(architecture i386)
elseif(multiarch STREQUAL x86_64-linux-gnu)
  set(architecture amd64)
else()
  return()
endif()

set(VANTIRO_MAINTAINER "The vantiro maintainers <maintainers@vantiro.example>" CACHE STRING
  "Whom the Debian packages name as their maintainer")
set(java openjdk-${Java_VERSION_MAJOR}-jre-headless)
set(lib /usr/lib/${multiarch})
set(from ${CMAKE_CURRENT_LIST_DIR}/debian)
set(made ${PROJECT_BINARY_DIR}/debian)
# What the packages of both architectures have in common must be the same.
file(TIMESTAMP ${PROJECT_SOURCE_DIR}/CHANGELOG.md date "%a, %d %b %Y %H:%M:%S +0000" UTC)

install_into(/usr/bin /usr/include ${lib} /usr/share/man "" package_ EXCLUDE_FROM_ALL)

# This CPack has no variable of its own for what lets both architectures be installed together.
set(together "\nMulti-Arch: same")

# package(COMPONENT NAME SECTION SUMMARY TEXT)
macro(package component name section summary text)
  string(TOUPPER ${component} upper)
  list(APPEND CPACK_COMPONENTS_ALL package_${component})
  set(CPACK_DEBIAN_PACKAGE_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_PACKAGE_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_PACKAGE_${upper}_DESCRIPTION "${summary}\n${text}")
  set(documents ${made}/${name}/doc)
  file(MAKE_DIRECTORY ${documents})
  file(CONFIGURE OUTPUT ${documents}/changelog.Debian CONTENT
    "vantiro (${PROJECT_VERSION}-1) unstable; urgency=medium\n\n  * See changelog.gz.\n\n -- ${VANTIRO_MAINTAINER}  ${date}\n")
  configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${documents}/changelog COPYONLY)
  execute_process(COMMAND gzip -9nf ${documents}/changelog.Debian ${documents}/changelog)
  configure_file(${from}/copyright ${documents}/copyright COPYONLY)
  install(DIRECTORY ${documents}/ DESTINATION /usr/share/doc/${name}
    COMPONENT package_${component} EXCLUDE_FROM_ALL)
  set(overrides "# No bug of Debian's asks for a package that is not made for its archive.
${name}: initial-upload-closes-no-bugs\n")
  if(EXISTS ${from}/${name}.overrides)
    file(READ ${from}/${name}.overrides own)
    string(APPEND overrides "${own}")
  endif()
  file(WRITE ${made}/${name}/overrides "${overrides}")
  install(FILES ${made}/${name}/overrides RENAME ${name} DESTINATION /usr/share/lintian/overrides
    COMPONENT package_${component} EXCLUDE_FROM_ALL)
endmacro()

package(library libvantiro1 libs${together}
  "Grid computing library on a Java management library" "\
Gives any program that can call plain C functions the use of a grid management
library written for the Java virtual machine, which it loads into the calling
process. The Java archives of that library lie beside this one, in
${lib}/vantiro; vantiro-local-grid has some that
run jobs on this machine alone.")
set(CPACK_DEBIAN_PACKAGE_LIBRARY_PACKAGE_DEPENDS "libc6 (>= 2.34)")
set(CPACK_DEBIAN_PACKAGE_LIBRARY_PACKAGE_RECOMMENDS "${java}, vantiro-local-grid")
set(CPACK_DEBIAN_PACKAGE_LIBRARY_PACKAGE_SUGGESTS vantiro-tools)

package(development libvantiro-dev libdevel${together}
  "Grid computing library on a Java management library - development" "\
Headers of libvantiro, and what a linker, pkg-config and CMake need to build
programs with it.")
set(same_version "libvantiro1 (= ${PROJECT_VERSION}-1)")
set(CPACK_DEBIAN_PACKAGE_DEVELOPMENT_PACKAGE_DEPENDS "${same_version}")

package(local-grid vantiro-local-grid java${together}
  "Grid on a single machine for programs that use libvantiro" "\
A small grid in the place of the Java management library of a real one. It runs
every job as a process on this machine, so that programs can be written and
tried with no grid at hand.")
set(CPACK_DEBIAN_PACKAGE_LOCAL-GRID_PACKAGE_DEPENDS "${same_version}")

if(TARGET vantiro-doctor)
  package(tools vantiro-tools utils
    "Programs for those who compute with libvantiro" "\
vantiro-each runs a program over many inputs on the grid, several at a time.
vantiro-doctor finds out why libvantiro does not start: it calls the library's
initialiser in a process of its own, and names the cause and the cure of each
trouble.")
  set(CPACK_DEBIAN_PACKAGE_TOOLS_PACKAGE_DEPENDS "${same_version}, libc6 (>= 2.34)")
endif()

if(TARGET vantiro_python)
  package(python python3-vantiro python
    "Grid computing in Python, as on one machine" "\
What subprocess.run and concurrent.futures are on one machine, on as many as a
grid has; and each function of libvantiro.")
  set(CPACK_DEBIAN_PACKAGE_PYTHON_PACKAGE_ARCHITECTURE all)
  set(CPACK_DEBIAN_PACKAGE_PYTHON_PACKAGE_DEPENDS
    "python3 (>= 3.8), libvantiro1 (>= ${PROJECT_VERSION})")
  file(CONFIGURE OUTPUT ${made}/python/postinst CONTENT
    "#!/bin/sh\nset -e\n[ \"$1\" != configure ] || py3compile -p python3-vantiro\n" @ONLY)
  file(CONFIGURE OUTPUT ${made}/python/prerm CONTENT
    "#!/bin/sh\nset -e\npy3clean -p python3-vantiro\n" @ONLY)
  file(CHMOD ${made}/python/postinst ${made}/python/prerm
    PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  set(CPACK_DEBIAN_PACKAGE_PYTHON_PACKAGE_CONTROL_EXTRA
    ${made}/python/postinst ${made}/python/prerm)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/clients/python/vantiro
    DESTINATION /usr/lib/python3/dist-packages COMPONENT package_python EXCLUDE_FROM_ALL
    PATTERN __pycache__ EXCLUDE)
endif()

# The library's configuration.
set(conf vantiro/${multiarch}/VantiroDLL.conf)
set(ld vantiro-${multiarch}.conf)
file(WRITE ${made}/etc/${conf}
  "JVMPATH=/usr/lib/jvm/java-${Java_VERSION_MAJOR}-openjdk-${architecture}/lib/server/libjvm.so\n")
file(WRITE ${made}/etc/ld.so.conf.d/${ld} "${lib}/vantiro\n")
file(CREATE_LINK /etc/${conf} ${made}/VantiroDLL.conf SYMBOLIC)
file(WRITE ${made}/conffiles "/etc/${conf}\n/etc/ld.so.conf.d/${ld}\n")
file(WRITE ${made}/triggers "activate-noawait ldconfig\n")
configure_file(${from}/libvantiro1.symbols ${made}/symbols COPYONLY)
set(CPACK_DEBIAN_PACKAGE_LIBRARY_PACKAGE_CONTROL_EXTRA
  ${made}/conffiles ${made}/triggers ${made}/symbols)
set(options COMPONENT package_library EXCLUDE_FROM_ALL)
install(DIRECTORY ${made}/etc/ DESTINATION /etc ${options})
install(FILES ${made}/VantiroDLL.conf DESTINATION ${lib}/vantiro ${options})

# So that `-lvantiro` suffices. No link: through one the library would look for its configuration in
# the link's directory.
file(WRITE ${made}/libvantiro.so "/* GNU ld script */\nINPUT(vantiro/libvantiro.so)\n")
install(FILES ${made}/libvantiro.so DESTINATION ${lib}
  COMPONENT package_development EXCLUDE_FROM_ALL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has one of its own
set(CPACK_PACKAGE_NAME vantiro)
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${architecture})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${VANTIRO_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)

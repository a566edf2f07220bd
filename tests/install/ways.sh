#!/bin/sh
# The README's first program, built and run outside of the tree in each way that a user has:
# ways.sh SOURCE BUILD COMPILER FLAGS CASE
set -eu
source=$1 build=$2 compiler=$3 flags=$4 way=$5
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/a folder"
cd "$scratch/a folder"
here=$PWD

# The local grid of the test, apart from the user's own.
printf 'grid.home=%s\n' "$scratch/grid" >vantiro.properties
sed '1,/^```c$/d; /^```$/,$d' "$source/README.md" >first.c

fail() {
  echo "FAILED: $*"
  exit 1
}
quietly() { "$@" >log 2>&1 || fail "$* said: $(cat log)"; }
compile() { "$compiler" $flags first.c -o first "$@"; }
install_here() { quietly cmake --install "$build" --prefix p; }

# prints_login COMMAND...
prints_login() {
  said=$("$@") || fail "$* said: $said"
  [ "$said" = "0 $(id -un)" ] || fail "$* said: $said"
}

# build_with_cmake LINE CMAKE-OPTION...: LINE is what brings the library.
build_with_cmake() {
  printf '%s\n' 'cmake_minimum_required(VERSION 3.25)' 'project(first C CXX)' "$1" \
    'add_executable(first first.c)' 'target_link_libraries(first PRIVATE vantiro::vantiro)' \
    >CMakeLists.txt
  shift
  quietly cmake -S . -B b "-DCMAKE_C_FLAGS=$flags" "-DCMAKE_CXX_FLAGS=$flags" "$@"
  quietly cmake --build b --parallel 2 ${target:+--target "$target"}
}

case $way in
  build_tree)
    compile "-I$source/include" "-L$build" -lvantiro "-Wl,-rpath,$build"
    prints_login ./first
    ;;
  prefix)
    install_here
    compile -Ip/include -Lp/lib/vantiro -lvantiro "-Wl,-rpath,$here/p/lib/vantiro"
    prints_login ./first
    quietly env "LD_LIBRARY_PATH=$here/p/lib/vantiro" "$build/examples/pi" 10
    quietly c++ $flags -std=c++17 -fsyntax-only -Ip/include "$source/clients/cpp/examples/pi.cpp"
    quietly p/bin/vantiro-doctor
    [ "$(p/bin/vantiro-each echo ::: ok)" = ok ] || fail "vantiro-each does not run"
    readelf --sections --wide p/lib/vantiro/libvantiro.so | grep debug && fail "debug information"
    echo '#' >>p/lib/vantiro/VantiroDLL.conf
    install_here
    grep -q '#' p/lib/vantiro/VantiroDLL.conf || fail "a changed configuration was overwritten"
    ;;
  pkg_config)
    install_here
    eval "compile $(PKG_CONFIG_PATH=p/lib/pkgconfig pkg-config --cflags --libs vantiro)"
    prints_login ./first
    ;;
  find_package)
    install_here
    build_with_cmake 'find_package(vantiro 1.0 REQUIRED)' "-DCMAKE_PREFIX_PATH=$here/p"
    prints_login b/first
    ;;
  subdirectory)
    jvm=$(sed -n 's/^JVMPATH=//p' "$build/VantiroDLL.conf")
    build_with_cmake "add_subdirectory(\"$source\" v)" "-DVANTIRO_JVM=$jvm"
    prints_login b/first
    [ ! -e b/v/examples ] || fail "more than the library and its grid was built"
    quietly cmake -B b -DVANTIRO_LOCAL_GRID=OFF
    rm b/v/vantiro.jar
    quietly cmake --build b --parallel 2
    [ ! -e b/v/vantiro.jar ] || fail "the local grid was built although it is not wanted"
    ;;
  fetch_content)
    jvm=$(sed -n 's/^JVMPATH=//p' "$build/VantiroDLL.conf")
    # One program alone is built, as a development environment does.
    target=first
    build_with_cmake "include(FetchContent)
      FetchContent_Declare(vantiro SOURCE_DIR \"$source\" EXCLUDE_FROM_ALL)
      FetchContent_MakeAvailable(vantiro)" "-DVANTIRO_JVM=$jvm"
    prints_login b/first
    ;;
  libdir)
    # As distributions call cmake.
    for libdir in lib64 lib/some-linux-gnu "$here/opt/lib"; do
      quietly cmake -S "$source" -B c "-DCMAKE_C_FLAGS=$flags" "-DCMAKE_CXX_FLAGS=$flags" \
        "-DVANTIRO_JVM=$(sed -n 's/^JVMPATH=//p' "$build/VantiroDLL.conf")" \
        "-DCMAKE_INSTALL_LIBDIR=$libdir" -DCMAKE_INSTALL_PREFIX="$here/p"
      quietly cmake --build c --parallel 2 --target vantiro
      for component in library development local-grid; do
        quietly cmake --install c --component $component
      done
      [ "${libdir#/}" != "$libdir" ] || libdir=$here/p/$libdir
      [ -f "$libdir/pkgconfig/vantiro.pc" ] || fail "no $libdir/pkgconfig/vantiro.pc"
      eval "compile $(PKG_CONFIG_PATH=$libdir/pkgconfig pkg-config --cflags --libs vantiro)"
      readelf --dynamic first | grep -qF "[$libdir/vantiro]" || fail "pkg-config names another place"
      rm first
      build_with_cmake 'find_package(vantiro REQUIRED)' "-Dvantiro_DIR=$libdir/cmake/vantiro"
      b/first >/dev/null || fail "the program of find_package does not start from $libdir"
      rm -r p/include b
    done
    ;;
  packages)
    # With this generator cpack does not look whether everything is built, beside the other tests.
    quietly cpack --config "$build/CPackConfig.cmake" -B packages -D CPACK_CMAKE_GENERATOR=Ninja
    for package in packages/*.deb; do dpkg-deb --extract "$package" root; done
    # Without help2man the programs have no pages.
    if type help2man >/dev/null 2>&1; then
      for program in root/usr/bin/*; do
        [ -f "root/usr/share/man/man1/${program##*/}.1.gz" ] || fail "no page for $program"
      done
      ! type lintian >/dev/null 2>&1 || quietly lintian --fail-on warning packages/*.deb
    fi
    place=$(cat root/etc/ld.so.conf.d/vantiro-*.conf)
    lib=${place%/*}
    conf=$(readlink "root$place/VantiroDLL.conf")
    grep -q '^JVMPATH=/usr/lib/jvm/' "root$conf" || fail "the configuration is wrong or not there"
    for package in packages/libvantiro1*.deb; do
      dpkg-deb --info "$package" conffiles | grep -qx "$conf" || fail "it is no conffile"
    done
    # The administrator's change; through the root of the system the link would lead elsewhere.
    rm "root$place/VantiroDLL.conf"
    cp "$build/VantiroDLL.conf" "root$place/"
    compile -Iroot/usr/include "-Lroot$lib" -lvantiro
    prints_login env "LD_LIBRARY_PATH=$here/root$place" ./first
    quietly root/usr/bin/vantiro-doctor "$here/root$place/libvantiro.so.1"
    build_with_cmake 'find_package(vantiro REQUIRED)' "-Dvantiro_DIR=$here/root$lib/cmake/vantiro"
    prints_login b/first
    export PKG_CONFIG_LIBDIR="root$lib/pkgconfig" PKG_CONFIG_SYSROOT_DIR=root
    [ "$(pkg-config --libs vantiro)" = "-Lroot$place -lvantiro " ] || fail "$(pkg-config --libs vantiro)"
    ;;
  *) fail "there is no case $way" ;;
esac

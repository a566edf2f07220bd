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
  quietly cmake --build b --parallel 2
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
    build_with_cmake "add_subdirectory(\"$source\" v)"
    [ ! -e b/v/vantiro.jar ] || fail "more than the library was built"
    # A runtime is named only when it has the program's own word size.
    grep -qs / b/v/VantiroDLL.conf || cp "$build/VantiroDLL.conf" b/v/
    cp "$build/vantiro.jar" b/v/
    prints_login b/first
    ;;
  packages)
    # With this generator cpack does not look whether everything is built, beside the other tests.
    quietly cpack --config "$build/CPackConfig.cmake" -B packages -D CPACK_CMAKE_GENERATOR=Ninja
    for package in packages/*.deb; do dpkg-deb --extract "$package" root; done
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

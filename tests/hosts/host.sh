#!/bin/sh
# Builds and runs one program of examples/hosts and compares what it writes; status 77 when the host
# is not on this machine: host.sh SOURCE BUILD FLAGS HOST
set -eu
source=$1 build=$2 flags=$3 host=$4
export VANTIRO_LIBRARY="$build/libvantiro.so.1" VANTIRO_INCLUDE="$source/include" GO111MODULE=off
here=$source/examples/hosts
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
export HOME="$scratch" # for what hosts keep there
printf 'grid.home=%s\nlog.level=OFF\n' "$scratch/grid" >vantiro.properties

needs() {
  "$@" >log 2>&1 || {
    echo "There is no $host here, scripts/test hosts brings it: $*: $(cat log)"
    exit 77
  }
}
links="$VANTIRO_LIBRARY -Wl,-rpath,$build"

case $host in
  cpp)
    c++ $flags -std=c++17 "$here/host.cpp" "-I$source/clients/cpp" "-I$source/include" $links -o host
    set -- ./host
    ;;
  fortran)
    echo end >empty.f90
    needs gfortran $flags empty.f90
    gfortran $flags -std=f2018 "$build/clients/vantiro.f90" "$here/host.f90" $links -o host
    set -- ./host
    ;;
  go)
    needs go version
    CGO_CFLAGS="-I$source/include" CGO_LDFLAGS=$links go build -o host "$here/host.go"
    set -- ./host
    ;;
  lua) needs luajit -v && set -- luajit "$here/host.lua" ;;
  node)
    export NODE_PATH="$source/build/hosts/node_modules" ON_THREAD="$scratch/on_thread.so"
    needs node -e 'require("koffi")'
    cc -shared -fPIC "$here/on_thread.c" -o on_thread.so
    set -- node "$here/host.js"
    ;;
  perl) needs perl -MFFI::Platypus -e 1 && set -- perl "$here/host.pl" ;;
  php) needs php -r 'FFI::cdef("");' && set -- php "$here/host.php" ;;
  python)
    home=$source/build/python-i386
    export PYTHONPATH="$source/clients/python" PYTHONDONTWRITEBYTECODE=1
    set -- python3 "$here/host.py"
    [ "$flags" != -m32 ] || set -- env PYTHONHOME="$home" \
      LD_LIBRARY_PATH="$home/lib/i386-linux-gnu" "$home/bin/python3.11" "$here/host.py"
    ;;
  r)
    needs R --version
    cp "$here/host_r.c" .
    PKG_CPPFLAGS="-I$source/include" R CMD SHLIB host_r.c >log 2>&1 || { cat log && exit 1; }
    set -- Rscript "$here/host.R"
    ;;
  ruby) needs ruby -rfiddle -e 1 && set -- ruby "$here/host.rb" ;;
  tcl) echo 'package require critcl' >needs.tcl && needs tclsh needs.tcl && set -- tclsh "$here/host.tcl" ;;
  *) echo "there is no host $host" && exit 1 ;;
esac

"$@" >said 2>problems || { echo "it ended with status $?: $(cat said problems)" && exit 1; }
for job in 1 2 3 4 5; do
  echo "line $job:$((job * job))"
  echo "file $((job * job))"
done >wanted
echo 'failed: the value is not one of the known ones (-10)' >>wanted
sed 's/ *$//' said | sort >sorted
sort wanted | diff - sorted
cat problems

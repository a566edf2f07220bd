# Usage: layers.sh JAVAC SOURCES    compiles the packages of the grid one after the other, so that
# none can use one that comes after it.
set -eu
javac=$1 sources=$2/fi/vantiro
classes=$(mktemp -d)
trap 'rm -rf "$classes"' EXIT
for layer in user/VantiroManagerPlugin.java localgrid/base localgrid/files localgrid/settings \
  localgrid/bundle localgrid/process localgrid/home localgrid/job localgrid/project \
  localgrid/peach localgrid/*.java user; do
  echo "$layer"
  # shellcheck disable=SC2086  # a layer may be several files
  files=$(cd "$sources" && find $layer -name '*.java')
  # What is not given is not looked for among the sources.
  (cd "$sources" && "$javac" -implicit:none -sourcepath "$classes" -cp "$classes" \
    --release 8 -Xlint:-options -d "$classes" $files)
done

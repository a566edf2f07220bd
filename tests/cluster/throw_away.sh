#!/usr/bin/env bash
# The throw-away cluster itself, among other users, strangers and ruins: throw_away.sh SOURCES CASE
set -u
cluster=$1/scripts/cluster
scratch=$(mktemp -d)
export VANTIRO_CLUSTER=$scratch/cluster PATH=$1/build/slurm/bin:$PATH
stranger=

clean_up() {
  "$cluster" stop >/dev/null 2>&1
  [ -z "$stranger" ] || kill "$stranger"
  rm -rf "$scratch"
}
trap clean_up EXIT

fail() {
  echo "FAILED: $*"
  cat "$scratch/out"
  exit 1
}
quietly() { "$@" >"$scratch/out" 2>&1 || fail "$*"; }
started() {
  quietly "$cluster" start
  export SLURM_CONF=$(readlink "$VANTIRO_CLUSTER")/slurm.conf
}
nothing_is_left() {
  [ ! -L "$VANTIRO_CLUSTER" ] && [ ! -e "${SLURM_CONF%/*}" ] || fail "files are left after $1"
  for process in $(grep -lzxF "SLURM_CONF=$SLURM_CONF" /proc/[0-9]*/environ 2>/dev/null); do
    [[ ! $(cat "${process%environ}comm") =~ ^(munged|slurm) ]] || fail "$process is left after $1"
  done
  kill -0 "$stranger" || fail "a stranger was killed after $1"
}

# refused: what is there instead of a cluster is neither used nor touched.
refused() {
  for command in start stop; do
    ! "$cluster" $command >"$scratch/out" 2>&1 || fail "$command followed $1"
    grep -q 'Name another place\|remove the link' "$scratch/out" || fail "no cure for $1"
    [ "$(cat "$scratch/mine/slurm.conf")" = mine ] || fail "$command touched $1"
  done
}

case $2 in
  private)
    started
    other=(setpriv --reuid 65534 --regid 65534 --clear-groups env PATH="$PATH" SLURM_CONF="$SLURM_CONF")
    [ "$(id -u)" -eq 0 ] || exit 77
    quietly srun true
    ! "${other[@]}" timeout 5 srun true >"$scratch/out" 2>&1 || fail "another user ran a job"
    ! "${other[@]}" munge --no-input --socket="${SLURM_CONF%/*}/munge/socket" >"$scratch/out" 2>&1 ||
      fail "another user got a credential"
    ;;
  planted)
    mkdir "$scratch/mine"
    echo mine >"$scratch/mine/slurm.conf"
    VANTIRO_CLUSTER=$scratch/mine refused "a folder"
    ln -s "$scratch/mine" "$VANTIRO_CLUSTER" && refused "a link to a folder of one's own"
    place=$(mktemp -d /tmp/vantiro-cluster-XXXXXX)
    ln -sfT "$place" "$VANTIRO_CLUSTER" && chmod 755 "$place" && refused "a folder that others can enter"
    if [ "$(id -u)" -eq 0 ]; then
      chmod 700 "$place" && chown 65534 "$place" && refused "another user's folder"
      chown 0 "$place" && chown -h 65534 "$VANTIRO_CLUSTER" && refused "another user's link"
    fi
    rm -r "$place" "$VANTIRO_CLUSTER"
    ;;
  interrupted)
    # It has no environment that could be told, as programs that show a title of their own.
    perl -e '$0 = "stranger"; sleep 300' &
    stranger=$!
    for command in start stop; do
      for pause in 0.03 0.06 0.1 0.13 0.16 0.2 0.25 0.3 0.4; do
        [ $command = start ] || started
        setsid "$cluster" $command >/dev/null 2>&1 &
        sleep $pause
        kill -KILL -- -$! 2>/dev/null
        wait $! 2>/dev/null
        SLURM_CONF=$(readlink "$VANTIRO_CLUSTER")/slurm.conf
        quietly "$cluster" stop
        nothing_is_left "$command of $pause s"
      done
    done
    ;;
  any_folder)
    for folder in 'a: cluster, of 100 %' "$(printf %0200d 0)" "$(printf 'a long one/%0100d/%0100d' 0 0)"; do
      export VANTIRO_CLUSTER=$scratch/$folder
      started
      quietly srun --nodes=3 true
      quietly "$cluster" stop
    done
    ;;
esac

#!/usr/bin/env bash
# Jobs a second of a whole program on the local grid beside those of plain srun, in turn on one Slurm:
#
#   scripts/cluster run bench/cluster.sh [ROUNDS]
set -euo pipefail
root=$(cd -- "$(dirname -- "$(readlink -f -- "$0")")/.." && pwd -P)
jobs=100
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cp "$root/java/slurm.properties" "$scratch/settings"
echo "grid.home=$scratch/grid" >>"$scratch/settings"
export VANTIRO_SETTINGS=$scratch/settings

plain() { seq $jobs | xargs -P $jobs -I{} srun --quiet --ntasks=1 true {}; }
grid() { seq $jobs | "$root/build/x86/vantiro-each" -j $jobs true >/dev/null 2>&1; }

# rate COMMAND: prints jobs in a thousand seconds.
rate() {
  local begin end
  begin=$(date +%s%N)
  "$1"
  end=$(date +%s%N)
  echo $((jobs * 1000000000000 / (end - begin)))
}

for ((round = 0; round < ${1:-5}; round++)); do
  a=$(rate plain)
  b=$(rate grid)
  printf '%d %d %d\n' "$a" "$b" $((b * 1000 / a))
done | sort -n -k 3 | awk '
  { printf "  srun %6.2f  grid %6.2f jobs/s  ratio %.2f\n", $1 / 1000, $2 / 1000, $3 / 1000; r[NR] = $3 }
  END { printf "median ratio %.2f, from %.2f to %.2f\n", r[int((NR + 1) / 2)] / 1000, r[1] / 1000, r[NR] / 1000 }'

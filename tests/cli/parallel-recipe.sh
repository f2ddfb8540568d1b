#!/usr/bin/env bash
# The GNU parallel recipe of docs/scale.md on a small archive: two shards run,
# the workers are stopped midway as a scheduler stops them (TERM), the same
# command is run again, and then every input is converted, exactly once, with
# nothing half-made left behind.
# Usage: parallel-recipe.sh PROGRAM
set -euo pipefail
program=$1
command -v parallel >/dev/null || { echo "GNU parallel is not installed"; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/in" "$work/out" "$work/logs"
for i in $(seq 1 12); do
  gdal_create -q -of GTiff -outsize 1200 1200 -bands 1 -burn "$i" -a_srs EPSG:2436 \
    -a_ullr 430000 4380000 442000 4368000 "$work/in/sheet$i.tif"
done
ls "$work"/in/*.tif > "$work/list.txt"

run() {
  parallel -q -j2 "$program" reproject --from EPSG:2436 --to EPSG:4214 --list "$work/list.txt" \
    --shard {}/2 --skip-existing --log "$work/logs/{}.jsonl" --folder "$work/out" ::: 1 2
}

run > /dev/null 2>&1 &
runner=$!
# Stop the workers once something is done.
for _ in $(seq 1 400); do
  grep -qs '"done"' "$work"/logs/*.jsonl && break
  sleep 0.05
done
# Only the workers: GNU parallel itself, told TERM, would follow up with KILL
# after a few hundred milliseconds, as a scheduler does after its grace time.
real_program=$(readlink -f "$program")
for pid in $(pgrep -f -- "--folder $work/out" || true); do
  [ "$(readlink -f "/proc/$pid/exe" 2>/dev/null)" = "$real_program" ] && kill -TERM "$pid" 2>/dev/null || true
done
wait "$runner" || true

run > /dev/null 2>&1 || { echo "the resumed run failed"; cat "$work"/logs/*.jsonl; exit 1; }

status=0
for input in "$work"/in/*.tif; do
  done_count=$(cat "$work"/logs/*.jsonl | grep -F "\"input\":\"$input\"" | grep -c '"status":"done"' || true)
  if [ "$done_count" != 1 ]; then
    echo "$input converted $done_count times"
    status=1
  fi
  output="$work/out/$(basename "$input")"
  gdalinfo "$output" > /dev/null 2>&1 || { echo "$output is missing or unreadable"; status=1; }
done
leftovers=$(find "$work/out" -name '*kivtmp*' | wc -l)
if [ "$leftovers" != 0 ]; then
  echo "$leftovers temporary files left behind"
  status=1
fi
stopped=$(cat "$work"/logs/*.jsonl | grep -c '"status":"skipped"' || true)
echo "12 inputs, each converted once; $stopped skipped on resuming"
exit $status

#!/usr/bin/env bash
# make.sh QLOOM FOLDER     makes the sample logs from their JSON lines
# make.sh --renew QLOOM    makes the JSON lines anew, by simulating the drives
set -euo pipefail
samples=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

# name and options of `qloom log simulate`
drives=(
  "outdoor_mixed --minutes 2.2 --interval 5 --handsets td,gsm,lte,lte --scanner --seed 5"
  "indoor --minutes 4 --interval 4 --handsets td,gsm --indoor --seed 7"
  "merged_600 --minutes 4.4 --interval 4 --handsets td,lte --log-version 600 --seed 8"
)

if [ "${1:-}" = --renew ] && [ $# -eq 2 ]; then
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
  for drive in "${drives[@]}"; do
    read -r name options <<<"$drive"
    # shellcheck disable=SC2086
    "$2" log simulate "$work/$name.log" $options
    "$2" log dump "$work/$name.log" >"$samples/$name.jsonl"
  done
elif [ $# -eq 2 ]; then
  mkdir -p "$2"
  for drive in "${drives[@]}"; do
    name=${drive%% *}
    "$1" log make "$samples/$name.jsonl" "$2/$name.log"
  done
else
  sed -n '2,3s/^# //p' "${BASH_SOURCE[0]}" >&2
  exit 2
fi

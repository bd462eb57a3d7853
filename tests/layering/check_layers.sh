#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Fails where a folder of src/ includes one that stands above it, or a folder without a window includes Qt.
# check_layers.sh SRC
set -u
src="$1"
# Bottom to top; a folder may include itself and every folder listed with it.
declare -A allowed=(
  [base]=""
  [model]="base"
  [materials]="base model"
  [analysis]="base model materials"
  [wizard]="base model"
  [batch]="base model materials analysis"
  [views]="base model materials analysis"
  [printing]="base views"
  [app]="base model materials analysis wizard views printing"
)
with_window=" views printing app "
bad=0
for path in "$src"/*/; do
  folder="$(basename "$path")"
  if [ -z "${allowed[$folder]+known}" ]; then
    echo "src/$folder: not in the list of layers"
    bad=1
    continue
  fi
  while IFS=: read -r file line text; do
    target="$(sed -E 's/.*#include[[:space:]]*[<"]([^>"]*)[>"].*/\1/' <<<"$text")"
    top="${target%%/*}"
    if [[ "$target" =~ ^(Q[A-Z]|Qt|qcustomplot) ]] && [[ "$with_window" != *" $folder "* ]]; then
      echo "$file:$line: includes the window system: $target"
      bad=1
    elif [ -d "$src/$top" ] && [ "$top" != "$folder" ] && [[ " ${allowed[$folder]} " != *" $top "* ]]; then
      echo "$file:$line: src/$folder may not include $target"
      bad=1
    fi
  done < <(grep -rnE '^[[:space:]]*#include' "$path")
done
exit "$bad"

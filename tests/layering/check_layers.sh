#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Fails where a file of src/ includes what stands above its folder, or one without a window includes Qt or the
# window half of its own folder.
# check_layers.sh SRC
set -u
src="$1"
# Bottom to top; a folder may include itself and every folder listed with it.
declare -A allowed=(
  [base]=""
  [model]="base"
  [materials]="base model"
  [section]="base model materials"
  [run]="base model materials section"
  [job]="base model materials section run"
  [chart]="base"
  [widgets]="base"
  [views]="base model materials run job chart widgets"
  [grid]="base model materials"
  [wizard]="base model"
  [options]="base model materials chart widgets views"
  [printing]="base model materials chart widgets views"
  [batch]="base model materials section run job"
  [app]="base model materials section run job chart widgets views grid wizard options printing"
)
# Names of the files that make windows. In a folder that has both halves, what these may include besides.
declare -A window_files=(
  [chart]="*" [widgets]="*" [views]="*" [options]="*" [printing]="*" [app]="*"
  [grid]="grid_window* cell_editor* grid_model*"
  [wizard]="*dialog* *preview*"
)
declare -A window_allowed=([grid]="widgets views" [wizard]="materials chart widgets views grid")

# is_window FOLDER FILE
is_window() {
  local pattern
  set -f
  for pattern in ${window_files[$1]:-}; do
    # shellcheck disable=SC2053
    [[ "$(basename "$2")" == $pattern ]] && set +f && return 0
  done
  set +f
  return 1
}

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
    may=" $folder ${allowed[$folder]} "
    if is_window "$folder" "$file"; then
      may+="${window_allowed[$folder]:-} "
    elif [[ "$target" =~ ^(Q[A-Z]|Qt|qcustomplot) ]] || { [ "$top" = "$folder" ] && is_window "$top" "$target"; }; then
      echo "$file:$line: includes the window system: $target"
      bad=1
      continue
    fi
    if [ -d "$src/$top" ] && [[ "$may" != *" $top "* ]]; then
      echo "$file:$line: src/$folder may not include $target"
      bad=1
    fi
  done < <(grep -rnE '^[[:space:]]*#include' "$path")
done
exit "$bad"

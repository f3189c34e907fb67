#!/usr/bin/env bash
# folders.sh [FOLDER]: checks that the tables of docs/architecture.md of the project in FOLDER name each folder that has
# files, and no folder that does not exist. A name is a code span in the first column; `folder/**` stands for the folder
# and all folders below it.
set -euo pipefail
cd "${1:-"$(dirname "$0")/.."}"
page=docs/architecture.md

# New files that are not yet committed count as well.
mapfile -t folders < <(git ls-files --cached --others --exclude-standard | sed -n 's,/[^/]*$,/,p' | sort -u)
mapfile -t names < <(awk -F '|' '/^\| `/ { n = split($2, part, "`"); for (i = 2; i <= n; i += 2) print part[i] }' "$page")
[ ${#folders[@]} -gt 20 ] || { echo "folders.sh: only ${#folders[@]} folders were found" >&2; exit 1; }

# matches FOLDER NAME
matches() { [[ $1 = "$2" || ($2 = *'/**' && $1 = "${2%\*\*}"*) ]]; }

wrong=0
for folder in "${folders[@]}"; do
  for name in "${names[@]}"; do matches "$folder" "$name" && continue 2; done
  echo "$page: $folder is missing"
  wrong=1
done
for name in "${names[@]}"; do
  for folder in "${folders[@]}"; do matches "$folder" "$name" && continue 2; done
  echo "$page: there is no folder $name"
  wrong=1
done
exit $wrong

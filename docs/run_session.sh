#!/usr/bin/env bash
# run_session.sh PROGRAMS PAGE: runs the shell commands of a page, with the folder PROGRAMS in PATH. They must print the
# page's text blocks.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
session=$(mktemp)
trap 'rm -f "$session"' EXIT
{
  echo '#!/usr/bin/env -S bash -e'
  echo "PATH='$(realpath "$1")':\$PATH"
  awk -v language=sh -v output=/dev/stdout -f "$here/page.awk" "$2"
} >"$session"
chmod +x "$session"
"$here/run_page.sh" "$session" "$2"

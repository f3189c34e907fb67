#!/usr/bin/env bash
# arrows.sh [FOLDER]: checks the includes between the source folders of the project. Prints each include that is not
# allowed, and then fails.
#
# The table below lists the parts that each part may include besides itself. This is not transitive: a part may not
# include what an allowed part includes. A public header belongs to the part that has the source of the same name.
# docs/architecture.md describes the parts.
set -euo pipefail
cd "${1:-"$(dirname "$0")/.."}"

find src include platform -name '*.[ch]pp' | LC_ALL=C sort | awk '
  function allow(part, others,   i, list) {
    known[part]
    for (i = split(others, list, " "); i > 0; --i) allowed[part, list[i]]
  }
  BEGIN {
    allow("archive", "types")
    allow("reading", "reading/input transforms types platform")
    allow("reading/input", "types platform")
    allow("transforms", "types platform")
    allow("types", "platform")
    allow("locale", "platform")
    allow("messages", "locale platform")
    allow("paths", "locale converters platform")
    allow("converters", "locale platform")
    allow("transcoding", "converters transcoding/kernels transcoding/kernels/avx2 platform")
    allow("transcoding/kernels", "")
    allow("transcoding/kernels/avx2", "transcoding/kernels")
    allow("platform", "")   # the public headers of the stand-ins
    allow("resources", "platform")
    allow("codepages", "platform")
  }
  function part_of(path) {
    if (path ~ /^platform\/[a-z0-9]+\/include\//) return "platform"
    if (path ~ /^platform\/[a-z0-9]+\/codepages\//) return "codepages"
    sub(/^platform\/resources\/src\//, "src/resources/", path)
    sub(/^platform\/[a-z0-9]+\/src\//, "src/", path)
    sub(/^src\//, "", path)
    if (!sub(/\/[^\/]*$/, "", path)) return ""
    return path
  }
  function stem(path) { sub(/.*\//, "", path); sub(/\..*/, "", path); return path }
  # The part of the header `name`, which `file` includes; empty if it is not a header of this project.
  function target(file, name,   sibling) {
    if (name ~ /^qardatainterfaces\//) return stem(name) in home ? home[stem(name)] : "types"
    if (name ~ /^(ku|opc|qar|tavik_core)\//) return "platform"
    sibling = file
    sub(/[^\/]*$/, name, sibling)
    if (sibling in exists) return part_of(sibling)
    sub(/\/src\/.*/, "/src/", file)
    sub(/^src\/.*/, "src/", file)
    return (file name) in exists ? part_of(file name) : ""
  }
  { files[++count] = $0; exists[$0] }
  END {
    for (i = 1; i <= count; ++i)
      if (files[i] ~ /^src\/.*\.cpp$/) home[stem(files[i])] = part_of(files[i])
    for (i = 1; i <= count; ++i) {
      file = files[i]
      from = file ~ /^include\// ? target(file, "qardatainterfaces/" stem(file)) : part_of(file)
      if (!(from in known)) { print file ": its folder is not in the table of tools/arrows.sh"; ++wrong; continue }
      for (line = 1; (getline text < file) > 0; ++line) {
        if (text !~ /^#include ["<]/) continue
        split(text, part, /[<">]/)
        to = target(file, part[2])
        if (from ~ /^(platform|locale|messages|paths|converters|transcoding.*|resources)$/ && part[2] ~ /^qardatainterfaces\//)
          to = "the library"
        if (to == "" || to == from) continue
        ++seen
        if ((from, to) in allowed) continue
        print file ":" line ": " from " must not include " to " (" part[2] ")"
        ++wrong
      }
      close(file)
    }
    if (seen < 50) { print "arrows.sh: only " seen + 0 " includes were seen"; ++wrong }
    exit wrong > 0
  }'

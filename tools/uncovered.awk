# Reads the output of `llvm-cov show --show-branches=count` and prints each line that has not run, or that has a branch
# which was never taken: awk -v list=tools/not_covered.txt -f uncovered.awk. The list has the lines that no test can
# cover. Exit status 1 if a line is uncovered and not listed, or if an entry of the list matches no uncovered line.

function fail(message) {
  print "uncovered.awk: " message > "/dev/stderr"
  failed = 1
  exit 2
}

BEGIN {
  FS = "|"
  sort = "sort --field-separator=: --key=1,1 --key=2n"
  while ((status = (getline entry < list)) > 0) {
    ++number
    if (entry ~ /^(#|$)/) continue
    if (split(entry, part, / \| /) != 3) fail(list ":" number ": not FILE | FRAGMENT | REASON")
    entry_file[number] = part[1]
    entry_text[number] = part[2]
  }
  if (status < 0) fail("the list cannot be read: " list)
}

# A line such as "/project/src/file.cpp:" begins a file.
/^[^ ].*:$/ { file = $0 }

$1 ~ /^ *[0-9]+$/ {
  place = file $1 + 0
  text[place] = substr($0, length($1 $2) + 3)
  file_of[place] = file
  if ($2 ~ /^ *0$/) missed[place]
}

$2 ~ /Branch .*True/ {  # once for each instance of a template
  split($2, part, /[^0-9A-Za-z.]+/)
  branch = file part[3] ":" part[4]
  line[branch] = file part[3]
  if (part[6] != 0) taken[branch]
  if (part[8] != 0) passed[branch]
}

# The number of the entry that accepts the uncovered line; 0 if there is none.
function entry_for(place,   number) {
  for (number in entry_file)
    if (index("/" file_of[place], "/" entry_file[number] ":") && index(text[place], entry_text[number])) return number
  return 0
}

END {
  if (failed) exit 2
  if (NR == 0) fail("there is no input")
  for (branch in line) if (!(branch in taken) || !(branch in passed)) missed[line[branch]]
  for (place in missed) {
    number = entry_for(place)
    if (number) { ++explained; used[number] }
    else { ++uncovered; print place ": " text[place] | sort }
  }
  close(sort)
  for (number in entry_file)
    if (!(number in used)) { ++stale; print list ":" number ": matches no uncovered line" }
  print uncovered + 0 " uncovered lines, " explained + 0 " more that are listed, " stale + 0 " entries without a line"
  exit uncovered + stale > 0
}

# Reads what `llvm-cov show --show-branches=count` prints, and prints each line of it that has not run, or has a branch
# that has not: awk -f uncovered.awk. Lines that need not run say why, after "not covered:". Exit status 1 if any is left.

BEGIN { FS = "|"; sort = "sort --field-separator=: --key=1,1 --key=2n" }

/^[^ ].*:$/ { file = $0 }

$1 ~ /^ *[0-9]+$/ {
  place = file $1 + 0
  text[place] = substr($0, length($1 $2) + 3)
  if ($2 ~ /^ *0$/) missed[place]
}

$2 ~ /Branch .*True/ {  # once for each instance of a template
  split($2, part, /[^0-9A-Za-z.]+/)
  branch = file part[3] ":" part[4]
  line[branch] = file part[3]
  if (part[6] != 0) taken[branch]
  if (part[8] != 0) passed[branch]
}

END {
  if (NR == 0) { print "uncovered.awk: there is nothing to read" > "/dev/stderr"; exit 2 }
  for (branch in line) if (!(branch in taken) || !(branch in passed)) missed[line[branch]]
  for (place in missed)
    if (text[place] ~ /not covered:/) ++explained
    else { ++left; print place ": " text[place] | sort }
  close(sort)
  print left + 0 " lines are left, and " explained + 0 " that need not run"
  exit left > 0
}

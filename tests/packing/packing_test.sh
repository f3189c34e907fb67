#!/usr/bin/env bash
# shellcheck disable=SC2086  # lists of arguments are to be split
# Runs one test case of pack, unpack and list, and compares with bsdtar, GNU tar, iconv and diff:
# packing_test.sh PROGRAMS CASE, where PROGRAMS is the folder of the three.
set -uo pipefail
programs=$(realpath "$1") case=$2
here=$(realpath "$(dirname "$0")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/here" && cd "$work/here" || exit 1
unset LC_CTYPE LANG LANGUAGE SOURCE_DATE_EPOCH
export LC_ALL=C.UTF-8  # otherwise bsdtar warns about names that it cannot convert
umask 022
failures=0

pack() { "$programs/pack" "$@"; }
unpack() { "$programs/unpack" "$@"; }
list() { "$programs/list" "$@"; }

wrong() {
  echo "FAILED: $1"
  failures=$((failures + 1))
}

# same A B: whether two directories have the same content, with links as links. B may also have the description.
same() { diff -r --no-dereference --exclude=.qar-description.json "$1" "$2" >../differences 2>&1 || wrong "$1 and $2: $(head -c 2000 ../differences)"; }

# refused STATUS ERRORS COMMAND...: checks that the command ends with the status, that its errors match the pattern
# ERRORS, and that it leaves nothing behind.
refused() {
  local status=0 wanted=$1 errors=$2 before
  shift 2
  before=$(find . -printf '%p %s %l\n' | sort)
  "$@" >../out 2>../err || status=$?
  [ $status = "$wanted" ] || wrong "$*: exit status $status instead of $wanted: $(cat -v ../out ../err)"
  # shellcheck disable=SC2053
  [[ $(<../err) == $errors ]] || wrong "$*: errors: $(cat -v ../err)"
  [ "$(find . -printf '%p %s %l\n' | sort)" = "$before" ] || wrong "$*: left $(find . | sort | head)"
  rm -f ../out ../err
}

# A small tree of everything that can be packed, with names that are not text and names with special characters.
make_tree() {
  local name
  mkdir -p tree/{empty,deep/er/and/deeper,.hidden} && cd tree || exit 1
  echo 'Plain.' >README
  : >empty.txt
  seq 200000 >numbers
  for name in $'new\nline' $'\e[2J' 'back\slash' ' blank ' -rf '*' 日本語 $'\xff\xfe' $'Gr\xfc\xdfe' $'\xed\xa0\x80' \
    "$(printf 'x%.0s' {1..255})"; do
    echo "$name" >"./$name"
    ln -s -- "./$name" "./$(head -c 200 <<<"${name//[$'\n']/}") link"
  done
  mkdir -p "$(printf 'long%.0s' {1..50})/$(printf 'path%.0s' {1..50})"
  echo 'far away' >"$(printf 'long%.0s' {1..50})/$(printf 'path%.0s' {1..50})/$(printf 'file%.0s' {1..50})"
  echo '#!/bin/sh' >program && chmod 751 program
  echo 'only mine' >private && chmod 600 private
  ln -s nowhere dangling
  ln -s ../README .hidden/up
  ln -s . deep/er/loop
  cd ..
}

case_kinds() {
  make_tree
  for archive in a.tar a.tar.gz a.tar.zst; do
    mkdir bsdtar gnu
    pack tree $archive || wrong "pack $archive"
    [ "$(bsdtar -tf $archive | wc -l)" = $(($(find tree -mindepth 1 -printf x | wc -c) + 1)) ] || wrong "bsdtar -t $archive"
    bsdtar -xf $archive -C bsdtar || wrong "bsdtar -x $archive"
    tar -xf $archive -C gnu --warning=no-unknown-keyword || wrong "tar -x $archive"
    unpack $archive unpacked || wrong "unpack $archive"
    for extracted in bsdtar gnu unpacked; do
      same tree $extracted
      [ "$(cd $extracted && find . -type f -executable)" = ./program ] || wrong "$extracted: programs"
    done
    rm -rf bsdtar gnu unpacked
  done
  [ -z "$(find . -maxdepth 1 -name '.*pack*')" ] || wrong 'temporary files are left'
}
# Large trees from other sources.
case_system_trees() {
  local tree program
  while read -r tree program; do
    [ -n "$(ls $tree)" ] || continue
    mkdir extracted
    pack $tree a.tar 2>remarks || wrong "pack $tree"
    grep -v 'the link may lead out' remarks && wrong "$tree: remarks"
    $program -xf a.tar -C extracted || wrong "$program -x $tree"
    same $tree extracted
    rm -r extracted
  done <<<'/usr/share/doc bsdtar
/usr/include tar'
}

# Archives of other programs, including hard links and holes.
case_foreign_archives() {
  make_tree
  ln tree/README tree/deep/another
  truncate -s 3M tree/holes && echo end >>tree/holes
  local archive
  for format in v7 oldgnu gnu ustar pax; do
    for names in . 'README deep .hidden'; do
      tar -c -f "$format.tar" --format=$format -C tree $names 2>/dev/null || [ $format = v7 ] || [ $format = ustar ] || wrong "tar $format"
      # v7 and ustar leave out entries that do not fit; GNU tar lists what the archive has.
      mkdir expected && tar -xf $format.tar -C expected
      unpack $format.tar out || wrong "unpack $format of tar, $names"
      same expected out
      rm -r out expected
    done
  done
  tar -cSf sparse.tar -C tree . && unpack sparse.tar out && same tree out && rm -r out
  tar -czf gnu.tar.gz -C tree . && unpack gnu.tar.gz out && same tree out && rm -r out
  for options in '--format=pax' '--format=gnutar' '--format=pax --options=hdrcharset=BINARY' '--zstd --format=gnutar'; do
    bsdtar -c -f b.tar $options -C tree . 2>/dev/null || wrong "bsdtar $options"
    unpack b.tar out || wrong "unpack $options of bsdtar"
    same tree out
    rm -rf out
  done
  list b.tar >listing || wrong 'list'
  grep -q '^file .* -     -            README$' listing || wrong "list: $(head listing)"
}

case_code_pages() {
  mkdir tree
  printf '\xb1\xd7\xf7\xb0\xa7\xb6 \xb4\n' >tree/signs.txt          # ISO-8859-1; Shift_JIS has them all
  printf 'Gr\xfc\xdfe aus K\xf6ln\n' >tree/latin1.txt
  cp tree/latin1.txt tree/latin1.bin
  : >tree/empty.txt
  iconv -f ISO-8859-1 -t UTF-8 tree/signs.txt >signs.utf8
  pack --locale de_DE.ISO-8859-1 --lcp-to-utf8 txt,md tree a.tar.gz || wrong 'pack'
  mkdir bsdtar && bsdtar -xf a.tar.gz -C bsdtar
  for name in signs latin1; do
    iconv -f ISO-8859-1 -t UTF-8 tree/$name.txt | cmp - bsdtar/$name.txt || wrong "$name.txt in the archive"
  done
  cmp tree/latin1.bin bsdtar/latin1.bin || wrong 'latin1.bin in the archive'
  [ -f bsdtar/empty.txt ] && [ ! -s bsdtar/empty.txt ] || wrong 'empty.txt'

  unpack a.tar.gz utf8 || wrong 'unpack as it is'
  same bsdtar utf8
  unpack a.tar.gz --locale de_DE.ISO-8859-1 --utf8-to-lcp .txt back || wrong 'unpack under the same'
  same tree back
  unpack a.tar.gz --locale ja_JP.SJIS --utf8-to-lcp txt sjis 2>remarks || wrong 'unpack under Shift_JIS'
  iconv -f UTF-8 -t SHIFT_JIS signs.utf8 | cmp - sjis/signs.txt || wrong 'signs.txt in Shift_JIS'
  lost='utf8-to-lcp: 0 malformed, 3 not in the code page, first at byte 2'
  [ "$(<remarks)" = "unpack: latin1.txt: $lost" ] || wrong "remarks: $(<remarks)"
  refused 1 "unpack: latin1.txt: cannot be converted ($lost)" unpack a.tar.gz no --locale ja_JP.SJIS --utf8-to-lcp txt --strict

  # Conversion between named encodings, regardless of the locale.
  pack tree t.tar --transcode ISO-8859-1:CP850:txt --transcode ISO-8859-1:UTF-16LE:bin || wrong 'pack --transcode'
  unpack t.tar coded && iconv -f ISO-8859-1 -t CP850 tree/latin1.txt | cmp - coded/latin1.txt || wrong 'CP850'
  iconv -f ISO-8859-1 -t UTF-16LE tree/latin1.bin | cmp - coded/latin1.bin || wrong 'UTF-16LE'
  unpack t.tar decoded --strict --transcode CP850:ISO-8859-1:txt --transcode UTF-16LE:ISO-8859-1:bin || wrong 'decode'
  same tree decoded
  refused 1 'pack: latin1.txt: cannot be converted (UTF-8 to KOI8-R: 3 malformed, 0 not in the code page, first at byte 2)' \
    pack tree u.tar --strict --transcode UTF-8:KOI8-R:txt
  for option in UTF-8:KOI8-R :UTF-8:txt UTF-8::txt UTF-8:no-such-page:txt UTF-8:KOI8-R:a,,b; do
    refused 2 'pack: *' pack tree u.tar --transcode $option
  done

  printf '\x93\xfa\x96\x7b\x8c\xea\n' >tree/latin1.txt
  env LC_ALL=ja_JP.SJIS "$programs/pack" --lcp-to-utf8 txt --demo tree j.tar || wrong 'pack under Shift_JIS'
  env LC_ALL=ja_JP.EUC-JP "$programs/unpack" --utf8-to-lcp txt j.tar euc || wrong 'unpack under EUC-JP'
  iconv -f SHIFT_JIS -t EUC-JP tree/latin1.txt | cmp - euc/latin1.txt || wrong 'latin1.txt in EUC-JP'
}

case_catalogue() {
  mkdir -p tree/lib
  echo x >tree/lib/a.jar && printf '\xe9\n' >tree/b.txt && ln -s lib/a.jar tree/c
  pack tree a.tar --demo --macro NAME=VALUE --macro HOME=a=b --locale C.ISO-8859-1 --lcp-to-utf8 txt || wrong 'pack'
  list a.tar >listing || wrong 'list'
  diff - listing <<'END' || wrong 'listing'
KIND            BYTES  DEMO  USER DATA    NAME
file                3  demo  lcp-to-utf8  b.txt
link                -  demo  -            c -> lib/a.jar
directory           -  -     -            lib/
file                2  demo  -            lib/a.jar
version     1.0.0.0
macro       HOME=a=b
macro       NAME=VALUE
tarvo path  lib
class path  lib/a.jar
END
  # The checksums, checked by Python's JSON and CRC-32.
  bsdtar -xOf a.tar .qar-description.json | python3 -c '
import json, sys, zlib
for entry in json.load(sys.stdin)["entries"]:
    content = {"b.txt": b"\xc3\xa9\n", "c": b"lib/a.jar", "lib/a.jar": b"x\n"}[entry["name"]]
    assert entry["size"] == len(content) and entry["crc32"] == zlib.crc32(content), entry' || wrong 'checksums'
}

case_same_bytes() {
  make_tree
  cp -r tree elsewhere && touch elsewhere/README && chmod 640 elsewhere/README
  chown -R 1:1 elsewhere 2>/dev/null
  export SOURCE_DATE_EPOCH=1700000000
  for archive in a.tar a.tar.gz a.tar.zst; do
    env LC_ALL=de_DE.ISO-8859-1 "$programs/pack" tree $archive --lcp-to-utf8 txt
    (cd elsewhere && env LC_ALL=fr_FR.ISO8859-1 "$programs/pack" ../elsewhere/ ../b${archive#a} --lcp-to-utf8 txt)
    cmp $archive b${archive#a} || wrong "$archive differs"
  done
  python3 - a.tar <<'END' || wrong 'owner or time'
import sys, tarfile
for entry in tarfile.open(sys.argv[1]):
    assert (entry.uid, entry.gid, entry.uname, entry.gname, entry.mtime) == (0, 0, "", "", 1700000000), entry
    assert entry.issym() or entry.mode == (0o755 if entry.isdir() or entry.name == "program" else 0o644), entry
END
  SOURCE_DATE_EPOCH=soon refused 2 'pack: SOURCE_DATE_EPOCH is *' pack tree c.tar
}

# Each archive that "hostile.py" makes is refused with the text in its name, and nothing is left behind.
case_hostile_archives() {
  mkdir inside
  python3 "$here/hostile.py" . >table || wrong 'hostile.py'
  cd inside || exit 1
  while IFS=$'\t' read -r archive text; do
    refused 1 "unpack: *$text*" unpack "../$archive" out
  done <../table
  [ "$(wc -l <../table)" -gt 20 ] || wrong 'too few'
  [ ! -e ../evil ] || wrong 'written outside'
  # The limits can be changed.
  unpack --max-ratio 1000000 ../bomb.tar.zst out || wrong 'a bomb that is wanted'
  [ "$(stat -c %s out/zeros)" = 100000000 ] || wrong 'its size'
  refused 1 'unpack: ../bomb.tar.zst: is larger than allowed' unpack --max-ratio 1000000 --max-size 99999999 ../bomb.tar.zst b
}

case_damage() {
  mkdir tree tree/d inside && cd inside || exit 1
  seq 300 >../tree/a && seq 9 >../tree/d/b && ln -s a ../tree/c && cp ../tree/a "../tree/$(printf 'x%.0s' {1..120})"
  for archive in a.tar a.tar.gz a.tar.zst; do
    pack ../tree ../$archive && python3 "$here/damage.py" "$programs/unpack" ../$archive ../tree || wrong $archive
    rm -rf ./*
  done
}

case_faults() {
  make_tree && mkdir inside && cd inside || exit 1
  pack ../tree ../a.tar
  (trap '' XFSZ && ulimit -f 100 && refused 1 'pack: b.tar: File too large' pack ../tree b.tar; exit $failures) || wrong 'pack'
  (trap '' XFSZ && ulimit -f 100 && refused 1 'unpack: numbers: File too large' unpack ../a.tar out; exit $failures) || wrong 'unpack'
  mkdir fifo file full && mkfifo fifo/fifo && echo x >file/.qar-description.json && : >full/x
  refused 1 'pack: "fifo/fifo" is neither a regular file nor a symbolic link.' pack fifo b.tar
  refused 1 'pack: .qar-description.json: the archive needs this name *' pack file b.tar
  refused 1 'pack: nothing: No such file or directory' pack nothing b.tar
  refused 1 'pack: full/x: Not a directory' pack full/x b.tar
  refused 1 'pack: nowhere/b.tar: No such file or directory' pack full nowhere/b.tar
  refused 1 'pack: the archive is in the directory to be packed' pack . b.tar
  refused 1 'unpack: full: Directory not empty' unpack ../a.tar full
  refused 1 'unpack: full/x: Not a directory' unpack ../a.tar full/x
  refused 1 'unpack: ../none.tar: *' unpack ../none.tar out
  chmod 000 full/x
  [ -r full/x ] || refused 1 'pack: *"full/x" cannot be opened*' pack full b.tar
  echo old >b.tar
  refused 1 'pack: *fifo*' pack fifo b.tar
  mkdir empty && unpack ../a.tar empty/ && same ../tree empty
}

# A signal leaves nothing behind.
case_interrupted() {
  mkdir tree inside && cd inside || exit 1
  truncate -s 1T ../tree/endless
  "$programs/pack" ../tree b.tar.zst &
  until [ -n "$(ls -A)" ]; do sleep 0.05; done
  kill -TERM $! && wait $!
  [ $? = 143 ] || wrong 'exit status of pack'
  [ -z "$(ls -A)" ] || wrong "pack left $(ls -A)"
  echo x >../tree/a && rm ../tree/endless && pack ../tree ../a.tar && mkfifo ../fifo
  "$programs/unpack" ../fifo out &
  { head -c 600 ../a.tar; sleep 0.3; kill -INT $!; kill -TERM $!; tail -c +601 ../a.tar; } >../fifo
  wait $!
  [ $? = 143 ] || wrong 'exit status of unpack'
  [ -z "$(ls -A)" ] || wrong "unpack left $(ls -A)"
}

# Far more content than the memory that may be used.
case_memory() {
  mkdir tree && truncate -s 2G tree/large
  python3 - "$programs" <<'END' || wrong 'memory'
import resource, subprocess, sys
for command in (["pack", "tree", "a.tar.zst"], ["list", "--max-ratio", "1000000", "a.tar.zst"]):
    subprocess.run([sys.argv[1] + "/" + command[0], *command[1:]], check=True, stdout=subprocess.DEVNULL)
    most = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss
    print(command[0], most, "KiB")
    assert most < 64 * 1024
END
}

case_command_line() {
  mkdir tree inside && cd inside && pack ../tree ../a.tar || exit 1
  local arguments
  for arguments in '' ../tree '../tree a.zip' '../tree a.tar extra' '../tree a.tar --bad' '../tree a.tar --lcp-to-utf8' \
    '../tree a.tar --lcp-to-utf8 a,,b' '../tree a.tar --macro NAME' '../tree a.tar --macro =x' \
    '../tree a.tar --utf8-to-lcp txt' '../tree a.tar --locale de_DE.nonsense'; do
    refused 2 '*' pack $arguments
  done
  for arguments in '' ../a.tar '../a.tar out --max-ratio 0' '../a.tar out --max-size x' '../a.tar out --lcp-to-utf8 a'; do
    refused 2 '*' unpack $arguments
  done
  refused 2 '*' list
  for program in pack unpack list; do
    "$programs/$program" --help | grep -q "^Usage: $program " || wrong "$program --help"
  done
  (list ../a.tar >/dev/full) 2>../err && wrong 'full output'
  [ "$(<../err)" = 'list: standard output: No space left on device' ] || wrong "$(<../err)"
  unpack ../a.tar empty && [ -z "$(ls -A empty)" ] || wrong 'an empty tree'
}

"case_$case" || wrong 'the last command'
[ $failures = 0 ] && echo 'all passed'

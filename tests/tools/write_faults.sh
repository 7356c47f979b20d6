#!/bin/bash
# Every kxbase command that writes a file must write it whole or not at all, and say why it
# could not. Each case runs one command against a fault and checks the exit status, the
# message, that an existing target kept its contents, and that no file (neither the target
# nor a temporary one) was left behind.
#
#   write_faults.sh KXBASE WORKDIR
#
# Faults: RLIMIT_FSIZE (ulimit -f in the child) and a target folder that cannot be written.
# The tests run as root, which writes into any mode-000 folder; a "folder" that is a regular
# file (ENOTDIR) fails for root too, so that stands for the unwritable folder.
set -u
KX=$1
W=$2
rm -rf "$W" && mkdir -p "$W" && cd "$W" || exit 1
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

head -c 400000 /dev/urandom >in.bin
"$KX" compress --codec lzw -q in.bin good.kxz || { echo "setup: compress failed"; exit 1; }
head -c 200 good.kxz >cut.kxz
: >empty.kxz
touch notafolder
AREA="--area kxbase-wf-$$ --area-size 60K --slots 2 --band-rows 2"
HAVE_PRINT=0
"$KX" print --help >/dev/null 2>&1 && HAVE_PRINT=1

# name | file-size limit in 512-byte blocks ("-" none) | expected status | message part |
# target | command (TARGET stands for the target)
cases=(
  "compress fsize|64|1|file size limit|t.kxz|compress --codec lzw -q in.bin TARGET"
  "decompress fsize|64|1|file size limit|t.bin|decompress -q good.kxz TARGET"
  "ellipse fsize|1|1|file size limit|t.png|ellipse --rect 0,0,3000,3000 --png TARGET"
  "compress no folder|-|1|Not a directory|notafolder/t.kxz|compress --codec lzw -q in.bin TARGET"
  "decompress no folder|-|1|Not a directory|notafolder/t.bin|decompress -q good.kxz TARGET"
  "ellipse no folder|-|1|Not a directory|notafolder/t.png|ellipse --rect 0,0,30,30 --png TARGET"
  "decompress truncated|-|2|cut short|t.bin|decompress -q cut.kxz TARGET"
  "decompress empty|-|2|not a kxbase compressed file|t.bin|decompress -q empty.kxz TARGET"
  "decompress missing|-|2|cannot read|t.bin|decompress -q missing.kxz TARGET"
  "compress unreadable|-|2|cannot|t.kxz|compress --codec lzw -q . TARGET"
)
if [ $HAVE_PRINT = 1 ]; then
  cases+=(
    # The shared area (64 KB of header and 60 KB of data) must fit under the limit itself.
    "print png fsize|256|1|file size limit|t.png|print -s 100x100 -r 1200 -d 24 $AREA --png TARGET"
    "print tiff fsize|256|1|file size limit|t.tif|print -s 60x60 -r 600 -d 24 $AREA --png p.png --tiff TARGET"
    "print no folder|-|1|Not a directory|notafolder/t.png|print -s 20x20 -r 300 $AREA --png TARGET"
  )
fi

for c in "${cases[@]}"; do
  IFS='|' read -r name limit want text target cmd <<<"$c"
  [ -e "$(dirname "$target")" ] && [ -d "$(dirname "$target")" ] && echo "old contents" >"$target"
  before=$(ls -A | sort)
  args=${cmd//TARGET/$target}
  if [ "$limit" = "-" ]; then
    out=$("$KX" $args 2>&1 >/dev/null)
  else
    out=$(ulimit -f "$limit"; "$KX" $args 2>&1 >/dev/null)
  fi
  status=$?
  [ $status = "$want" ] || fail "$name: exit $status, wanted $want ($out)"
  grep -q -a -- "$text" <<<"$out" || fail "$name: message \"$out\" lacks \"$text\""
  after=$(ls -A | sort)
  [ "$before" = "$after" ] || fail "$name: left files behind: $(comm -13 <(echo "$before") <(echo "$after") | tr '\n' ' ')"
  if [ -d "$(dirname "$target")" ]; then
    [ "$(cat "$target")" = "old contents" ] || fail "$name: the existing target was changed"
    rm -f "$target"
  fi
done

# The same commands without a fault replace the target whole.
echo "old contents" >t.bin
"$KX" decompress -q good.kxz t.bin && cmp -s in.bin t.bin || fail "decompress over an existing file"
[ "$(ls -A | grep -c '^\.')" = 0 ] || fail "a temporary file remained after success"

[ $failures = 0 ] && echo "all ${#cases[@]} write-fault cases passed"
exit $((failures > 0))

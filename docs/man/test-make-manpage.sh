#!/bin/sh
# Checks make-manpage.sh against a stand-in program whose help holds the cases that break a
# naive conversion: an option column long enough to push its description to a single space or onto
# the next row, text starting with a dot, backslashes, a nested subcommand, the program's
# own path in its usage lines, and include sections. Exits non-zero listing what is wrong.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cat >"$work/fake" <<'EOF'
#!/bin/sh
case "$*" in
--version) echo "fake 2.5.1" ;;
--help) cat <<'HELP'
fake 2.5.1 - a stand-in program
Usage: PROG [OPTIONS] SUBCOMMAND

Options:
  -h,--help                   Print this help message and exit

Subcommands:
  alpha                       First command
  beta                        Second command
HELP
;;
"alpha --help") cat <<'HELP'
First command
Usage: PROG alpha [OPTIONS] IN

Positionals:
  IN TEXT REQUIRED            File to read

Options:
  --scale INT:INT in [1 - 16] Draw each pixel as an N x N block
  -r,--resolution FLOAT REQUIRED
                              output resolution in dpi
  --path TEXT                 a folder such as C:\data

.5 is read as one half.
HELP
;;
"beta --help") cat <<'HELP'
Second command
Usage: PROG beta [OPTIONS] SUBCOMMAND

Subcommands:
  gamma                       Third command, below beta
HELP
;;
"beta gamma --help") printf 'Third command, below beta\nUsage: PROG beta gamma\n' ;;
*) exit 2 ;;
esac
EOF
# The usage lines name the program by the path it was started with, as CLI11 does.
sed -i "s|PROG|$work/fake|" "$work/fake"
chmod +x "$work/fake"

cat >"$work/fake.h2m" <<'EOF'
[DESCRIPTION]
Hand-written description.

[EXIT STATUS]
Zero on success.
[SEE ALSO]
Nothing else.
EOF

sh "$here/make-manpage.sh" "$work/fake" fake "$work/fake.h2m" "May 2030" "$work/fake.1"
page="$work/fake.1"
failed=0

# Lines the page must hold, exactly.
while IFS= read -r line; do
    grep -Fxq -- "$line" "$page" || { echo "missing: $line"; failed=1; }
done <<'EOF'
.TH FAKE 1 "May 2030" "fake 2.5.1" "User Commands"
fake \- a stand-in program
Hand-written description.
Usage: \fBfake [OPTIONS] SUBCOMMAND\fR
.SS "fake alpha"
Usage: \fBfake alpha [OPTIONS] IN\fR
\fBIN TEXT REQUIRED\fR
\fB\-\-scale INT:INT in [1 \- 16]\fR
Draw each pixel as an N x N block
\fB\-r,\-\-resolution FLOAT REQUIRED\fR
output resolution in dpi
a folder such as C:\edata
\&.5 is read as one half.
.SS "fake beta"
.SS "fake beta gamma"
.SH EXIT STATUS
Zero on success.
.SH SEE ALSO
EOF

# Things the page must not hold: the build path, a second copy of the summary line, empty
# lines (man warns about them); and one DESCRIPTION only (the include file opens it).
for bad in "$work" "fake 2.5.1 - a stand-in program" "^$"; do
    if grep -q -- "$bad" "$page"; then echo "unexpected: $bad"; failed=1; fi
done
[ "$(grep -c '^\.SH DESCRIPTION$' "$page")" -eq 1 ] || { echo "DESCRIPTION twice"; failed=1; }
# Nor a tag without text or a continuation row taken for a new option.
while IFS= read -r line; do
    if grep -Fxq -- "$line" "$page"; then echo "unexpected line: $line"; failed=1; fi
done <<'EOF'
\fB\fR
\fBoutput resolution in dpi\fR
EOF

# The sections come in man page order, nested commands after their parent.
order=$(grep -E '^\.(SH|SS) ' "$page" | tr '\n' '|')
expected='.SH NAME|.SH SYNOPSIS|.SH DESCRIPTION|.SH COMMANDS|.SS "fake alpha"|.SS "fake beta"|.SS "fake beta gamma"|.SH EXIT STATUS|.SH SEE ALSO|'
[ "$order" = "$expected" ] || { echo "section order: $order"; failed=1; }

if [ $failed -ne 0 ]; then
    echo "--- generated page:"
    cat "$page"
fi

# A Qt program (QCommandLineParser): no subcommands, the summary is the line after the usage.
cat >"$work/qtfake" <<'EOF'
#!/bin/sh
case "$*" in
--version) echo "qtfake 3.0.0" ;;
--help) printf 'Usage: qtfake [options]\nA graphical stand-in\n\nOptions:\n  -h, --help  Displays help on commandline options.\n' ;;
*) exit 2 ;;
esac
EOF
chmod +x "$work/qtfake"
sh "$here/make-manpage.sh" "$work/qtfake" qtfake "$work/none.h2m" "May 2030" "$work/qtfake.1"
grep -Fxq 'qtfake \- A graphical stand-in' "$work/qtfake.1" || { echo "qt: summary missing"; failed=1; }
grep -Fxq '[\fIOPTIONS\fR]' "$work/qtfake.1" || { echo "qt: synopsis with subcommands"; failed=1; }
if grep -q '^\.SH COMMANDS' "$work/qtfake.1"; then echo "qt: COMMANDS without subcommands"; failed=1; fi

# A program without --version takes the version given on the command line; without one the
# page is refused rather than written with an empty version.
sed 's/^--version) echo "qtfake 3.0.0" ;;$//' "$work/qtfake" >"$work/qtnover"
chmod +x "$work/qtnover"
sh "$here/make-manpage.sh" "$work/qtnover" qtnover "$work/none.h2m" "May 2030" "$work/qtnover.1" 4.1.0
grep -Fxq '.TH QTNOVER 1 "May 2030" "qtnover 4.1.0" "User Commands"' "$work/qtnover.1" ||
    { echo "qt: fallback version not used"; failed=1; }
if sh "$here/make-manpage.sh" "$work/qtnover" qtnover "$work/none.h2m" "May 2030" "$work/qtnover.1" 2>/dev/null; then
    echo "a page without version was accepted"; failed=1
fi

# Without any summary the page is refused instead of being written with an empty NAME.
printf '#!/bin/sh\necho "Options:"\n' >"$work/mute"
chmod +x "$work/mute"
if sh "$here/make-manpage.sh" "$work/mute" mute "$work/none.h2m" "May 2030" "$work/mute.1" 2>/dev/null; then
    echo "a page without summary was accepted"; failed=1
fi
exit $failed

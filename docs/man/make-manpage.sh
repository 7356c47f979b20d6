#!/bin/sh
# Writes the man page of a program from its own --help output, so the page lists exactly the
# subcommands and options the program has (a new subcommand appears without editing a page).
#
#   make-manpage.sh PROGRAM NAME INCLUDE DATE OUTPUT [VERSION]
#
# The page header carries the version the program prints for --version; VERSION stands in for
# a program that has no such option (Qt's parser refuses options it was not given).
#
# INCLUDE adds hand-written sections in help2man's include format: a line "[SECTION]" starts
# a section, the roff text below it is its body. [NAME] replaces the one-line summary taken
# from the help's first line, [DESCRIPTION] opens the DESCRIPTION section; every other
# section (EXIT STATUS, EXAMPLES, SEE ALSO, ...) follows the generated ones in file order.
# The subcommands are those listed under "Subcommands:" in the help; each one's own --help
# becomes a subsection of COMMANDS. Only POSIX sh and awk are needed.
set -eu
prog=$1 name=$2 include=$3 date=$4 out=$5 fallback_version=${6:-}

# A Qt program must be able to answer --help on a machine without a display.
QT_QPA_PLATFORM=offscreen
export QT_QPA_PLATFORM

# Help text to roff: "Usage:" lines and section headers ("Options:") become bold paragraphs,
# indented "option  description" rows become tagged paragraphs, deeper-indented rows continue
# the previous description, anything else is running text.
to_roff() {
    awk '
    function esc(s) { gsub(/\\/, "\\e", s); return s }
    function opt(s) { s = esc(s); gsub(/-/, "\\-", s); return s }
    function text(s) { if (s ~ /^[.\047]/) s = "\\&" s; print s }
    function trim(s) { sub(/^ +/, "", s); sub(/ +$/, "", s); return s }
    { line[++n] = $0 }
    END {
        # The column where descriptions start: where the first "option  description" row has
        # its description. A longer option column pushes its description to that column after a
        # single space, or onto the next row.
        col = 0
        for (k = 1; k <= n && !col; ++k)
            if (match(line[k], /^  +[^ ]+([^ ]| [^ ])*  +[^ ]/)) col = RLENGTH
        state = "para"; gap = 0
        for (k = 1; k <= n; ++k) {
            l = line[k]
            if (l ~ /^[ \t]*$/) { gap = 1; continue }
            if (l ~ /^Usage: /) {
                sub(/^Usage: +/, "", l)
                print ".PP"; print "Usage: \\fB" opt(l) "\\fR"; state = "para"; gap = 0; continue
            }
            if (l ~ /^[A-Z][A-Za-z ]*:$/) {
                print ".PP"; print "\\fB" esc(l) "\\fR"; state = "list"; gap = 0; continue
            }
            if (l ~ /^ /) {
                match(l, /^ +/); indent = RLENGTH
                if (indent >= 16 && state == "item") { text(esc(trim(l))); continue }
                item = l; desc = ""
                i = index(substr(l, indent + 1), "  ")
                if (i > 0) { item = substr(l, 1, indent + i - 1); desc = substr(l, indent + i) }
                else if (col > 1 && length(l) >= col && substr(l, col - 1, 1) == " ") {
                    item = substr(l, 1, col - 1); desc = substr(l, col)
                }
                print ".TP"; print "\\fB" opt(trim(item)) "\\fR"
                if (trim(desc) != "") text(esc(trim(desc)))
                state = "item"; gap = 0; continue
            }
            if (gap || state != "para") print ".PP"
            text(esc(l)); state = "para"; gap = 0
        }
    }'
}

# Body of one [SECTION] of the include file (empty when absent).
section() {
    [ -f "$include" ] || return 0
    awk -v want="[$1]" '/^\[.*\]$/ { on = ($0 == want); next } on && NF' "$include"
}

# The program's help, with the path it was started by replaced by its name.
run_help() {
    "$prog" "$@" --help | awk -v p="$prog" -v n="$name" '
        { while ((i = index($0, p)) > 0) $0 = substr($0, 1, i - 1) n substr($0, i + length(p)); print }'
}

# The subcommand names a help text lists under "Subcommands:".
list_subcommands() {
    awk '/^[A-Za-z ]*:$/ { on = ($0 ~ /^(Subcommands|SUBCOMMANDS):$/); next } on && /^  [^ ]/ { print $1 }'
}

# One subsection per subcommand, nested ones (kxbase shm serve) after their parent.
emit_command() {
    printf '.SS "%s %s"\n' "$name" "$*"
    text=$(run_help "$@")
    printf '%s\n' "$text" | to_roff
    for child in $(printf '%s\n' "$text" | list_subcommands); do
        emit_command "$@" "$child"
    done
}

help=$(run_help)
version=$("$prog" --version 2>/dev/null | head -n 1 | awk '{ print $NF }') || version=
[ -n "$version" ] || version=$fallback_version
if [ -z "$version" ]; then
    echo "make-manpage.sh: $name prints no version and none was given" >&2
    exit 1
fi
first=$(printf '%s\n' "$help" | head -n 1)
summary=$(section NAME)
if [ -z "$summary" ]; then
    # CLI11: "kxbase 1.0.0 - tools over ..." gives "tools over ...".
    summary=$(printf '%s\n' "$first" | sed -n 's/^[^ ]* [^ ]* - //p')
fi
if [ -z "$summary" ]; then
    # Qt's QCommandLineParser: the application description follows the usage line.
    summary=$(printf '%s\n' "$help" | awk 'prev ~ /^Usage: / && NF && !/:$/ { print; exit } { prev = $0 }')
fi
if [ -z "$summary" ]; then
    echo "make-manpage.sh: no one-line summary in the help of $name; add [NAME] to $include" >&2
    exit 1
fi
subcommands=$(printf '%s\n' "$help" | list_subcommands)
upper=$(printf '%s' "$name" | tr 'a-z-' 'A-Z_')

{
    printf '.TH %s 1 "%s" "%s %s" "User Commands"\n' "$upper" "$date" "$name" "$version"
    printf '.SH NAME\n%s \\- %s\n' "$name" "$summary"
    printf '.SH SYNOPSIS\n'
    if [ -n "$subcommands" ]; then
        printf '.B %s\n[\\fIOPTIONS\\fR] \\fISUBCOMMAND\\fR [\\fISUBCOMMAND OPTIONS\\fR]\n' "$name"
    else
        printf '.B %s\n[\\fIOPTIONS\\fR]\n' "$name"
    fi
    printf '.SH DESCRIPTION\n'
    section DESCRIPTION
    # The first help line is the summary already shown under NAME.
    printf '%s\n' "$help" | sed '1{/ - /d;}' | to_roff
    if [ -n "$subcommands" ]; then
        printf '.SH COMMANDS\n'
        for sub in $subcommands; do emit_command "$sub"; done
    fi
    # Every other section of the include file, in its order.
    if [ -f "$include" ]; then
        awk '/^\[.*\]$/ { s = substr($0, 2, length($0) - 2); on = (s != "NAME" && s != "DESCRIPTION")
                           if (on) print ".SH " s; next }
             on && NF' "$include"
    fi
} >"$out"

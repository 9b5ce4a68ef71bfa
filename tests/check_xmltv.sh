#!/usr/bin/env bash
# sarn-dump --xmltv against the XMLTV project's own tools (Debian's
# xmltv-util): every input's guide must pass tv_validate_file (with the DTD
# the package installs; a guide without programmes, from a capture without
# EITs, may only draw its "No programme entries found"), and tv_sort must
# read it back with every programme.
#   check_xmltv.sh SARN_DUMP INPUT...
# Exits 77 (skipped) when tv_validate_file is not installed.
set -u
dump=$1
shift
if ! command -v tv_validate_file >/dev/null || ! command -v tv_sort >/dev/null; then
    echo "tv_validate_file or tv_sort not found (Debian: xmltv-util): skipped"
    exit 77
fi
dtd=
for candidate in /usr/share/xmltv/xmltv.dtd /usr/share/sgml/xmltv/dtd/0.5/xmltv.dtd; do
    [ -f "$candidate" ] && dtd=$candidate && break
done
if [ -z "$dtd" ]; then
    echo "xmltv.dtd not found: skipped"
    exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0
for input in "$@"; do
    name=$(basename "$input")
    if ! "$dump" --xmltv "$input" >"$work/guide.xml" 2>"$work/err"; then
        echo "FAIL $name: sarn-dump failed"; cat "$work/err"; failed=1; continue
    fi
    programmes=$(grep -c '<programme ' "$work/guide.xml")
    verdict=$(tv_validate_file --dtd-file "$dtd" "$work/guide.xml" 2>&1)
    if [ "$programmes" = 0 ]; then
        expected=$'No programme entries found.\n1 error found.'
    else
        expected="Validated ok."
    fi
    if [ "$verdict" != "$expected" ]; then
        echo "FAIL $name: tv_validate_file said:"; echo "$verdict"; failed=1; continue
    fi
    if ! tv_sort "$work/guide.xml" >"$work/sorted.xml" 2>"$work/err"; then
        echo "FAIL $name: tv_sort failed"; cat "$work/err"; failed=1; continue
    fi
    sorted=$(grep -c '<programme ' "$work/sorted.xml")
    if [ "$sorted" != "$programmes" ]; then
        echo "FAIL $name: tv_sort read $sorted of $programmes programmes"; failed=1; continue
    fi
    echo "ok   $name: $programmes programmes"
done
exit $failed

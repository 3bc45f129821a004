#!/usr/bin/env bash
# Installs the built program into a temporary prefix and checks it as a
# desktop and a packager would: the files in their places, the desktop entry
# and the AppStream metadata validated, the manual pages rendered and in step
# with --help, the bash completion, the shipped data found from the prefix,
# the program started from there, and the Debian package checked by lintian.
#   check_install.sh BUILD_DIR [CMAKE [CPACK]]
set -uo pipefail
build=$(cd "$1" && pwd)
cmake=${2:-cmake}
cpack=${3:-cpack}
id=org.orvanta.OrvantaContest
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
failures=0
fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}

"$cmake" --install "$build" --prefix "$prefix" >/dev/null || { echo "FAIL: cmake --install" >&2; exit 1; }

# 1. Every file where the desktop and the man and completion readers look.
for f in bin/orvanta-contest bin/orvanta-tool \
    share/applications/$id.desktop share/metainfo/$id.metainfo.xml \
    share/icons/hicolor/scalable/apps/$id.svg \
    share/man/man1/orvanta-contest.1.gz share/man/man1/orvanta-tool.1.gz \
    share/bash-completion/completions/orvanta-tool \
    share/orvanta-contest/Language/English.lng \
    share/doc/orvanta-contest/copyright share/doc/orvanta-contest/changelog.gz; do
    [ -s "$prefix/$f" ] || fail "missing $f"
done
for f in bin/orvanta-contest bin/orvanta-tool; do
    [ -x "$prefix/$f" ] || fail "$f is not executable"
done
for size in 16 22 24 32 48 64 128 256; do
    png=$prefix/share/icons/hicolor/${size}x${size}/apps/$id.png
    file -b "$png" | grep -q "^PNG image data, $size x $size," ||
        fail "icon $size: $(file -b "$png" 2>&1)"
done

# 2. Desktop entry and AppStream metadata.
desktop=$prefix/share/applications/$id.desktop
out=$(desktop-file-validate "$desktop" 2>&1) || fail "desktop-file-validate: $out"
[ -z "$out" ] || fail "desktop-file-validate: $out"
grep -qE '^Categories=(.*;)?HamRadio;' "$desktop" || fail "desktop entry lacks HamRadio"
exec_name=$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$desktop")
[ -x "$prefix/bin/$exec_name" ] || fail "desktop entry starts '$exec_name', not an installed program"
icon=$(sed -n 's/^Icon=//p' "$desktop")
[ "$icon" = "$id" ] || fail "desktop entry icon '$icon'"
metainfo=$prefix/share/metainfo/$id.metainfo.xml
out=$(appstreamcli validate --no-net "$metainfo" 2>&1) || fail "appstreamcli validate: $out"
grep -q "<launchable type=\"desktop-id\">$id.desktop</launchable>" "$metainfo" ||
    fail "metainfo does not launch the desktop entry"
grep -q "<screenshot type=\"default\">" "$metainfo" || fail "metainfo without screenshot"
grep -q "<description>" "$metainfo" || fail "metainfo without description"

# 3. Manual pages render without warnings; orvanta-tool's lists the same
#    commands as its --help.
for page in orvanta-contest orvanta-tool; do
    out=$(MANWIDTH=80 man --warnings -l "$prefix/share/man/man1/$page.1.gz" 2>&1 >/dev/null)
    [ -z "$out" ] || fail "man $page: $out"
done
tool=$prefix/bin/orvanta-tool
help_commands=$("$tool" --help | awk '/^Commands:/{on=1; next} /^$/{on=0} on && /^  [^ ]/{print $1}')
man_commands=$(zcat "$prefix/share/man/man1/orvanta-tool.1.gz" |
    awk '/^\.SH COMMANDS/{on=1; next} /^\.SH/{on=0} on && tp {print; tp=0} on && /^\.TP/{tp=1}' |
    sed -n 's/^\\fB\([^\\]*\(\\-[^\\]*\)*\)\\fR.*/\1/p' | sed 's/\\-/-/g')
[ -n "$help_commands" ] || fail "--help lists no commands"
[ "$help_commands" = "$man_commands" ] ||
    fail "--help and the manual page differ: $(diff <(echo "$help_commands") <(echo "$man_commands") | tr '\n' ' ')"
for status in 0 1 2 3; do
    zcat "$prefix/share/man/man1/orvanta-tool.1.gz" | grep -qx ".B $status" ||
        fail "manual page lacks exit status $status"
done

# 4. Bash completion: commands first, then the options of the command.
complete_words() { # prints the completions bash offers for the words given
    bash -c '
        source /usr/share/bash-completion/bash_completion
        source "$1"; shift
        COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
        COMP_LINE="$*"; COMP_POINT=${#COMP_LINE}
        _orvanta_tool orvanta-tool "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD-1]}"
        printf "%s\n" "${COMPREPLY[@]}"' _ "$prefix/share/bash-completion/completions/orvanta-tool" "$@"
}
[ "$(complete_words orvanta-tool "" | grep -v '^--' | sort)" = "$(echo "$help_commands" | sort)" ] ||
    fail "completion of commands differs from --help"
[ "$(complete_words orvanta-tool --home /tmp new-l)" = "new-log" ] || fail "completion of new-l"
complete_words orvanta-tool add Fieldday --ba | grep -qx -- --band || fail "completion of add --ba"
complete_words orvanta-tool evaluate x --de | grep -qx -- --descending || fail "completion of evaluate --de"

# 5. The installed programs find the shipped data under the prefix: a
#    language file put there reaches a fresh data folder.
cp "$prefix/share/orvanta-contest/Language/English.lng" "$prefix/share/orvanta-contest/Language/Shipped.lng"
home=$work/home
mkdir -p "$home"
printf '[QB]\nEinverstanden=-1\n' >"$home/OrvantaContest.INI"
"$tool" --home "$home" new-log check --call DL0OVC --locator JO62QM --contest "Check" >/dev/null ||
    fail "installed orvanta-tool new-log"
"$tool" --home "$home" add check --band 144 --call OK1KKW --locator JO70FD --rst 59 --rcvd 59001 \
    >/dev/null || fail "installed orvanta-tool add"
[ -f "$home/Language/Shipped.lng" ] || fail "shipped language files not taken from the prefix"
cmp -s "$home/Language/English.lng" "$prefix/share/orvanta-contest/Language/English.lng" ||
    fail "English.lng of the data folder differs from the shipped one"

# 6. The installed desktop program starts from the prefix and shows its window.
shot=$work/shot.png
QT_QPA_PLATFORM=offscreen timeout 60 "$prefix/bin/orvanta-contest" --home "$home" --log check \
    --screenshot "$shot" >"$work/program.log" 2>&1 || fail "orvanta-contest: $(cat "$work/program.log")"
file -b "$shot" 2>/dev/null | grep -qE '^PNG image data, [0-9]{3,} x [0-9]{3,},' ||
    fail "no screenshot of the main window: $(file -b "$shot" 2>&1)"

# 7. The Debian package: the same files under /usr, dependencies read from
#    the shared libraries, and no lintian errors.
"$cpack" -G DEB -B "$work/pkg" --config "$build/CPackConfig.cmake" >"$work/cpack.log" 2>&1 ||
    fail "cpack: $(cat "$work/cpack.log")"
deb=$(ls "$work"/pkg/*.deb 2>/dev/null | head -n1)
if [ -n "$deb" ]; then
    depends=$(dpkg-deb -f "$deb" Depends)
    for lib in libqt6widgets6 libqt6svg6 libsqlite3-0 libcurl4 libpq5 libnetcdf; do
        grep -q "$lib" <<<"$depends" || fail "package does not depend on $lib: $depends"
    done
    dpkg-deb -f "$deb" Recommends | grep -q gmt-gshhg-low ||
        fail "package does not recommend the coastlines: $(dpkg-deb -f "$deb" Recommends)"
    in_deb=$(dpkg-deb -c "$deb" | awk '$1 !~ /^d/ {print $NF}' | sed 's|^\./usr/||' | sort)
    in_prefix=$(cd "$prefix" && find . -type f ! -name Shipped.lng | sed 's|^\./||' | sort)
    [ "$in_deb" = "$in_prefix" ] ||
        fail "package and install differ: $(diff <(echo "$in_deb") <(echo "$in_prefix") | tr '\n' ' ')"
    lintian --tag-display-limit 0 "$deb" >"$work/lintian.log" 2>&1
    grep -v '^running with root' "$work/lintian.log"
    grep -q '^E:' "$work/lintian.log" && fail "lintian reports errors"
else
    fail "cpack made no package"
fi

[ "$failures" -eq 0 ] || { echo "$failures check(s) failed" >&2; exit 1; }
echo "install checks passed"

#!/usr/bin/env bash
# Makes docs/screenshot-main.png: a log of a few dozen QSOs on 2 m, written
# with the command-line tool, shown by the program offscreen and grabbed.
#   scripts/screenshot.sh [BUILD_DIR]   (default: build)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
tool="$build/src/cli/orvanta-tool"
program="$build/src/ui/orvanta-contest"
for f in "$tool" "$program"; do
    [ -x "$f" ] || { echo "missing $f: build first" >&2; exit 1; }
done

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
cat >"$home/OrvantaContest.INI" <<INI
[QB]
Einverstanden=-1
MyCall=DL0OVC
MyLocator=JO62QM
StartQRG=1
OPCall=DL1OVC
Prop=TR
[OPCallList]
DL1OVC
DL2OVC
[AUSBR]
TR
ES
MS
INI
"$tool" --home "$home" new-log contest --call DL0OVC --locator JO62QM \
    --contest "VHF contest" --weights 1,1,1,1,1,1,1,1,1,1 >/dev/null

# Stations around the own square, the latest ones within the last hour so
# that the rate meter has something to count.
calls=(DL1ABC OK1KKW SP3XYZ DF9QX DK0ZZ OZ1FF PA3CEG DL7ANR DM5TI DG1NEU
    OE3XUA DL3YEE OK2KZR DL8EBA SP6KBL DK2MN DJ5JK DR1H DL0GTH OK1OPT
    DF0MU DL6NAA DB6NT PA0EZ OZ7UHF HG1YA DM2DXA DK5EW DL4MEA SQ1FYB
    DL1YMK S57Z DH8BQA DJ8MS DL2JA DK3UZ)
locs=(JO62KK JO70FD JO82LI JO43JB JO41AA JO45VX JO21EH JO62PM JO60LQ JN59NN
    JN88EG JO31TF JN99AL JO50WC JO81GB JO51XC JO40HA JO52JD JO50LL JO70SB
    JN58TB JO71AA JN59PL JO22KA JO55CJ JN97KR JO53BM JO42GE JO62UG JO83OO
    JO63AA JN76JG JO61VA JO50HX JO31IF JN68PR)
n=${#calls[@]}
for i in "${!calls[@]}"; do
    minutes=$(( (n - i) * 5 ))
    stamp=$(date -d "-$minutes minutes" '+%Y-%m-%d %H:%M')
    mode=SSB; rst=59; rcvd=$(printf '59%03d' $((i + 3)))
    if (( i % 4 == 1 )); then mode=CW; rst=599; rcvd=$(printf '599%03d' $((i + 3))); fi
    "$tool" --home "$home" add contest --band 144 --call "${calls[$i]}" --locator "${locs[$i]}" \
        --rst "$rst" --rcvd "$rcvd" --mode "$mode" --rxmode "$mode" \
        --date "${stamp% *}" --time "${stamp#* }" --op DL1OVC --prop TR >/dev/null
done
"$tool" --home "$home" add contest --band 432 --call DL1ABC --locator JO62KK \
    --rst 59 --rcvd 59001 >/dev/null
"$tool" --home "$home" delete contest --band 144 --nr 7 >/dev/null

mkdir -p docs
QT_QPA_PLATFORM=offscreen "$program" --home "$home" --log contest \
    --screenshot docs/screenshot-main.png
echo "docs/screenshot-main.png"

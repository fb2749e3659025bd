#!/usr/bin/env bash
# Brings the catalogues up to date with the texts in the sources. With a folder as argument the
# catalogues there are updated instead of those beside this script.
set -euo pipefail
catalogues=$(cd "${1:-$(dirname "$0")}" && pwd)
cd "$(dirname "$0")/.."

# update CATALOGUE FOLDER...
# Without places in the sources, so that a catalogue changes only with the texts.
update() {
    lupdate "${@:2}" -I . -locations none -no-obsolete -no-ui-lines \
        -source-language en -ts "$1" -silent
}

for catalogue in "$catalogues"/measurementtool_*.ts; do
    update "$catalogue" SourceFiles general ui
done
for catalogue in "$catalogues"/probecheck_*.ts; do
    update "$catalogue" probecheck
done
for catalogue in "$catalogues"/kestrel-workbench_*.ts; do
    update "$catalogue" workbench
done

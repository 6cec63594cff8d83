#!/bin/bash
# Checks the style: the format and clang-tidy's findings of C++, shell and Python scripts, the ends of text files, and
# the includes between the folders of src/. Installs what it needs.
#
#   lint.sh [--quick | FILE.cpp...]
#
# --quick  without clang-tidy, which takes minutes
# FILE     clang-tidy looks at these alone
set -euo pipefail
cd "$(dirname "$0")"
status=0
commands=build/lint/one-each

fnFound() { # WHAT
    echo "lint.sh: $1" >&2
    status=1
}

fnScripts() { git grep -zlE '^#!/bin/(ba)?sh' -- ':!*.md' ':!*.cpp' ':!*.h' ':!*.py' ':!src/resources/setTimeZone.sh'; }

# All but files whose bytes matter end with a newline.
fnLastLines() {
    local attributes file
    while IFS=$'\t' read -r attributes file; do
        [[ $attributes == *attr/-text* || -z $(tail -c 1 "$file") ]] || fnFound "$file does not end with a newline"
    done < <(git ls-files --eol)
}

# Each folder of src/ includes itself, and what its line names.
fnIncludes() {
    local file room include
    local -A may=(
        [main.cpp]='panel wink'
        [panel]='touch window wink datetime network platform'
        [wink]='window platform'
        [datetime]='touch platform json'
        [network]='touch'
        [touch]='window'
        [window]=''
        [platform]='json OVIKProxy.h'
        [json]=''
    )
    while IFS=: read -r file include; do
        room=${file#src/}
        room=${room%%/*}
        include=${include#*\"}
        include=${include%%\"*}
        [[ ! -e ${file%/*}/${include#ui_} ]] || continue
        [[ $include != ui_*.h || ! -e ${file%/*}/$(basename "${include#ui_}" .h).ui ]] || continue
        [[ " $room ${may[$room]-} " == *" ${include%%/*} "* ]] || fnFound "$file includes $include"
    done < <(git grep -E '^ *# *include *"' -- 'src/*.cpp' 'src/*.h')
}

# Makes the generated headers, and compiles and links nothing. Of a file in several targets one command is enough.
fnCommands() {
    local log=build/lint/lint.log
    mkdir -p "$commands"
    {
        cmake --preset dev -B build/lint -DTARNIXUI_BENCHMARKS=ON -DCMAKE_AR=/bin/true -DCMAKE_RANLIB=/bin/true \
            -DCMAKE_CXX_COMPILER_LAUNCHER=true -DCMAKE_CXX_LINKER_LAUNCHER=true &&
            cmake --build build/lint
    } >"$log" || { cat "$log" >&2 && exit 1; }
    jq 'unique_by(.file)' build/lint/compile_commands.json >"$commands/compile_commands.json"
    jq -r '.[].file' "$commands/compile_commands.json" >"$commands/files"
}

packaging/install-build-packages.sh --lint
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format --dry-run -Werror || fnFound 'clang-format -i mends that'
fnScripts | xargs -0 shellcheck || status=1
git ls-files -z '*.py' | xargs -0 flake8 || status=1
tools/lint-docs.py || status=1
fnLastLines
fnIncludes
[[ ${1:-} != --quick ]] || exit "$status"

fnCommands
files=("$@")
# The largest first, so that the processors end together.
(($#)) || mapfile -t files < <(git ls-files '*.cpp' | xargs -d '\n' ls -S)
known=()
for file in "${files[@]}"; do
    if grep -qFx "$(realpath "$file")" "$commands/files"; then
        known+=("$file")
    else
        fnFound "no target compiles $file"
    fi
done
((${#known[@]} == 0)) || printf '%s\0' "${known[@]}" |
    xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p "$commands" 2>&1 |
    { grep --line-buffered -vE '^[0-9]+ warnings? (generated|treated as error)' || true; } ||
    fnFound 'see the findings of clang-tidy'
exit "$status"

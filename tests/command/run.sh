#!/usr/bin/env bash
# Runs the cases of the command: run.sh [--update] TOVREN COMMAND_FAULT [CASE]... ; README.md beside this file says what a case is.
set -u

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
update=no
if [[ ${1-} == --update ]]; then
    update=yes
    shift
fi
command=$(realpath "$1") && command_fault=$(realpath "$2") || exit 2
shift 2
cases=("$@")
if [[ $# == 0 ]]; then
    for file in "$here"/cases/*.sh; do
        cases+=("$(basename "$file" .sh)")
    done
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# What cases share. Printed into a file, so that each case runs in a plain shell.
cat > "$work/prelude.sh" <<'PRELUDE'
database() {
    mkdir -p "${2-db}/programmer" && tovren flash generate "$1" "${2-db}/programmer/pgm_flash.pcf" > /dev/null
}
PRELUDE

run_case() { # NAME FOLDER: leaves stdout, stderr and exit in FOLDER
    mkdir -p "$2/bin" "$2/home" "$2/run"
    ln -s "$command" "$2/bin/tovren"
    ln -s "$command_fault" "$2/bin/command_fault"
    (
        cd "$2/run" || exit 99
        env -i PATH="$2/bin:$PATH" HOME="$2/home" LC_ALL=C.UTF-8 TERM=xterm PYTHONDONTWRITEBYTECODE=1 \
            DATA="$here/data" SUPPORT="$here/support" BASH_ENV="$work/prelude.sh" \
            ${ASAN_OPTIONS+ASAN_OPTIONS="$ASAN_OPTIONS"} ${UBSAN_OPTIONS+UBSAN_OPTIONS="$UBSAN_OPTIONS"} \
            bash "$here/cases/$1.sh" > "$2/stdout" 2> "$2/stderr" < /dev/null
        echo $? > "$2/exit"
    )
    sed -i "s|$here/|tests/command/|g" "$2/stdout" "$2/stderr" # where the tree lies is not part of an answer
}

matches_lines() { # FILE PATTERNS: line by line
    local lines patterns i
    mapfile -t lines < "$1"
    mapfile -t patterns < "$2"
    [[ ${#lines[@]} == "${#patterns[@]}" ]] || return 1
    for i in "${!patterns[@]}"; do
        # shellcheck disable=SC2053
        [[ ${lines[i]} == ${patterns[i]} ]] || return 1
    done
}

rewrite() { # EXPECTED ACTUAL WHAT
    if [[ ! -s $2 || ($3 == exit && $(< "$2") == 0) ]]; then
        rm -f "$1"
    else
        cp "$2" "$1"
    fi
}

compare() { # NAME FOLDER WHAT: says what differs
    local expected="$here/cases/$1.$3" actual="$2/$3"
    if [[ -e $expected.glob ]]; then
        matches_lines "$actual" "$expected.glob" && return 0
        diff --label "expected $3 (patterns)" --label "actual $3" -u "$expected.glob" "$actual"
        return 1
    fi
    if [[ $update == yes ]]; then
        rewrite "$expected" "$actual" "$3"
        return 0
    fi
    [[ -e $expected ]] || expected=$work/nothing-$3
    diff --label "expected $3" --label "actual $3" -u "$expected" "$actual"
}

: > "$work/nothing-stdout"
: > "$work/nothing-stderr"
echo 0 > "$work/nothing-exit"
passed=0
failed=0
for name in "${cases[@]}"; do
    folder=$work/$name
    run_case "$name" "$folder"
    good=yes
    for what in stdout stderr exit; do
        compare "$name" "$folder" "$what" || good=no
    done
    if [[ $good == yes ]]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "FAILED $name"
    fi
done
echo "$passed passed, $failed failed"
[[ $failed == 0 && $passed -gt 0 ]]

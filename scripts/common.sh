# What the scripts share; they source it. Leaves the shell in the top folder of the tree.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

JOBS=$(nproc)

# usage_if_asked "$@": prints the comment at the head of the script for --help.
usage_if_asked() {
    local argument
    for argument in "$@"; do
        if [[ $argument == --help || $argument == -h ]]; then
            sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"
            exit 0
        fi
    done
}

# step TEXT COMMAND...: says TEXT and how long the command took; shows what it printed only when it fails.
step() {
    local text=$1 log start status=0
    shift
    log=$(mktemp)
    start=$SECONDS
    printf '%s ... ' "$text"
    "$@" >"$log" 2>&1 </dev/null || status=$?
    if [[ $status == 0 ]]; then
        echo "ok ($((SECONDS - start)) s)"
    else
        echo "failed:"
        cat "$log"
    fi
    rm -f "$log"
    return "$status"
}

# build PRESET: configures and builds it in build/PRESET.
build() {
    step "configuring $1" cmake --preset "$1"
    step "building $1" cmake --build --preset "$1" -j "$JOBS"
}

# What the scripts share: each sources this file first, and then stands in the project's folder.
# shellcheck shell=sh
set -eu

caller=$PWD
script=$(basename -- "$0")
# An inherited CDPATH would have `cd` go elsewhere, and print where.
root=$(CDPATH='' cd -- "$(dirname -- "$0")/.." && pwd)
cd -- "$root"

fail() {
    printf '%s: %s\n' "$script" "$*" >&2
    exit 1
}

# For arguments that the script does not take.
refuse() {
    printf '%s: %s; --help says what there is\n' "$script" "$*" >&2
    exit 2
}

# Prints the comment at the head of the script.
show_help() {
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' "scripts/$script"
    exit 0
}

# `path` from where the caller stands.
callers_path() {
    case $1 in
        /*) printf '%s\n' "$1" ;;
        *) printf '%s\n' "$caller/$1" ;;
    esac
}

# Every Python file, whatever its name, each followed by a NUL.
python_files() {
    git ls-files -z '*.py'
    git grep -zlE '^#!.*python3$' -- ':!*.py'
}

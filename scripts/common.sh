# What the scripts share: each sources this file first, and then stands in the project's folder.
# shellcheck shell=sh
set -eu

caller=$PWD
script=${0##*/}
# An inherited CDPATH would have `cd` go elsewhere, and print where.
scripts=$(CDPATH='' cd -- "$(dirname -- "$0")" && pwd -P)
root=${scripts%/*}
cd -- "$root"

fail() {
    printf '%s: %s\n' "$script" "$*" >&2
    exit 1
}

# For arguments that the script does not take.
refuse() {
    printf '%s: %s; --help lists what there is\n' "$script" "$*" >&2
    exit 2
}

# Prints the comment at the head of the script.
show_help() {
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$scripts/$script"
    exit 0
}

# For a script whose only argument is --help.
take_no_arguments() {
    [ "${1-}" != --help ] || show_help
    [ $# -eq 0 ] || refuse "unknown argument $1"
}

check_preset() {
    case $(cmake --list-presets=build) in
        *"  \"$1\""*) ;;
        *) refuse "there is no preset $1" ;;
    esac
}

# The absolute form of a path that the caller gave, without "." and ".." where it is a folder.
callers_path() {
    case $1 in
        /*) path=$1 ;;
        *) path=$caller/$1 ;;
    esac
    (CDPATH='' cd -- "$path" 2>/dev/null && pwd) || printf '%s\n' "$path"
}

# A path or any other string as a word for the shell.
quoted() {
    printf "'%s'\\n" "$(printf '%s\n' "$1" | sed "s/'/'\\\\''/g")"
}

# A build folder that was copied or moved along with its checkout still builds what lay, or lies, at
# the former place.
discard_foreign_build() {
    [ -f "$1/CMakeCache.txt" ] || return 0
    former=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$1/CMakeCache.txt")
    [ "$(CDPATH='' cd -- "$former" 2>/dev/null && pwd -P)" != "$(pwd -P)" ] || return 0
    printf '%s: %s was configured for %s, so it is made anew\n' "$script" "$1" "$former" >&2
    rm -rf -- "$1"
}

# Every Python file, whatever its name, each followed by a NUL.
python_files() {
    git ls-files -z '*.py'
    git grep -zlE '^#!.*python3$' -- ':!*.py'
}

# Included by every script: strict mode, the root of the tree, help, messages, options.
# shellcheck shell=bash disable=SC2034 # what is set here is used by the scripts
set -euo pipefail

# The caller's shell may have exported its options (noclobber, noglob, monitor) and CDPATH: start again without them.
if [[ ${SHELLOPTS@a}${BASHOPTS@a} == *x* ]]; then
    exec env -u SHELLOPTS -u BASHOPTS "$BASH" "$0" "$@"
fi
unset -v CDPATH

self=$(readlink -f "$0")
root=${self%/script/*}

# Prints the help, the comment at the top of the script, and ends the script.
usage() {
    sed -n '1d; /^#/!q; s/^# \{0,1\}//p' "$self" 2>/dev/null || fail 1 "cannot write to standard output"
    exit 0
}
say() { echo "${self##*/}: $1" >&2; }
fail() {
    say "$2"
    exit "$1"
}

# options SPEC... -- "$@" reads a script's command line. A SPEC is
#   --fix             a flag: sets fix=1
#   --jobs N          sets jobs, to a number
#   --html DIRECTORY  sets html, to any text
#   --kind KIND...    may be repeated: appends to the array kind
#   WORD...           words among the options: go to the array arguments
#   COMMAND WORD...   the first word ends the options
#   -- WORD...        words after "--" only
#   *                 words and unknown options: go to the array arguments
options() {
    # Underscores, because an option may set a variable of any other name.
    local _specs=() _words=none _spec _variable
    for _spec; do
        shift
        case $_spec in
        --) break ;;
        "-- "*) _words=last ;;
        "*") _words=all ;;
        -*) _specs+=("$_spec") ;;
        *" "*) _words="command" ;;
        *) _words=any ;;
        esac
    done
    arguments=()
    while (($#)); do
        case $1 in
        --help | -h) usage ;;
        --)
            [[ $_words != none ]] || fail 2 "unknown argument '--', see --help"
            shift && break
            ;;
        -?*)
            for _spec in "${_specs[@]}" ""; do
                [[ ${_spec%% *} != "$1" ]] || break
            done
            if [[ -z $_spec ]]; then
                [[ $_words == all ]] || fail 2 "unknown option '$1', see --help"
                arguments+=("$1")
                shift
                continue
            fi
            _variable=${1#--}
            local -n _value=${_variable//-/_}
            if [[ $_spec != *" "* ]]; then
                _value=1
            else
                [[ -n ${2:-} ]] || fail 2 "$1 needs a value, see --help"
                case $_spec in
                *" N")
                    [[ $2 =~ ^[0-9]{1,12}$ ]] || fail 2 "$1 needs a number"
                    _value=$((10#$2))
                    ;;
                *...) _value+=("$2") ;;
                *) _value=$2 ;;
                esac
                shift
            fi
            ;;
        *)
            [[ $_words != command ]] || break
            [[ $_words == a* ]] || fail 2 "unknown argument '$1', see --help"
            arguments+=("$1")
            ;;
        esac
        shift
    done
    arguments+=("$@")
}

# Fails unless $2 is one of the remaining arguments; $1 describes it.
known() {
    local kind=$1 name=$2
    shift 2
    [[ " $* " == *" $name "* ]] || fail 2 "unknown $kind '$name'; available: $*"
}

# Fails unless $1 is a preset of CMakePresets.json.
known_preset() {
    # shellcheck disable=SC2046 # names without blanks
    known preset "$1" $(cmake -S "$root" --list-presets | sed -n 's/^ *"\([^"]*\)".*/\1/p')
}

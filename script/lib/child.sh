# For scripts that run one command as their child: passes signals on to it, and calls the script's
# end_all however the script ends.
# shellcheck shell=bash

child=
interrupted=

pass_on() {
    interrupted=1
    [[ -n $child ]] || exit $((128 + $(kill -l "$1")))
    kill "-$1" "$child" 2>/dev/null || :
}
trap end_all EXIT
trap 'pass_on INT' INT
trap 'pass_on TERM' TERM
trap 'pass_on HUP' HUP

# Waits for the last started command and exits with its status.
wait_for_child() {
    child=$!
    local status
    while true; do
        interrupted=
        status=0
        wait "$child" || status=$?
        [[ -n $interrupted ]] || exit "$status"
    done
}

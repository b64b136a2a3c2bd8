# Shared by the shell tests of the real program on an X server (sourced, not run).
# fail TEXT: says why the test failed and ends it.
fail() {
    echo "FAIL: $*" >&2
    exit 1
}
# window_named TITLE: the id of the first visible window named exactly TITLE, waiting up to
# 20 s for it.
window_named() {
    tries=0
    while :; do
        id=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | head -n 1) || true
        [ -n "$id" ] && break
        tries=$((tries + 1))
        [ "$tries" -le 200 ] || fail "no window named \"$1\""
        sleep 0.1
    done
    echo "$id"
}

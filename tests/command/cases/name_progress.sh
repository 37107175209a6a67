# A bar on standard error where that alone is a terminal; a complaint takes its place, and it leaves nothing.
run() {
    python3 "$SUPPORT/terminal.py" 30 bash -c "$1" | sed 's/\r/<CR>/g; s/\x1b/<ESC>/g'
}
run 'tovren name explain BA50A BA50B BA50X BA60A > /dev/null'
echo
run 'tovren name explain BA50A QXQXQXQXQX BA50B BA60A > /dev/null'
echo
echo "one name:"
run 'tovren name explain BA50A > /dev/null'
echo "answers on the terminal too:"
run 'tovren name explain BA50A BA50B --json | cut -c 1-20'
run 'tovren name explain BA50A BA50B' | grep -c CR

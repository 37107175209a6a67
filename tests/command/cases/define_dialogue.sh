# The library's dialogue as it is; the exit code says how it ended, and --store keeps the outcome.
answers() {
    printf '%s\n' "$@" nova qxn 19 2 60 1 ef 0 n n n y n n 1 256 64 100 2 3000 1c 1c 0 -1 5 y 3.3v
}
tovren flash define < <(answers 1) | sed 's/[A-Z]\{16\}/TAG/; s/ unP.*/ TEXT/'
echo "${PIPESTATUS[0]}"
tovren --settings settings.ini flash define --store < <(answers 1) | tail -1
tovren --settings settings.ini flash definition check | sed -n '/device_name/p; $p'
tovren flash define --json < <(answers 1) 2> dialogue | python3 -c 'import json, sys; print(json.load(sys.stdin)["flashes"][0]["device_name"])'
head -c 30 dialogue && echo
for count in 4 x ''; do
    echo "$count" | tovren flash define
    echo "[$count] $?"
done
tovren flash define < <(answers 2) > out
echo "$?"
tail -c 60 out
tovren flash define --remove --store
echo "$?"

# All of these are the same three bytes.
database "$DATA/chain.csv"
ids() {
    tovren --db-root db flash identify --json "$@" |
        python3 -c 'import json, sys; print(*[(d["device"], d["id"], d["index"]) for d in json.load(sys.stdin)["devices"]])'
}
ids 20BA18 '20 BA 18' 20:ba:18 0x20,0xba,0x18 '0x20, 0xBA, 0x18' 0x20ba18 ' 20ba18 ' '0X20 : bA18' 20ba:18
printf '20BA18\n\n  # nothing\n20 ba 18 # the second\r\n0x20,0xba,0x18' | ids -
printf '20BA18\n' | ids C2FF13 - C2FF13

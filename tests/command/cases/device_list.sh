devices() { # CHANGE...: a database of its own under db
    mkdir -p db/programmer root/h
    python3 "$SUPPORT/device_csv.py" "$@" > devices.csv
    tovren device generate --product-root root devices.csv db/programmer/pgm_dev_info.pcf > /dev/null 2>&1
}
# The records, and which of them serves each value.
devices 3:family= 3:pcf=SPARE
tovren --db-root db device list | sed -n '1,6p;74,$p'
tovren --db-root db device list --json |
    python3 -c 'import json, sys; a = json.load(sys.stdin); print(len(a), {len(r) for r in a}, list(a[3].items())[:7])'
for kind in family device part; do
    tovren --db-root db device list --by $kind | sed -n '1,5p'
    tovren --db-root db device list --by $kind --json > $kind.json
    python3 -c 'import json, sys; a = json.load(open(sys.argv[1])); print(len(a), *a[0], a[-1])' $kind.json
done
tovren --db-root db device list --by name
echo "$?"

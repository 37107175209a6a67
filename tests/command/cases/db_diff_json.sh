# The difference for a gate.
make() { # NAME FLASH...
    python3 "$SUPPORT/flash_csv.py" "${@:2}" > "$1.csv"
    tovren flash generate "$1.csv" "$1.pcf" > /dev/null
}
make before device_name=QXA "device_name=QXB memory_id=0x20" "device_name=QXC memory_id=0x21"
make after "device_name=QXB memory_id=0x20 ini=LAB" device_name=QXA "device_name=QXD memory_id=0x22"
tovren db diff before.pcf after.pcf --json > difference.json
echo "$?"
python3 - <<'SHOW'
import json
difference = json.load(open("difference.json"))
for key, value in difference.items():
    if key in ("before", "after"):
        value = {name: value[name] for name in ("file", "records")}
    if key in ("added", "removed"):
        value = [(record["position"], record["device_name"], record["memory_id"], len(record)) for record in value]
    print(key, value)
SHOW
tovren db diff before.pcf before.pcf --json | python3 -c 'import json, sys; print(json.load(sys.stdin)["same"])'

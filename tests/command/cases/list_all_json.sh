# A hidden flash has no index and names its switch; a shown one has an index and no switch.
database "$DATA/switches.csv"
show() {
    tovren --db-root db flash list --json "$@" | python3 -c '
import json, sys
for record in json.load(sys.stdin):
    keys = list(record)
    print(keys[:3], len(keys), record["index"], record.get("switch", "-"), record["device_name"], record["memory_id"])'
    echo
}
show
show --all
show --all --set PGM_ALLOW_QSPI_X=on
show --all --set PGM_ALLOW_QSPI_X=on --set PGM_ALLOW_LAB=YES

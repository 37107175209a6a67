# A record whose index lies beyond the bytes given cannot match, also where the byte that it expects is 0. When its
# byte is given, it can.
python3 "$SUPPORT/flash_csv.py" "device_name=QXF memory_id=0 memory_id_index=3" \
    "device_name=QXT memory_type=0 memory_type_index=4" "device_name=QXM mfc_id=0 mfc_id_index=255" \
    "device_name=QXP" "device_name=QXN memory_type_index=255" > csv
database csv
ids() {
    tovren --db-root db flash identify "$@" --json |
        python3 -c 'import json, sys; print(*[(d["index"], d["candidates"]) for d in json.load(sys.stdin)["devices"]])'
}
ids 20BA18 20BA1800 20BA180000 20BB18 "20BA18$(printf '%0502d' 0)" "20BA18$(printf '%0504d' 0)" "20BA18$(printf '%0506d' 0)"

# Names that are no UTF-8, or would drive a terminal, break neither JSON nor tables.
python3 "$SUPPORT/flash_csv.py" "device_name=QX$(printf '\xff\xc3(')" "device_name=QX$(printf '\033[31m')" \
    "device_name=QXÄÖ" "device_name=QX\"\\" > csv
database csv
tovren --db-root db flash list --json | python3 -c '
import json, sys
print(*[ascii(r["device_name"]) for r in json.load(sys.stdin)])'
tovren --db-root db flash list
tovren --db-root db flash show 'qx"\' --json | head -4
tovren --db-root db flash show QY

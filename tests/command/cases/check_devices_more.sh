# Faults between rows, files that are none, and a description without a fault.
check() {
    python3 "$SUPPORT/device_csv.py" "$@" > devices.csv
    tovren check devices devices.csv
    echo "[$*] $?"
}
check
check 1:family= 1:pcf=SPARE
check 1:family=QUARN-2 2:family=GENERIC
check 5:family=QUARN-1
check 5:cmp_fbgen_start_block=PROG_MODE_JTAG
check 77:device= 77:pcf=SPARE 78:device=GENERIC
: > empty.csv
tovren check devices empty.csv
echo "$?"
tovren check devices missing.csv
echo "$?"
tovren check devices
echo "$?"
python3 "$SUPPORT/device_csv.py" | sed '2s/.*/\U&/; s/,/ , /g; s/$/\r/' > odd.csv
tovren check devices odd.csv
tovren check devices "$DATA/../../../data/devices.csv" | sed 's/.*: //'
{ printf '\xEF\xBB\xBF'; python3 "$SUPPORT/device_csv.py"; } > mark.csv
tovren check devices mark.csv
tovren device generate --product-root none mark.csv mark.pcf
echo "$?"

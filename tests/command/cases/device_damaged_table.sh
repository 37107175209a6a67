# A table that names a record which is not there is the file's fault, no value that nobody serves; others still answer.
mkdir -p db/programmer root/h
python3 "$SUPPORT/device_csv.py" > devices.csv
tovren device generate --product-root root devices.csv db/programmer/pgm_dev_info.pcf > /dev/null 2>&1
python3 "$SUPPORT/pcf.py" db/programmer/pgm_dev_info.pcf dword:-4=500
attempt() {
    tovren --db-root db "$@" | head -3
    echo "[$*] ${PIPESTATUS[0]}"
}
attempt device show --part 9273
attempt device show --part 9273 --json
attempt device list --by part
attempt device show --family QUARN-2

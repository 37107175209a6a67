devices() { # CHANGE...: a database of its own under db
    mkdir -p db/programmer root/h
    python3 "$SUPPORT/device_csv.py" "$@" > devices.csv
    tovren device generate --product-root root devices.csv db/programmer/pgm_dev_info.pcf > /dev/null 2>&1
}
# What is not known ends with 1, wrong usage with 2; standard output stays empty.
devices
attempt() {
    tovren --db-root db --json device show "$@"
    echo "[$*] $?"
}
attempt --family QUARN
attempt --family 74
attempt --family ""
attempt --device QA02
attempt --device 1048
attempt --device -1
attempt --part QA02AE144X
attempt --part 99999999999
attempt
attempt --family 1 --part 1
tovren --db-root none device show --family 1
echo "$?"

devices() { # CHANGE...: a database of its own under db
    mkdir -p db/programmer root/h
    python3 "$SUPPORT/device_csv.py" "$@" > devices.csv
    tovren device generate --product-root root devices.csv db/programmer/pgm_dev_info.pcf > /dev/null 2>&1
}
# The library's own report, in each of its modes.
devices 3:family= 3:pcf=SPARE
for mode in 1 2 3 4; do
    tovren --db-root db device report $mode > lines
    echo "$mode: $(wc -l < lines)"
    head -n 8 lines
done
tovren --db-root db device report 0
echo "$?"
tovren --db-root db device report
echo "$?"
devices 3:pcf=SPARE
tovren --db-root db device report 1 | tail -n 2
echo "${PIPESTATUS[0]}"

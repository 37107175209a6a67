devices() { # CHANGE...: a database of its own under db
    mkdir -p db/programmer root/h
    python3 "$SUPPORT/device_csv.py" "$@" > devices.csv
    tovren device generate --product-root root devices.csv db/programmer/pgm_dev_info.pcf > /dev/null 2>&1
}
# The record behind a name or a number of each kind, and the rule by which it is that one.
devices 2:family= 2:pcf=SPARE 3:cfg_dev=QXS256 3:dummy_word=0xFFFF 3:support_ob=TRUE \
    3:default_prog_mode=PROG_MODE_ACTIVE_SERIAL 3:ekp_alg_family=DEV_FAMILY_QUARN_4
show() {
    echo "[$*]"
    tovren --db-root db device show "$@" --json |
        python3 -c 'import json, sys; r = json.load(sys.stdin); print(len(r), r["position"], r["served_by"])'
}
show --family QUARN-1
show --family quarn-2
show --family 73
show --family 0
show --device QB01A
show --device generic
show --device 0
show --part QA02AE144
show --part 9273
show --part 0
tovren --db-root db device show --family QUARN-2L --json
tovren --db-root db device show --family QUARN-2L

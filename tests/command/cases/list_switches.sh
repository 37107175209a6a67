# A record with an enabling key is there while its switch is on, in the letter case it is stored; slots keep file order.
database "$DATA/switches.csv"
names() {
    echo "$* :"
    tovren --db-root db "$@" flash list --json |
        python3 -c 'import json, sys; print(*[(r["index"], r["device_name"], r["memory_id"]) for r in json.load(sys.stdin)])'
}
names
names --set PGM_ALLOW_QSPI_X=on
names --set PGM_ALLOW_QSPI_X=1 --set PGM_ALLOW_LAB=True
names --set PGM_ALLOW_qspi_x=on
names --set pgm_allow_QSPI_X=on
names --set PGM_ALLOW_QSPI_X=off --set PGM_ALLOW_LAB=enabled
names --set PGM_ALLOW_QSPI_X=on --set PGM_ALLOW_QSPI_X=off
names --set 'PGM_ALLOW_QSPI_X = on'

devices() { # CHANGE...: a database of its own under db
    mkdir -p db/programmer root/h
    python3 "$SUPPORT/device_csv.py" "$@" > devices.csv
    tovren device generate --product-root root devices.csv db/programmer/pgm_dev_info.pcf > /dev/null 2>&1
}
# The first fault of a broken device database: where, and why. Never an internal error.
devices
cp db/programmer/pgm_dev_info.pcf good.pcf
attempt() {
    cp good.pcf bad.pcf
    python3 "$SUPPORT/pcf.py" bad.pcf "$@"
    tovren db inspect bad.pcf > /dev/null
    echo "[$*] $?"
}
attempt file-cut=0
attempt file-cut=46
attempt file-cut=47
attempt file-cut=300
attempt magic=PGMIO_XM
attempt size=0
attempt size=100
attempt size=4294967295
attempt garbage
attempt dword:0=2
attempt dword:4=0
attempt dword:4=78
attempt dword:4=80
attempt dword:4=4294967295
attempt dword:8=0
attempt byte:12=9
attempt byte:12=0
attempt byte:12=6
attempt byte:17=0
attempt byte:17=2
attempt byte:30=2
attempt replace:454E4431=454E4432
attempt replace:454E4432=454E4433
attempt replace:084A000000=094A000000
attempt replace:084A000000=084B000000
attempt replace:0A18040000=0A19040000
attempt cut=12
attempt cut=500
attempt cut=22000
attempt cut=40000
tovren db inspect nowhere.pcf
echo "$?"
tovren db inspect .
echo "$?"
# Entry 1 of the family table: behind the last record, on it, and no record.
attempt replace:084A0000004900000000000000=084A000000490000004F000000
attempt replace:084A0000004900000000000000=084A000000490000004E000000
attempt replace:084A0000004900000000000000=084A00000049000000FFFFFFFF

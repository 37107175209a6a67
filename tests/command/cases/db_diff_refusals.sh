# A broken file is named, and so are both; two kinds cannot be compared.
database "$DATA/chain.csv"
cp db/programmer/pgm_flash.pcf flash.pcf
python3 "$SUPPORT/device_csv.py" > devices.csv
tovren device generate --product-root none devices.csv device.pcf > /dev/null 2>&1
cp flash.pcf broken.pcf
python3 "$SUPPORT/pcf.py" broken.pcf dword:0=2
cp device.pcf cut.pcf
python3 "$SUPPORT/pcf.py" cut.pcf cut=500
attempt() {
    tovren db diff "$@"
    echo "[$*] $?"
}
attempt flash.pcf device.pcf
attempt flash.pcf broken.pcf
attempt broken.pcf flash.pcf
attempt cut.pcf broken.pcf --json
attempt flash.pcf nothing.pcf
attempt flash.pcf .
attempt flash.pcf

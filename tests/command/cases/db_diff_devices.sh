# What differs between two device databases, and who is served by another record.
mkdir -p root/h
make() { # NAME CHANGE...
    python3 "$SUPPORT/device_csv.py" "${@:2}" > "$1.csv"
    tovren device generate --product-root root "$1.csv" "$1.pcf" > /dev/null 2>&1
}
compare() {
    tovren db diff "$@"
    echo "exit $?"
}
make before
compare before.pcf before.pcf
echo "--- values, also of enumerations"
make after 0:cfg_dev=QXS16 0:use_sdm=TRUE 0:default_prog_mode=PROG_MODE_JTAG 5:aes_fuse_bit_location=0x1A0
compare before.pcf after.pcf
echo "--- the family at 3 gets no record; a PCF name takes its place"
make after 3:family= 3:pcf=SPARE
compare before.pcf after.pcf
echo "--- the part list names the PCF record for the devices QA02A and QA02B"
printf 'QA02AE144C6,QA02A,x,x,x,x,QA_CFG_STD\nQA02BE144C6,QA02B,x,x,x,x,QX_CFG_STD\n' > root/h/pgm_parts.txt
make after
compare before.pcf after.pcf
tovren db diff before.pcf after.pcf --json > difference.json
python3 - <<'SHOW'
import json
difference = json.load(open("difference.json"))
print(list(difference), len(difference["served"]), difference["served"][0])
SHOW

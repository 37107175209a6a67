# What was compared, which records matched or missed by a byte and where they stand in the CSV, what hid others, and what
# would tell the candidates apart.
python3 "$SUPPORT/flash_csv.py" "device_name=QX128 flag_status=TRUE" "device_name=QX128B default_dev=TRUE" \
    "device_name=QX128C sec_erase_time=5" "device_name=QX256 memory_id=0x19" "device_name=QXLAB ini=LAB" \
    "device_name=QX64 memory_id=0x17 ini=LAB" "device_name=QXFAR memory_id=0x99 memory_type=0x99" \
    "device_name=QXEXT memory_id_index=4" > flash.csv
database flash.csv
echo "without the CSV:"
tovren --db-root db flash identify 20BA18 --why
echo "with it beside the database, and a table of further bytes:"
cp flash.csv db/programmer/flash.csv
printf '%s\n' 'identification,device_name,device_sector_byte,ext_id' 20BA18,QX128,65536,104400 20BA18,qx128b,65536,104401 \
    20BA18,QX128C,32768,FF > db/programmer/flash_shared_ids.csv
tovren --db-root db flash identify 20BA18 20BA18104401 --why
echo "a silicon ID, nothing near, a flash of the user's own:"
tovren --db-root db flash identify 18 --silicon-id --why 2>&1
tovren --db-root db flash identify 55AA33 --why 2>&1
echo "another CSV:"
sed 's/QX256/QX257/' flash.csv > other.csv
tovren --db-root db flash identify 20BA19 --why --csv other.csv | tail -9
echo "wrong files:"
attempt() {
    tovren --db-root db flash identify 20BA19 "$@" 2>&1
    echo "$?"
}
attempt --why --csv nothing.csv
printf "name,size\nQX1,64K\n" > parts.csv
attempt --why --csv parts.csv
attempt --csv flash.csv
echo "as JSON:"
tovren --db-root db --json flash identify 20BA18104401 905D0C --why 2> /dev/null | python3 -c '
import json, sys
document = json.load(sys.stdin)
for device in document["devices"]:
    device["flash"] = None
json.dump(document, sys.stdout, indent=1)
print()'

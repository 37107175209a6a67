# A flash's own table beside the records that answer alike: where they differ, and which one it fits.
python3 "$SUPPORT/flash_csv.py" "device_name=QX256 device_bit_size=268435456 byte4_addressing=TRUE" "device_name=QX128" \
    "device_name=QX128L device_sector_byte=131072" "device_name=QXS silicon_id=TRUE memory_id_index=0" > csv
database csv
# JESD216 1.0, one table of 9 dwords at 10h: 128 Mbit, erase types of 4, 32 and 64 KiB, no times.
header="53464450 000100ff 00000109 100000ff"
table="e520f1ff ffffff07 44eb086b 083b42bb feffffff ffff0000 ffff21eb 0c200f52 10d80000"
echo "$header $table" | xxd -r -p > table.bin
tovren --db-root db flash identify 20BA18 --why --sfdp table.bin | sed -n '/parameter table of/,$p'
xxd table.bin | tovren --db-root db --json flash identify 20BA18 --why --sfdp - | sed -n '/"sfdp": {/,$p'
echo "nothing to compare with:"
tovren --db-root db flash identify 55AA33 --why --sfdp table.bin 2> /dev/null | tail -2
echo "wrong files, and too many devices:"
attempt() {
    tovren --db-root db flash identify "$@" 2>&1
    echo "$?"
}
attempt 20BA18 --why --sfdp nothing.bin
attempt 20BA18 --why --sfdp db/programmer/pgm_flash.pcf
attempt 20BA18 20BA18 --why --sfdp table.bin
attempt 20BA18 --sfdp table.bin

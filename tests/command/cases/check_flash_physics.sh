# Figures that no chip can have together, a description a rule: the first rows lie just inside, the others just outside.
# The series tells no density but where that is asked.
check() { # NAME FLASH...
    python3 "$SUPPORT/flash_csv.py" "${@:2}" | awk -F, -v OFS=, 'NR > 8 { $2 = "QX" NR } { print }' > "$1.csv"
    tovren check flash "$1.csv"
    echo "$?"
}
plain="memory_type=0x5B memory_id"
check sector "$plain=1" "$plain=2 device_sector_byte=16777216" "$plain=3 device_sector_byte=33554432" \
    "$plain=4 device_sector_byte=196608" "$plain=5 device_sector_byte=0" "$plain=6 device_bit_size=0"
check erase "$plain=1 bulk_erase_time=3" "$plain=2 bulk_erase_time=1 sec_erase_time=1" \
    "$plain=3 bulk_erase_time=2" "$plain=4 sec_erase_time=0" "$plain=5 bulk_erase_time=0"
check program "$plain=1 program_utime=256" "$plain=2 program_utime=3000000" "$plain=3 program_utime=2 aai_mode=TRUE" \
    "$plain=4 program_utime=255" "$plain=5 program_utime=3000001" "$plain=6 program_utime=1 aai_mode=TRUE"
check address "$plain=1" "$plain=2 device_bit_size=268435456 byte4_addressing=TRUE" \
    "$plain=3 device_bit_size=134217736 device_sector_byte=1 byte4_addressing=TRUE" \
    "$plain=4 device_bit_size=134217736 device_sector_byte=1" "$plain=5 byte4_addressing=TRUE"
check protection "$plain=1 protection_value=0x04 unprotect_value=0x18 bottom_value=0x80" \
    "$plain=2 protection_mask=0 protection_value=0 bottom_value=0" "$plain=3 protection_value=0x5C" \
    "$plain=4 unprotect_value=0x02" "$plain=5 protection_value=0" "$plain=6 bottom_value=0x60"
check capacity memory_id=0x18 "memory_id=0x20 device_bit_size=536870912 byte4_addressing=TRUE" \
    "memory_id=0x19" "memory_id=0x18 mfc_id=0xC2 memory_type=0x20 device_bit_size=67108864" "memory_id=0x81"
# A cell that is no number is one fault, not two.
check cell "$plain=1 device_sector_byte=64K" "$plain=2 bulk_erase_time=" "$plain=3 protection_mask=0x11C"
tovren check flash --json capacity.csv
# The generator takes them: they are wrong, not broken.
tovren flash generate capacity.csv capacity.pcf

# Each fault by its member and its reason, all in one run; nothing is stored.
attempt() {
    "$SUPPORT/definition.py" json "$@" | tovren --settings settings.ini flash define --from - --store
    echo "[$*] $?"
}
attempt memory_id=0 memory_id_index=3 memory_type=256 memory_type_index=-2 mfc_id=255 mfc_id_index=-1 die_count=3
attempt device_bit_size=4096 device_sector_byte=0 bulk_erase_time=901 sec_erase_time=61 program_utime=999
attempt program_utime=1000001 bulk_erase_time=0 sec_erase_time=0 device_bit_size=3 device_sector_byte=2048 die_count=0
attempt protection_mask=256 protection_value=-1 'unprotect_value="100"' protection_division=2 bottom_value=8
attempt protection_division=33 'bottom_value="-2"' 'memory_id="0x18"' 'bulk_erase_time="1f"' 'mfc_id=""'
attempt 'manufacturer_name=""' 'device_name="01234567890123456789"' 'asc_voltage="3.3 V"'
attempt device_name=25 asc_voltage=3.3 manufacturer_name=true sdm_support=1 'aai_mode="yes"' micron_flow=null
attempt memory_id=true die_count=1.5 bulk_erase_time=1e30 'sec_erase_time=[2]' 'program_utime={}'
attempt silicon_id=0 byte4_addressing=true velkor_id=32 'memoryid=1' 'nonsense=1' aai_mode= asc_voltage=
attempt memory_id_index=1
attempt memory_id_index=0 memory_type_index=-1 sec_erase_time=0
one=$("$SUPPORT/definition.py" json)
try() {
    echo "$1" | tovren --settings settings.ini flash define --from - --store
    echo "$?"
}
try "{\"aai_mode\": true, ${one#\{}"
try "[$one, 5, {}]" 2>&1 | grep -v 'flash 3: .* is missing'
try '[]'
try "[$one, $one, $one, $one]"
try '{"memory_id": }'
try ''
tovren --json flash define --from <(echo "[$one, ${one/3000/3}]") 2> /dev/null
tovren flash define --from missing.json
tovren flash define --from .
ls

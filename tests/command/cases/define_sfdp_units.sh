# A figure in another unit, and a number with what does not belong to it, are named with what they would be.
database "$SUPPORT/../../../data/flash.csv"
export TOVREN_DB_ROOT=db
python3 "$SUPPORT/sfdp.py" image W25Q64JV > table.bin
# shellcheck disable=SC2046
tovren flash define --sfdp table.bin --id EF4017 --member device_name=W25Q64JV $(printf -- '--member %s ' \
    device_bit_size=8388608 device_sector_byte=65536 bulk_erase_time=280s sec_erase_time=2240 program_utime=4.3ms \
    protection_mask=0x1C protection_value=1CC bottom_value=32 aai_mode=no die_count=3 asc_voltage= memory_id=G7) \
    --member 'extended_mode=Y Y' 2>&1 | grep -A20 'no definition'

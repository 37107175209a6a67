# What does not fit together is told; only a density of which nobody knows whether it is right stops.
database "$SUPPORT/../../../data/flash.csv"
export TOVREN_DB_ROOT=db
members='manufacturer_name=NOVA device_name=QXN25 extended_mode=N micron_flow=N spansion_flow=N startup_protected=N
    aai_mode=N flag_status=N die_count=1 bulk_erase_time=800 sec_erase_time=9 program_utime=9000 protection_mask=3C
    protection_value=3C unprotect_value=0 protection_division=-1 bottom_value=6 sdm_support=N asc_voltage=1.8V'
attempt() { # IMAGE ID [MEMBER]...: what it says but for the table of members
    echo "[$*]"
    python3 "$SUPPORT/sfdp.py" image "$1" > table.bin
    # shellcheck disable=SC2046
    tovren flash define --sfdp table.bin --id "$2" $(printf -- '--member %s ' "${@:3}") > text 2> told
    echo "exit $?, $(wc -l < text) text"
    grep -E -A9 '^(warning|note|tovren)' told
}
# shellcheck disable=SC2086
{
    attempt W25Q16JV EF4018 $members
    attempt W25Q16JV EF4018 $members device_bit_size=128
    attempt W25Q16JV BF264A $members
    attempt W25Q256 EF4019 $members
    attempt IS25WP256 9D7019 $members
    attempt sector_map 016018 $members
    attempt sector_map 016018 $members device_sector_byte=64
    attempt page_512 EF4017 $members
    attempt density_24_mbit EF4015 $members
    attempt W25Q64JV FFFFFF $members
    attempt W25Q64JV 7F9D17 $members
    attempt W25Q64JV EFEFEF $members
}
attempt W25Q64JV EF4017 device_name=MX25L6433F manufacturer_name=WINBOMD
attempt W25Q64JV EF4017 device_name=W25Q64JV bulk_erase_time=20 sec_erase_time=30 program_utime=1000 device_sector_byte=256 flag_status=y die_count=2
attempt W25Q64JV EF4017 device_name=W25Q64JV die_count=2
attempt W25Q64JV EF4017 device_name=W25Q64JV mfc_id=C2 memory_type=FF memory_type_index=-1

# Sizes and times at their ends, and sectors that do not fill the flash.
python3 "$SUPPORT/flash_csv.py" "device_name=QXA device_bit_size=0 device_sector_byte=0 program_utime=0" \
    "device_name=QXB device_bit_size=4294967295 device_sector_byte=4294967295 program_utime=4294967295" \
    "device_name=QXC device_bit_size=8192 device_sector_byte=100 program_utime=999" \
    "device_name=QXD device_bit_size=2147483648 device_sector_byte=1048576 program_utime=1010" \
    "device_name=QXE device_bit_size=800 device_sector_byte=100 program_utime=1000" \
    "device_name=QXF memory_id_index=5 memory_type_index=255" "device_name=QXG memory_id_index=255" > csv
database csv
tovren --db-root db flash list

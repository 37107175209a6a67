# Every fault of a description that has twenty different ones, in one run; the same as JSON. The flashes are of a series
# whose identification tells no density.
long=$(printf 'x%.0s' {1..256})
python3 "$SUPPORT/flash_csv.py" device_name=QXOK \
    "device_name=QX1 device_sector_byte=64K" "device_name=QX2 device_bit_size=4294967296" \
    "device_name=QX3 silicon_id=true memory_id=3" "device_name=QX4 memory_id=" "device_name= memory_id=5" \
    "device_name=QX6 memory_id=300" "device_name=QX7 memory_id=7 die_count=0x1FF" "device_name=QX8 memory_id=8 ini=" \
    "device_name=$long memory_id=9" "+a,b" "+$(printf 'a,%.0s' {1..33})a" \
    "device_name=QX12 memory_id=12 default_dev=FALSE" "device_name=QXOK memory_id=13" \
    "device_name=QX14" "device_name=QX15 memory_id=15 program_utime=-1" \
    "device_name=QX16 memory_id=16 bulk_erase_time=1.5" "device_name=QX17 memory_id=17 sdm_support=1" \
    "device_name=QX18 memory_id=18 asc_voltage=" "device_name=QX19 memory_id=19 default_dev=" |
    sed 's/0xBA/0x5B/; 1s/bool/BOOL/; 2s/device_name/name_of_device/; 5s/-,//' > flash.csv
tovren check flash flash.csv
echo "$?"
tovren --json check flash flash.csv > faults.json
echo "$?"
python3 -c '
import json
faults = json.load(open("faults.json"))
print(len(faults), sorted({fault["severity"] for fault in faults}))
for fault in faults:
    print(fault["file"], fault["line"], fault["column"], fault["member"], str(fault["text"])[:20])'

# Warnings alone end with 0; so does a description without a fault.
python3 "$SUPPORT/flash_csv.py" device_name=QX1 device_name=QX2 > shadowed.csv
tovren check flash shadowed.csv
echo "$?"
# Numbers are compared, not their spelling; whoever ignores the memory type answers for all types behind it. The series
# tells no density.
python3 "$SUPPORT/flash_csv.py" device_name=QX1 "device_name=QX2 memory_id=24 mfc_id=32" \
    "device_name=QX3 memory_id=4 memory_type_index=0xFF" "device_name=QX4 memory_id=4" \
    "device_name=QX5 memory_id=0x04 memory_type=7 memory_type_index=2" "device_name=QX6 memory_id=5" \
    "device_name=QX7 memory_id=5 memory_type_index=255" "device_name=QX8 memory_id=5 memory_type=1" \
    "device_name=QX9 memory_id=6 silicon_id=TRUE" "device_name=QX10 memory_id=6 silicon_id=TRUE mfc_id=1" \
    "device_name=QX11 memory_id=6" "device_name=QX12 memory_id=5 memory_type=1 mfc_id=1" |
    sed 's/0xBA/0x5B/' > numbers.csv
tovren check flash numbers.csv
tovren check flash "$DATA/chain.csv" | sed 's/.*: //'
: > empty.csv
tovren check flash empty.csv
echo "$?"
tovren check flash missing.csv
echo "$?"
tovren check flash "$DATA/../../../data/flash.csv" | sed '/(warning)$/d; s|.*/||'
echo "${PIPESTATUS[0]}"

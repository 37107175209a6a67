# An answer that nothing matches: the most plausible cause, with the known flash that it would be; --why lists them all.
python3 "$SUPPORT/flash_csv.py" "device_name=QX128 mfc_id=0xEF memory_type=0x40 memory_id=0x18" \
    "device_name=QX64 mfc_id=0xEF memory_type=0x40 memory_id=0x17" \
    "device_name=QX32 mfc_id=0xEF memory_type=0x40 memory_id=0x16 ini=LAB" \
    "device_name=QXS16 silicon_id=TRUE memory_id=0x16 memory_id_index=0 memory_type_index=255" > csv
database csv
attempt() {
    echo "$*"
    tovren --db-root db flash identify "$@" 2>&1 > /dev/null | grep -v 'Read the identification once more'
}
for id in 9FEF4018 7FEF4018 00EF4018 EF40FF EFFFFF 55EF4018 4018EF 77A00C DE8030 1840EF F70218 10BFE7 EF4081 \
    EF4118 EF4B18 EFB018 4017AA 55EF40 12A55A; do
    attempt "$id"
done
echo "silicon IDs:"
attempt 161616
attempt EF4018 --silicon-id
attempt 17 --silicon-id
echo "all of them:"
tovren --db-root db flash identify 4018EF 77A00C EF4418 --why 2> /dev/null
echo "hidden:"
tovren --db-root db flash identify 9FEF4016 --why 2> /dev/null

# What differs between two flash databases, member by member, and who answers now.
flash() {
    echo "device_name=$1 memory_id=$2 $3"
}
plain=("$(flash QXA 0x14)" "$(flash QXB 0x15)" "$(flash QXC 0x16)" "$(flash QXD 0x17)" "$(flash QXE 0x16)"
    "$(flash QXF 0x19 ini=LAB)" "$(flash QXG 0x19)")
make() { # NAME FLASH...
    python3 "$SUPPORT/flash_csv.py" "${@:2}" > "$1.csv"
    tovren flash generate "$1.csv" "$1.pcf" > /dev/null
}
compare() {
    tovren db diff "$@"
    echo "exit $?"
}
make before "${plain[@]}"
cp before.pcf copy.pcf
compare before.pcf copy.pcf
echo "--- added, removed, changed"
make after "${plain[0]}" "$(flash QXB 0x15 'bulk_erase_time=480 sec_erase_time=4 asc_voltage=1.8V flag_status=TRUE')" \
    "$(flash QXNEW 0x30 'manufacturer_name=BOLT device_bit_size=1024 ini=KEY')" "${plain[@]:3}"
compare before.pcf after.pcf
echo "--- moved: QXE now stands ahead of QXC and answers to its identification"
make after "${plain[4]}" "${plain[@]:0:4}" "${plain[@]:5}"
compare before.pcf after.pcf
echo "--- a new record for any type of the same maker, ahead of all"
make after "$(flash QXANY 0x17 memory_type_index=255)" "${plain[@]}"
compare before.pcf after.pcf
echo "--- another name, another identification"
make after "$(flash QXA2 0x14)" "$(flash QXB 0x45)" "${plain[@]:2}"
compare before.pcf after.pcf
echo "--- without the keyed record in front of QXG, and one more for QXC, which becomes the default"
make after "${plain[@]:0:2}" "$(flash QXC 0x16 default_dev=FALSE)" "$(flash qxc 0x40)" "${plain[3]}" "${plain[4]}" \
    "$(flash QXF 0x19 ini=OTHER)" "${plain[6]}"
compare before.pcf after.pcf
echo "--- another build"
cp before.pcf after.pcf
python3 "$SUPPORT/pcf.py" after.pcf md5=0123456789abcdef0123456789abcdef end
compare before.pcf after.pcf | sed 's/[0-9a-f]\{32\} ->/... ->/'

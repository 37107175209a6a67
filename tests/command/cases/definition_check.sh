# What a load makes of a list, field by field, rule by rule.
version=$(tovren flash definition tag @ | python3 -c 'import json, sys; print(json.load(sys.stdin)["version_text"])')
shorten() {
    sed "s/$version/VERSION/; s/ [A-Z]\{16\}/ TAG/g"
}
verdict() { # what is not as in a good list
    echo "[$*]"
    tovren flash definition check "$("$SUPPORT/definition.py" list "$version" "$@")" > out 2> err
    echo "$?"
    grep -vxFf good out | shorten
    shorten < err
}
tovren flash definition check "$("$SUPPORT/definition.py" list "$version")" | tee good | shorten
verdict velkor_id=17
verdict protection_division=32
verdict memory_id=0 memory_type_index=2 die_count=0 device_bit_size=1000 device_sector_byte=0 program_utime=999
verdict mfc_id_index=2
verdict mfc_id_index=255
verdict device_name=
verdict memory_id=256
verdict aai_mode=2
verdict device_bit_size=-2147483648
list=$("$SUPPORT/definition.py" decode "$("$SUPPORT/definition.py" list "$version")")
try() {
    tovren flash definition check "$(tovren flash definition encode "$1")" 2>&1 | shorten | grep -E '^(Tag|Entry|A load|tovren:)|does not|missing|broken'
    echo "${PIPESTATUS[0]}"
}
echo '[changed since]'
try "${list/NOVA/NOVE}"
echo '[a field less]'
try "${list/@NOVA/}"
echo '[no tag]'
try "${list%%#*};"
echo '[two]'
try "$list$list"
echo '[a bad one first]'
try "x;$list"
attempt() {
    tovren "$@"
    echo "$?"
}
attempt flash definition check
attempt --json flash definition check 2> /dev/null
attempt flash definition check 'b@d!'
attempt --set TOVREN_USER_SPI_FLASHES=b@d flash definition check

# Without --store the encoded text alone is printed. What is in it is read by a program of the tests.
version=$(tovren flash definition tag @ | python3 -c 'import json, sys; print(json.load(sys.stdin)["version_text"])')
check() {
    "$SUPPORT/definition.py" json "$@" > my.json
    text=$(tovren flash define --from my.json)
    list=$("$SUPPORT/definition.py" decode "$text")
    definition=${list%%#*}
    [[ $list == "$definition#$("$SUPPORT/definition.py" tag "$version" "$definition");" ]] || echo "a wrong tag: $list"
    echo "$definition"
}
check
check 'manufacturer_name="0123456789abcdefghi"' 'memory_id="fe"' memory_type=255 memory_type_index=-1 'mfc_id="1"' die_count=2
check device_bit_size=2048 'device_sector_byte="0x400"' bulk_erase_time=900 sec_erase_time=60 program_utime=1000000.0
check device_bit_size=128 'protection_division="-1"' protection_division=3 bottom_value=-1 'sdm_support="N"'
check 'bottom_value="7"' 'protection_division="1f"' 'protection_mask="FF"' 'extended_mode="y"' aai_mode=true
"$SUPPORT/definition.py" json | tovren flash define --from - --json | python3 -c '
import json, sys
document = json.load(sys.stdin)
print(document["setting"], document["stored"], document["encoded"][:2], [flash["device_name"] for flash in document["flashes"]])'
echo "[$("$SUPPORT/definition.py" json), $("$SUPPORT/definition.py" json 'device_name="QXN1"')]" > two.json
"$SUPPORT/definition.py" decode "$(tovren flash define --from two.json)" | tr ';' '\n' | cut -d@ -f2,3
"$SUPPORT/definition.py" json 'protection_division="20"' | tovren flash define --from - > /dev/null
ls

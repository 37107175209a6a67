devices() { # CHANGE...: a database of its own under db
    mkdir -p db/programmer root/h
    python3 "$SUPPORT/device_csv.py" "$@" > devices.csv
    tovren device generate --product-root root devices.csv db/programmer/pgm_dev_info.pcf > /dev/null 2>&1
}
# Both databases taken apart, whichever build wrote them.
devices 0:dummy_string=first 0:dummy_word=0xABCD
tovren db inspect db/programmer/pgm_dev_info.pcf > whole
sed '/^MD5 text/s/[0-9a-f]\{32\}/.../; /^[a-z]* size/s/[0-9]*$/.../' whole | sed -n '1,45p'
python3 "$SUPPORT/pcf.py" db/programmer/pgm_dev_info.pcf md5=0123456789abcdef0123456789abcdef
tovren db inspect db/programmer/pgm_dev_info.pcf | grep MD5
tovren db inspect db/programmer/pgm_dev_info.pcf --json > device.json
echo "$?"
database "$DATA/chain.csv"
python3 "$SUPPORT/pcf.py" db/programmer/pgm_flash.pcf md5=0123456789abcdef0123456789abcdef
tovren db inspect db/programmer/pgm_flash.pcf --json > flash.json
echo "$?"
python3 "$SUPPORT/inspected.py" device.json flash.json
python3 "$SUPPORT/pcf.py" db/programmer/pgm_flash.pcf dword:8=7
tovren db inspect db/programmer/pgm_flash.pcf | sed '/^[a-z]* size/s/[0-9]*$/.../' | head -n 12
echo "${PIPESTATUS[0]}"

# What a description cannot hold is told with its record and member, and nothing is written.
database "$DATA/chain.csv"
flash=db/programmer/pgm_flash.pcf
cp $flash good.pcf
echo before > out.csv
attempt() {
    cp good.pcf bad.pcf
    python3 "$SUPPORT/pcf.py" bad.pcf "$@"
    tovren db dump bad.pcf --output out.csv
    echo "[$*] $?: $(head -n 1 out.csv | cut -c 1-20), $(ls -A | tr '\n' ' ')"
}
replace() { # OLD NEW: texts of one length
    printf 'replace:%s=%s' "$(printf %s "$1" | xxd -p)" "$(printf %b "$2" | xxd -p)"
}
attempt "$(replace QX20B 'QX 0B')" "$(replace QX20C 'Q,20C')" "$(replace QX20D 'Q\tX20')" "$(replace LAB 'L\nB')"
attempt "$(replace 1.8V '1.8\r')" "$(replace BOLT '\rOLT')"
attempt dword:8=7
attempt file-cut=100
for i in {1..13}; do
    printf 'device_name=QX%s asc_voltage=3~3 \n' "$i"
done | xargs -d '\n' python3 "$SUPPORT/flash_csv.py" > many.csv
database many.csv
python3 - $flash <<'BLANKS'
import sys, zlib
image = open(sys.argv[1], "rb").read()
payload = zlib.decompress(image[44:-2]).replace(b"3~3", b"3 3")
open("bad.pcf", "wb").write(image[:44] + zlib.compress(payload) + b"\0\0")
BLANKS
tovren db dump bad.pcf
echo "$?"
echo "--- what is not the same again is noted"
cp good.pcf odd.pcf
python3 "$SUPPORT/pcf.py" odd.pcf md5=0123456789abcdef0123456789abcdef end
tovren db dump odd.pcf > odd.csv
echo "$?"
echo "--- usage"
tovren db dump good.pcf --json
echo "$?"
tovren db dump good.pcf --output ./good.pcf
echo "$?"
tovren db dump nothing.pcf
echo "$?"
tovren db dump
echo "$?"
tovren db dump good.pcf --output nowhere/out.csv
echo "$?"
ln -s linked.csv link.csv
tovren db dump good.pcf --output link.csv && ls -l link.csv | sed 's/.* link/link/' && head -c 10 linked.csv

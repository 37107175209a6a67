# Every fault of both databases is told, not only the first.
flash() {
    echo "device_name=$1 memory_id=$2 $3"
}
mkdir -p root/h db/programmer
python3 "$SUPPORT/flash_csv.py" "$(flash QXA 0x14)" "$(flash QXB 0x15)" "$(flash QXC 0x14)" "$(flash QXD 0x17 ini=LAB)" \
    "$(flash QXE 0x18)" > flash.csv
tovren flash generate flash.csv flash.pcf > /dev/null
python3 "$SUPPORT/device_csv.py" > devices.csv
tovren device generate --product-root root devices.csv device.pcf 2> /dev/null > /dev/null
attempt() { # what was done to the files, then verified
    tovren db verify db | sed -E '/ envelope /s/[0-9,]+ bytes/N bytes/; s/build'"'"'s, [0-9a-f]+$/build'"'"'s, .../'
    echo "exit ${PIPESTATUS[0]}"
    cp flash.pcf db/programmer/pgm_flash.pcf
    cp device.pcf db/programmer/pgm_dev_info.pcf
}
flash_with() {
    python3 "$SUPPORT/pcf.py" db/programmer/pgm_flash.pcf "$@"
}
device_with() {
    python3 "$SUPPORT/pcf.py" db/programmer/pgm_dev_info.pcf "$@"
}
echo "--- nothing there"
attempt
echo "--- nothing wrong but a shared identification"
attempt
echo "--- another build, and the other kind of file"
flash_with md5=0123456789abcdef0123456789abcdef
cp flash.pcf db/programmer/pgm_dev_info.pcf
attempt
echo "--- names with two defaults, none, and a hidden one"
python3 "$SUPPORT/flash_csv.py" "$(flash QXA 0x14)" "$(flash qxa 0x15)" "$(flash QXB 0x16 default_dev=FALSE)" \
    "$(flash QXC 0x17 ini=LAB)" "$(flash QXC 0x18 default_dev=FALSE)" > faulty.csv
tovren flash generate faulty.csv db/programmer/pgm_flash.pcf > /dev/null 2>&1
attempt
echo "--- two broken flags, a broken tag, a misspelt marker"
record=$((85 + 4 + 3 + 4 + 4)) # 33 tags and their values, END1, and the texts ACME, QXA, NONE, 3.3V
flash_with byte:$((12 + 6 + 5 + 1))=7 byte:$((12 + record + 6 + 5))=9 byte:$((12 + 2 * record + 6 + 5 + 1))=3 \
    byte:$((12 + 3 * record - 1))=0x39
attempt
echo "--- device tables: a position past the records, one of another family, none"
tables=$(python3 -c 'import zlib; d=zlib.decompress(open("device.pcf","rb").read()[44:-2]); print(d.index(b"END2") + 4)')
device_with dword:$((tables + 5 + 4 * 3))=99 dword:$((tables + 5 + 4 * 5))=6 \
    dword:$((tables + 5 + 4 * 74 + 5 + 4 * 2))=0xFFFFFFFF
attempt | cut -c 1-110 | head -n 20
echo "--- keys: two records of one family, one with two keys, the generic one elsewhere"
python3 "$SUPPORT/device_csv.py" 1:family=VELDRA-3 4:family=GENERIC 6:pcf=TWO > faulty.csv
tovren device generate --product-root root faulty.csv db/programmer/pgm_dev_info.pcf > /dev/null 2>&1
attempt
echo "--- cut"
flash_with cut=300
device_with file-cut=60
attempt
echo "--- the folder in the root"
tovren db verify db/programmer 2>&1 | sed "s|$PWD|PWD|"

# The density that an identification tells, series by series: each of real chips, then the same with half the density.
# Those of the last rows tell none.
chips() { # DIVISOR
    local id rest flashes=()
    while read -r id mbit; do
        flashes+=("device_name=QX$id mfc_id=0x${id:0:2} memory_type=0x${id:2:2} memory_id=0x${id:4:2}
            device_bit_size=$((mbit * 1048576 / $1)) device_sector_byte=4096
            byte4_addressing=$([[ $((mbit / $1)) -gt 128 ]] && echo TRUE || echo FALSE)")
    done < chips.txt
    python3 "$SUPPORT/flash_csv.py" "${flashes[@]}"
}
cat > chips.txt <<'CHIPS'
20BA18 128
20BA22 2048
012018 128
010216 64
010219 256
010220 512
EF4018 128
EF4020 512
EF8019 256
C22019 256
C2253A 512
C22515 16
C2853A 512
C84017 64
C8471B 1024
9D601A 512
1C7018 128
1F4402 4
1F4218 128
1F8701 32
BF2502 1
BF258E 8
BF254B 64
BF2643 64
2C5B1C 2048
856013 4
1F6601 1
1F6604 4
BF2549 1
5A4018 64
CHIPS
chips 1 > right.csv
tovren check flash right.csv
chips 2 > half.csv
tovren check flash half.csv
# A silicon ID is a number of its own, and a type byte that is not compared is none.
python3 "$SUPPORT/flash_csv.py" "memory_id=0x19 silicon_id=TRUE" "device_name=QXB memory_id=0x19 memory_type_index=255" \
    > none.csv
tovren check flash none.csv

# Each of these is refused with its row, its column and what stood there; nothing is written.
attempt() {
    tovren flash generate "$1" out.pcf
    echo "$1: $?"
}
python3 "$SUPPORT/flash_csv.py" device_sector_byte=64K > number.csv
python3 "$SUPPORT/flash_csv.py" "" device_bit_size=4294967296 > large.csv
python3 "$SUPPORT/flash_csv.py" "" silicon_id=true "+a,b" memory_id= > several.csv
python3 "$SUPPORT/flash_csv.py" > headers.csv
sed '1s/bool/BOOL/' "$DATA/chain.csv" > type_row.csv
sed '2s/device_name/name_of_device/' "$DATA/chain.csv" > name_row.csv
sed '5s/-,//' "$DATA/chain.csv" > header_row.csv
sed '2s/.*/\U&/; 3s/.*/a,b,c/; 4s/.*/d/; 8s/.*/e/' "$DATA/chain.csv" > good.csv
: > empty.csv
for csv in number large several headers type_row name_row header_row empty; do
    attempt $csv.csv
done
attempt missing.csv
attempt .
ls out.pcf
attempt good.csv

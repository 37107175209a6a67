# Warnings alone end with 0; so does a description without a fault.
python3 "$SUPPORT/flash_csv.py" device_name=QX1 device_name=QX2 > shadowed.csv
tovren check flash shadowed.csv
echo "$?"
tovren check flash "$DATA/chain.csv" | sed 's/.*: //'
: > empty.csv
tovren check flash empty.csv
echo "$?"
tovren check flash missing.csv
echo "$?"
tovren check flash "$DATA/../../../data/flash.csv" | sed -n 's/.*: //; $p'

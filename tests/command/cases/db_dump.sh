# The description of a database, from which the same bytes are generated again.
database "$DATA/chain.csv"
flash=db/programmer/pgm_flash.pcf
tovren db dump $flash > flash.csv
echo "$?"
sed -n '3,10p' flash.csv
tail -n 1 flash.csv
tovren flash generate flash.csv again.pcf
cmp $flash again.pcf && echo "the same bytes"
mkdir -p root/h
python3 "$SUPPORT/device_csv.py" 0:dummy_string=a\"b 0:dummy_word=0xABCD 0:aes_fuse_bit_location=224 > devices.csv
tovren device generate --product-root root devices.csv device.pcf
tovren db dump device.pcf --output made.csv
echo "$?"
sed -n '1,3p' made.csv | cut -c 1-60
sed -n 3p made.csv | cut -d , -f 27-29,82-86
tovren device generate --product-root root made.csv again.pcf
cmp device.pcf again.pcf && echo "the same bytes"
tovren db dump device.pcf --json --output made.csv
tovren db dump device.pcf > /dev/full
echo "$?"

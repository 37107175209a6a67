# Ten thousand rows read back, compared and verified.
python3 "$SUPPORT/random_rows.py" 10000 11 > rows.csv
database rows.csv
cp db/programmer/pgm_flash.pcf rows.pcf
tovren db dump rows.pcf > dumped.csv
database dumped.csv again
cmp rows.pcf again/programmer/pgm_flash.pcf && echo "the same bytes"
tovren db diff rows.pcf again/programmer/pgm_flash.pcf | tail -n 1
{ head -n 5000 rows.csv; sed -n '5002,$p' rows.csv; sed -n 9p rows.csv | sed 's/QX0/QXNEW/'; } > changed.csv
sed -i '4000s/,QX3991,\(TRUE\|FALSE\),/,QX3991,\1\1,/; 4000s/TRUETRUE/FALSE/; 4000s/FALSEFALSE/TRUE/' changed.csv
database changed.csv changed
tovren db diff rows.pcf changed/programmer/pgm_flash.pcf --json > difference.json
echo "$?"
python3 -c '
import json
difference = json.load(open("difference.json"))
print({key: len(value) for key, value in difference.items() if isinstance(value, list) and key != "identified"})
print(difference["removed"][0]["device_name"], difference["added"][0]["device_name"], difference["changed"][0]["members"])'
tovren db verify db | grep '^flash' | sed -E '/ envelope /s/[0-9,]+ bytes/N bytes/; s/[0-9]+ of 10000/SOME of 10000/'

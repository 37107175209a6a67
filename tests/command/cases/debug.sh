# Level 2 shows what matched, level 3 every record as it is loaded; under --json neither is on standard output.
python3 "$SUPPORT/flash_csv.py" "" device_name=QXB > csv
database csv
tovren --db-root db --debug 1 flash identify 20BA18 20BA18 --json 2>&1 > /dev/null
echo "2:"
tovren --db-root db --debug 2 flash identify 20BA18 20BA18 --json 2>&1 > /dev/null
echo "3:"
tovren --db-root db --debug 3 flash show QXB | head -4
echo "3, json:"
tovren --db-root db --debug 3 flash show QXB --json 2> messages | head -3
cat messages

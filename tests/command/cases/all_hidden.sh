# A database whose flashes are all hidden loads; nothing is found in it.
python3 "$SUPPORT/flash_csv.py" "device_name=QXA ini=LAB" > csv
database csv
tovren --db-root db flash list --json
echo "$?"
tovren --db-root db flash show --index 0
echo "$?"
tovren --db-root db flash identify 20BA18 --json
echo "$?"

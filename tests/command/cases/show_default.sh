# The default of a name, in any letter case, whichever record stands first.
python3 "$SUPPORT/flash_csv.py" "default_dev=FALSE memory_id=1" memory_id=2 "default_dev=FALSE memory_id=3" > csv
database csv
tovren --db-root db flash show qXa --json | head -7
tovren --db-root db flash show --index 2 --json | head -7
tovren --db-root db flash show QXA

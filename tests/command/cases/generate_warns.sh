# The generator lets these through; the second file cannot be read back.
python3 "$SUPPORT/flash_csv.py" "memory_id=300 die_count=0x1FF" > cut.csv
python3 "$SUPPORT/flash_csv.py" "device_name=$(printf 'x%.0s' {1..300})" > long.csv
database cut.csv cut && tovren --db-root cut flash show QXA --json | grep -E 'memory_id"|die_count'
database long.csv long
echo "generated: $?"
tovren --db-root long flash list

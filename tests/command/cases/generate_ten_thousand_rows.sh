# Ten thousand rows of any value come back unchanged, in order and with their types.
python3 "$SUPPORT/random_rows.py" 10000 7 > rows.csv
database rows.csv
tovren --db-root db flash list --json > rows.json
python3 "$SUPPORT/compare_list.py" rows.csv rows.json

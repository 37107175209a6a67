# Of an option given twice the last one counts.
database "$DATA/switches.csv"
tovren --db-root nowhere flash list --db-root db --json --json | wc -l

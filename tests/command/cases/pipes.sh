# In a pipe a table is whole and plain; a reader that has gone away is no error; a full disk is.
database "$DATA/chain.csv"
COLUMNS=40 tovren --db-root db flash list | head -1 | cat -A
python3 "$SUPPORT/random_rows.py" 3000 3 > rows.csv
database rows.csv large
tovren --db-root large flash list | head -1 > /dev/null
echo "${PIPESTATUS[0]}"
(
    trap '' PIPE
    tovren --db-root large flash list --json | head -1 > /dev/null
    echo "${PIPESTATUS[0]}"
)
tovren --db-root db flash list > /dev/full
echo "$?"
tovren --db-root db flash list --json > /dev/full
echo "$?"
tovren --db-root db flash list >&-
echo "$?"

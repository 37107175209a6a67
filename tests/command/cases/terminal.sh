# On a terminal a table fits: less important columns go first, then each cell has its line.
database "$DATA/chain.csv"
for columns in 120 80 60 40; do
    echo "$columns:"
    NO_COLOR=1 python3 "$SUPPORT/terminal.py" $columns tovren --db-root db flash list | head -14
done
echo "20:"
NO_COLOR=1 python3 "$SUPPORT/terminal.py" 20 tovren --db-root db flash list | head -23
echo "show:"
NO_COLOR=1 python3 "$SUPPORT/terminal.py" 20 tovren --db-root db flash show QX40 | head -3
echo "identify:"
NO_COLOR=1 python3 "$SUPPORT/terminal.py" 60 tovren --db-root db flash identify 20BA18

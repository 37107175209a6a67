# An output that cannot be written leaves what stood there, and nothing beside it.
tovren flash generate "$DATA/chain.csv" old.pcf
cp old.pcf copy.pcf
python3 "$SUPPORT/random_rows.py" 3000 1 > rows.csv
(
    ulimit -f 16
    trap '' XFSZ
    tovren flash generate rows.csv old.pcf
    echo "full: $?"
)
cmp old.pcf copy.pcf
tovren flash generate "$DATA/chain.csv" missing/out.pcf
echo "no folder: $?"
tovren flash generate "$DATA/chain.csv" .
echo "a folder: $?"
tovren flash generate rows.csv rows.csv
echo "itself: $?"
ls

# A silicon ID never meets a record without one, a device ID none with one.
database "$DATA/chain.csv"
tovren --db-root db flash identify --silicon-id 10
echo "one byte: $?"
tovren --db-root db flash identify 10 --silicon-id --json | head -6
tovren --db-root db flash identify --silicon-id 18
echo "of a device: $?"
tovren --db-root db flash identify 10FFFF
echo "as a device: $?"

# --db-root goes before $TOVREN_DB_ROOT.
database "$DATA/chain.csv" chain
database "$DATA/switches.csv" switches
export TOVREN_DB_ROOT=chain
tovren flash list --json | wc -l
tovren --db-root switches flash list --json | wc -l
TOVREN_DB_ROOT=nowhere tovren flash list

# A file that is there and cannot be opened: under --json one file is open already, and no further one is allowed.
database "$DATA/chain.csv"
ulimit -n 4
tovren --db-root db --json flash list

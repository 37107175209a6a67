database "$DATA/chain.csv"
tovren --db-root db --json flash list

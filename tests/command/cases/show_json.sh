database "$DATA/chain.csv"
tovren --db-root db flash show QX40 --json

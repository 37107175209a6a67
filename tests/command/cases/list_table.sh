database "$DATA/chain.csv"
tovren --db-root db flash list
echo
tovren --db-root db flash list --all

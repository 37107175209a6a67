database "$DATA/chain.csv"
tovren --db-root db --json flash identify 20BA18 123456 c2ff13

# The flash behind each device; further flashes that answer alike, and in what they differ.
database "$DATA/chain.csv"
tovren --db-root db flash identify 20BA18 c2ff13 20BA19

database "$DATA/switches.csv"
tovren flash list --db-root db --set PGM_ALLOW_LAB=on --json > behind
tovren --db-root db --set PGM_ALLOW_LAB=on --json flash list > before
tovren --db-root db flash --json list --set PGM_ALLOW_LAB=on > between
cmp behind before
cmp behind between
wc -l < behind

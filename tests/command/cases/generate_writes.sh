# One line for people, one document for programs.
tovren flash generate "$DATA/chain.csv" people.pcf
tovren --json flash generate "$DATA/chain.csv" json.pcf
cmp people.pcf json.pcf
head -c 8 people.pcf
echo
tail -c 2 people.pcf | od -An -tx1

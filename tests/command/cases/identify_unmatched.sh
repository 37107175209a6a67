# Answers that match nothing come with the likely cause; a hidden flash with the switch that shows it.
database "$DATA/chain.csv"
attempt() {
    tovren --db-root db flash identify "$@"
    echo "$?"
}
attempt FFFFFF
attempt 00000000
attempt 9F9F9F
attempt 123456
attempt C22614
attempt FF --silicon-id
attempt 77 --silicon-id
tovren --db-root db --json flash identify FFFFFF

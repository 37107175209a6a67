# Over the matched devices only; none where nothing is matched.
database "$DATA/chain.csv"
longest() {
    tovren --db-root db flash identify --json "$@" |
        python3 -c 'import json, sys; print(json.load(sys.stdin)["longest_program_utime"])'
}
longest C2FF13
longest C2FF13 20BA18 C22615
longest C2FF13 FFFFFF
longest FFFFFF 000000
longest C22614
longest C22614 --set PGM_ALLOW_LAB=on

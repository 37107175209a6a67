# Bold titles on a terminal, unless NO_COLOR or the terminal says otherwise; never in a pipe.
database "$DATA/chain.csv"
first_line() {
    python3 "$SUPPORT/terminal.py" 80 tovren --db-root db "$@" | head -1 | cat -v
}
first_line flash show QX40
first_line flash frob
NO_COLOR=1 first_line flash show QX40
NO_COLOR=1 first_line flash frob
NO_COLOR='' first_line flash show QX40
TERM=dumb first_line flash show QX40
tovren --db-root db flash show QX40 | head -1 | cat -v

# Each names its argument or its line, and what is wrong there.
database "$DATA/chain.csv"
attempt() {
    tovren --db-root db flash identify "$@"
    echo "$?"
}
attempt
attempt ''
attempt 20BA18 20BG18
attempt 20 BA 18
attempt 20BA1
attempt 20,,BA,18
attempt 20BA18,
attempt 0x
attempt 2 0 BA18
attempt "$(printf '20\033[31m18')"
attempt "$(printf '%0514d' 0)"
attempt --silicon-id ''
attempt - -
attempt - < /dev/null
printf '# two lines\n20BA18\n20BX18 # bad\n' | attempt -
printf '20BA\n' | attempt -

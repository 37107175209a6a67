# A page of the loaded tables: into a file, into a stream, in one step, or not at all.
attempt() {
    tovren "$@"
    echo "[$*] $?"
}
attempt report --help
attempt report page.html
attempt report page.html --json | sed 's/"bytes": [0-9]*/"bytes": N/'
tovren report - | cmp - page.html
ln -s page.html link.html
chmod 640 page.html
attempt report link.html
stat -c '%n %a %F' link.html page.html
attempt report /dev/stdout | tail -n +2 | head -1
mkdir folder
attempt report folder
attempt report missing/page.html
attempt report ''
attempt report
attempt report - --json
attempt report - surplus
tovren report - > /dev/full
echo "$?"
echo old > page.html
attempt report page.html --db-root empty
cat page.html
database "$DATA/switches.csv"
attempt report page.html --db-root db
head -c 15 page.html
echo
ls -A

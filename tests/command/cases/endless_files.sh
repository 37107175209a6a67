# A device without an end is refused; so is a file one byte past the most that is read.
export TOVREN_MODULE_PATH=.
memory=4000000 # KiB
{ (ulimit -v $memory; tovren --version); } > /dev/null 2>&1 || memory=unlimited # a sanitizer reserves more
attempt() {
    (ulimit -v "$memory"; timeout 60 tovren "$@")
    echo "[$*] $?"
}
attempt flash define --from /dev/zero
attempt flash define --from - < /dev/zero
attempt flash definition decode < /dev/zero
attempt params set 0 /dev/full
attempt check devices /dev/zero
attempt check flash /dev/zero
head -c 16777216 /dev/zero > largest
head -c 16777217 /dev/zero > larger
attempt params set 0 largest
attempt params set 1 larger
{ "$SUPPORT/definition.py" json; head -c 1000000 /dev/zero | tr '\0' ' '; } > spaces.json
tovren flash define --from spaces.json > /dev/null
echo "$?"

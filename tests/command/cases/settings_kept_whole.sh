# A disk that is full: the settings file stays as it was, byte for byte, and nothing is left beside it.
"$SUPPORT/definition.py" json > my.json
head -c 3000 /dev/zero | tr '\0' '#' > settings.ini
printf '\r\nA = 1' >> settings.ini
cp settings.ini before.ini
(
    trap '' XFSZ
    ulimit -f 1
    tovren --settings settings.ini flash define --from my.json --store 2>&1 | cat
    echo "${PIPESTATUS[0]}"
)
cmp settings.ini before.ini && echo whole
ls
tovren --settings settings.ini flash define --from my.json --store 2> /dev/null
cmp -n 3002 settings.ini before.ini && tail -n +2 settings.ini | sed 's/unP.*C/TEXT/' | cat -A
tovren --settings settings.ini flash define --remove
cmp settings.ini <(cat before.ini; printf '\r\n') && echo "whole but for the end of its last line"

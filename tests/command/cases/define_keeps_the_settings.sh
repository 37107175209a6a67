# The settings file keeps its other lines, their order, comments and rights; the last of equal names is the one that counts.
"$SUPPORT/definition.py" json > my.json
show() {
    sed 's/\(=[ ]*\)unP[0-9A-Za-z@-]*/\1TEXT/; s/$/$/' "$1"
}
printf '%s\n' '# mine' '' 'A = 1   # one' 'TOVREN_USER_SPI_FLASHES = first' '  TOVREN_USER_SPI_FLASHES=last # why' 'nonsense' > s.ini
printf 'B = 2' >> s.ini
chmod 640 s.ini
ln -s s.ini link.ini
tovren --settings link.ini --set A=7 --set TOVREN_USER_SPI_FLASHES=other flash define --from my.json --store 2> /dev/null
show s.ini
stat -c %a s.ini
cp s.ini before.ini
tovren --settings s.ini flash define --from my.json --store 2> /dev/null
cmp s.ini before.ini && echo same
tovren --settings s.ini flash define --remove 2> /dev/null
show s.ini
tovren --settings s.ini flash define --from my.json --store 2> /dev/null
show s.ini
tovren --settings new/folder/s.ini flash define --from my.json --store
show new/folder/s.ini
TOVREN_SETTINGS=named.ini tovren flash define --from my.json --store 2> /dev/null
show named.ini
tovren --settings . flash define --from my.json --store
echo "$?"
tovren --settings my.json/s.ini flash define --from my.json --store
echo "$?"
env -u HOME tovren flash define --from my.json --store
echo "$?"
ls

# What the how-to shows is what its commands print, but for the size of the files and what the part list decides.
tree=$SUPPORT/../../..
mkdir -p page/root/programmer root/h
database "$tree/data/flash.csv" page/root
tovren device generate --product-root root "$tree/data/devices.csv" page/root/programmer/pgm_dev_info.pcf 2> /dev/null \
    > /dev/null
cp page/root/programmer/pgm_flash.pcf page/old.pcf
plain() {
    sed -E 's/[0-9]+ bytes/N bytes/; s/served by [0-9]+ records/served by N records/'
}
cd page || exit
diff <(plain < "$tree/docs/howto/compare_databases.md") <("$SUPPORT/howto.py" "$tree/docs/howto/compare_databases.md" | plain) && echo same

# Every kind of broken file is refused: the condition, the file, what to do. Standard output stays empty under --json.
database "$DATA/chain.csv" good
attempt() {
    rm -rf db
    cp -r good db
    python3 "$SUPPORT/pcf.py" db/programmer/pgm_flash.pcf "$@"
    tovren --db-root db --json flash list
    echo "[$*] $?"
}
attempt file-cut=0
attempt file-cut=46
attempt file-cut=47
attempt file-cut=200
attempt magic=PGMIO_DM
attempt magic=PGMIO_FX
attempt md5=00000000000000000000000000000000
attempt size=0
attempt size=17
attempt size=4294967295
attempt garbage
attempt dword:0=2
attempt dword:4=0
attempt dword:4=4294967295
attempt dword:4=8
attempt dword:4=10
attempt dword:8=0
attempt byte:12=3
attempt replace:454E4431=454E4432
attempt replace:454E4432=454E4433
attempt replace:02044E4F4E45=02004E4F4E45
attempt cut=100
echo "and these load:"
rm -rf db
cp -r good db
python3 "$SUPPORT/pcf.py" db/programmer/pgm_flash.pcf dword:8=34 end
tovren --db-root db --json flash list | wc -l

# The first fault of a broken flash database: where, and why. Never an internal error.
database "$DATA/chain.csv"
cp db/programmer/pgm_flash.pcf good.pcf
attempt() {
    cp good.pcf bad.pcf
    python3 "$SUPPORT/pcf.py" bad.pcf "$@"
    tovren db inspect bad.pcf > /dev/null
    echo "[$*] $?"
}
attempt file-cut=46
attempt file-cut=100
attempt magic=PGMIO_DM
attempt size=1
attempt size=4294967295
attempt garbage
attempt dword:0=2
attempt dword:4=8
attempt dword:4=10
attempt dword:4=4294967295
attempt byte:12=1
attempt replace:0300=0302
attempt replace:454E4431=454E4432
attempt replace:454E4432=454E4433
attempt cut=100
attempt end

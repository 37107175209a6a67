# For an identification that records answer already: which do now, and that a stored definition goes before them.
database "$SUPPORT/../../../data/flash.csv"
export TOVREN_DB_ROOT=db HOME=home
python3 "$SUPPORT/sfdp.py" image MX25L25645G > table.bin
tovren flash define --sfdp table.bin --id C22019 2>&1 | tail -6
define() {
    tovren flash define --sfdp "$1" --id 'c2 20 19 ff' --member device_name=MX25L25645G --member bulk_erase_time=900 --store 2>&1 |
        grep -E '^(note|stored)'
}
define table.bin
tovren flash identify C22019 | head -2
od -A x -t x1 table.bin | define -

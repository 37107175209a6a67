# The nearest names, five at most, nearest first; else names that begin alike; else none.
python3 "$SUPPORT/flash_csv.py" device_name={QXS16,QXS17,QXS18,QXS19,QXS1,QXS64,QXS164,W25Q128,ABCDEF1,ABCDEF2,abcdxx} \
    "device_name=QXS99 ini=LAB" "device_name=QXS1 default_dev=FALSE" > csv
database csv
attempt() {
    tovren --db-root db flash show "$@"
    echo "$*: $?"
}
attempt QXS15
attempt qxs64x
attempt w52q128
attempt W25Q
attempt ABCDEF
attempt ABCDE99999
attempt zz
attempt ''
attempt QXS99
attempt --index 12
attempt --index 4294967296
attempt --index -1
attempt --index 1x
attempt QXS16 --index 0
attempt
tovren --db-root db --json flash show QXS15
tovren --db-root db --json flash show --index 99

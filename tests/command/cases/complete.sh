# What shells are told of a line that is being typed: verbs, options, names of the tables, files.
python3 "$SUPPORT/flash_csv.py" "device_name=QXA" "device_name=QXA2 default_dev=TRUE manufacturer_name=NOVA" \
    "device_name=qxb default_dev=TRUE" "device_name=QXB default_dev=FALSE" "device_name=QXL ini=LAB" > csv
database csv
complete() {
    echo "-- $*"
    TOVREN_DB_ROOT=db tovren __complete -- "$@"
}
complete fla
complete hps ''
complete flash show qx
complete flash show --index 1
complete --set PGM_ALLOW_LAB=on flash show QXL
complete --set PGM_
complete --set PGM_ALLOW_LAB=
complete device list --by=
complete device list --by family --
complete enum check 0 CC_CS_V
complete hps nand add manufacturer_id=1 ''
complete --settings
complete --settings ''
complete db inspect
complete db inspect a
complete --set=TOVREN_MAIL_OUTBOX=/var
complete -- fl
echo "-- typed with quotes"
tovren __complete --quoted -- --db-root "'d'b" flash show '"qxB'
tovren __complete --quoted -- --db-root '"${HOME}"/../run/$NOTHING\db' flash show 'q\x'
tovren __complete --quoted -- --db-root "'\$HOME'" flash show q
tovren __complete --quoted -- params show '"HPS '
tovren __complete --quoted -- 'flash\'
tovren __complete --quoted -- '$' '${A'
echo "-- without a word"
tovren __complete | head -2
tovren __complete -- | head -2
echo "-- help does not tell"
tovren --help | grep -c complete
echo "-- standard output is closed"
tovren __complete -- fl >&-
echo $?

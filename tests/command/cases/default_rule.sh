# Each name has one default, letter case aside, among the records that are shown.
database "$DATA/defaults.csv"
tovren --db-root db flash list
echo "hidden default: $?"
tovren --db-root db --set PGM_ALLOW_LAB=on flash list
echo "one each: $?"
tovren --db-root db --set PGM_ALLOW_LAB=on --set PGM_ALLOW_OLD=on flash list
echo "two defaults: $?"
python3 "$SUPPORT/flash_csv.py" device_name=QXA default_dev=FALSE "device_name=QXB default_dev=FALSE" > none.csv
database none.csv none
tovren --db-root none flash show QXA
echo "no default: $?"

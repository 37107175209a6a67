# A finding stands where a waiver beside the description, or one that is named, gives a reason.
python3 "$SUPPORT/flash_csv.py" "device_name=QX1 memory_id=0x19" "device_name=qx1 memory_id=0x17 default_dev=FALSE" \
    "device_name=QX2 memory_type=0x5B bulk_erase_time=1 byte4_addressing=TRUE" \
    "device_name=QX3 silicon_id=TRUE memory_id=0x10 program_utime=5" > flash.csv
tovren check flash flash.csv
echo "$?"
# All of a name, one of its identifications, a silicon ID; a reason may have commas. One finding is left.
cat > flash_waivers.csv <<'WAIVERS'
# Comments and blank lines do not count.
device_name,identification,rule,reason

QX1,,capacity-byte,made for this test
QX2,205B18,erase-time,the maker says so, twice
QX3 , 10 , program-time , no page
WAIVERS
tovren check flash flash.csv
echo "$?"
# With the last one waived all is well, as long as another file is not named.
echo "qx2,205b18,address-width,its fourth byte is ignored" >> flash_waivers.csv
tovren check flash flash.csv
echo "$?"
sed '/QX1/s/,,/,20BA17,/' flash_waivers.csv > other.csv
tovren check flash --waivers other.csv flash.csv
echo "$?"
tovren --json check flash --waivers other.csv flash.csv
tovren check flash --waivers missing.csv flash.csv | tail -2
# Waivers that waive nothing are warnings ...
cat > unused.csv <<'WAIVERS'
device_name,identification,rule,reason
QXOK,,capacity-byte,it was wrong once
QXOKAY,,capacity-byte,it has another name
QXOK,EF4018,capacity-byte,it has another identification
QXOK,20BA18,sector-size,it keeps to that too
WAIVERS
python3 "$SUPPORT/flash_csv.py" device_name=QXOK > good.csv
tovren check flash --waivers unused.csv good.csv
echo "$?"
# ... and so is one that comes behind another for the same.
printf '%s\n' device_name,identification,rule,reason QX1,20BA19,capacity-byte,one qx1,,capacity-byte,all > twice.csv
printf 'qx1,20BA17,capacity-byte,none is left for it\n' >> twice.csv
tovren check flash --waivers twice.csv flash.csv | tail -2
# ... broken ones are faults, and waive nothing.
cat > broken.csv <<'WAIVERS'
device_name,identification,rule,reason
QX1,20BA19,capacity-byte,
QX1,20BA17,capacity,not a rule
QX2,205B1,erase-time,five digits
QX2,silicon,erase-time,no digits
QX3,10,program-time
,10,program-time,no name
WAIVERS
tovren check flash --waivers broken.csv flash.csv
echo "$?"
tovren check flash --waivers flash.csv good.csv

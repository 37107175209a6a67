# Both databases of a root, a line for each check; the shipped ones are without fault, and shared identifications are
# no fault.
tree=$SUPPORT/../../..
mkdir -p root/h db/programmer
tovren flash generate "$tree/data/flash.csv" db/programmer/pgm_flash.pcf
tovren device generate --product-root root "$tree/data/devices.csv" db/programmer/pgm_dev_info.pcf 2> /dev/null
shown() {
    sed -E '/ envelope /s/[0-9,]+ bytes/N bytes/'
}
tovren db verify db | shown
echo "exit ${PIPESTATUS[0]}"
tovren --db-root db db verify | shown | tail -n 1
tovren db verify db --json > verify.json
echo "exit $?"
python3 -c '
import json
document = json.load(open("verify.json"))
print(document["root"], document["faults"], [(f["database"], f["check"], f["verdict"]) for f in document["findings"]])'

# One document says what was made, from what, and what does not fit together.
database "$SUPPORT/../../../data/flash.csv"
export TOVREN_DB_ROOT=db
python3 "$SUPPORT/sfdp.py" image 'W25Q02NW / W25H02NW (ids EF8022, EFA022)' > table.bin
tovren --json flash define --sfdp table.bin --id EF8022 --member device_name=W25Q02NW > missing.json 2> told
echo "$?"
wc -l < told
tovren --json flash define --sfdp table.bin --id EF8022 --member device_name=W25Q02NW --member bulk_erase_time=900 > made.json
python3 - <<'END'
import json
missing = json.load(open("missing.json"))
made = json.load(open("made.json"))
for document in missing, made:
    print(list(document))
    print(document["encoded"] is None, document["missing"], document["contradictions"], document["answered_by"])
for member in made["members"]:
    print(*member.values(), sep=" | ")
print(made["flashes"][0]["device_name"], made["flashes"][0]["bulk_erase_time"])
END

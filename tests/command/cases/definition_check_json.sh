# The check as JSON.
version=$(tovren flash definition tag @ | python3 -c 'import json, sys; print(json.load(sys.stdin)["version_text"])')
text=$("$SUPPORT/definition.py" list "$version" velkor_id=17)
tovren --json --set "TOVREN_USER_SPI_FLASHES=$text" flash definition check > check.json
echo "$?"
python3 - "$version" <<'PROGRAM'
import json, sys
check = json.load(open("check.json"))
assert check["version_text"] == sys.argv[1]
entry, = check["entries"]
assert entry["tag"] == entry["expected_tag"] and entry["is_tag_right"]
print([key for key in entry])
print(entry["fields"]["velkor_id"], entry["record"]["velkor_id"], len(entry["fields"]), len(entry["record"]))
print([rule["rule"] for rule in entry["rules"] if not rule["holds"]])
print(entry["is_applied"], entry["reason"], entry["note"])
PROGRAM

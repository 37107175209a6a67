# The maps themselves, whole or one by name or number.
tovren name maps | grep -v '^ '
tovren name maps 7 | head -3
tovren name maps FAMILY | cmp - <(tovren name maps 7)
tovren name maps family | cmp - <(tovren name maps 7)
tovren name maps --json > all.json
tovren name maps DEV_PCF --json > one.json
python3 - <<'PYTHON'
import json
maps, one = json.load(open("all.json")), json.load(open("one.json"))
for name, entries in maps.items():
    print(name, len(entries), sum(map(len, entries.values())), list(entries) == sorted(entries))
print(list(one), one["DEV_PCF"] == maps["DEV_PCF"])
PYTHON
for which in 8 -1 FAMILIES ''; do
    tovren name maps "$which"
    echo "$?"
done
tovren name maps | head -1 > /dev/null
echo "${PIPESTATUS[0]}"
tovren name maps --json > /dev/full
echo "$?"

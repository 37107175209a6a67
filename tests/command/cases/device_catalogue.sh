# Numbers, names and what belongs to what.
for which in families devices parts; do
    tovren device catalogue $which | sed -n '1,4p;$p'
    tovren device catalogue $which --json > list.json
    python3 -c 'import json; a = json.load(open("list.json")); print(len(a), a[1], a[-1])'
done
tovren device catalogue
echo "$?"
tovren device catalogue boards
echo "$?"

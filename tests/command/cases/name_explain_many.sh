# Several names and standard input: an object a line; blank lines are none; what is unknown does not stop the rest.
tovren name explain ba50a BA50X --json
printf 'ba50a\r\n\n  \n ba50x\nBA50' | tovren name explain BA50B - --json | cut -c 1-60
echo "${PIPESTATUS[1]}"
printf '\n' | tovren name explain -
echo "$?"
printf 'ba50a\n' | tovren name explain - --json | wc -l
tovren name explain BA50A QXQXQXQXQX BA50B > tables
echo "$?"
grep -c '^name ' tables
tovren name explain '' --json | head -3
tovren name maps 0 --json > maps.json
python3 - <<'PYTHON'
import json, subprocess
names = [n for contents in json.load(open("maps.json"))["PACKAGE_GRAMMAR"].values() for n in contents][:300]
result = subprocess.run(["tovren", "name", "explain", "-", "--json"], input="\n".join(names).lower(),
                        capture_output=True, text=True)
answers = [json.loads(line) for line in result.stdout.splitlines()]
print(result.returncode, [a["standardised"] for a in answers] == names, result.stderr == "")
PYTHON

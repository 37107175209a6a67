# All ordering names, in lower case and with blanks around them, against a plain reading of the maps; under the
# sanitizers every 29th.
grep -q __asan_init "$(command -v tovren)" && export STEP=29
python3 - <<'PYTHON'
import json, os, subprocess

maps = json.loads(subprocess.check_output(["tovren", "name", "maps", "--json"]))
key_of = {name: {content: key for key, contents in entries.items() for content in contents}
          for name, entries in maps.items()}
names = list(key_of["PACKAGE_GRAMMAR"])[::int(os.environ.get("STEP", "1"))]
result = subprocess.run(["tovren", "name", "explain", "-", "--json"], capture_output=True, text=True,
                        input="\n".join(f"  {name.lower()} " for name in names))
answers = [json.loads(line) for line in result.stdout.splitlines()]


def expected(name):
    package = key_of["PACKAGE_GRAMMAR"][name]
    pgm = key_of["PGM_GRAMMAR"][package]
    return {"standardised": name, "package_name": package, "pgm_name": pgm,
            "pgm_part_pcf": key_of["PGM_PCF"].get(pgm), "pgm_family_pcf": key_of["PGM_FAMILY_PCF"].get(pgm)}


wrong = [name for name, answer in zip(names, answers)
         if any(answer[key] != value for key, value in expected(name).items())]
print(result.returncode, len(answers) == len(names), len(names) in (16338, 564), wrong[:5])
PYTHON

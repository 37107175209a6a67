# A dump as other programs print it is the same table.
python3 "$SUPPORT/sfdp.py" image W25Q64JV > table
tovren sfdp show table --json > expected.json
shown() { # WHAT, the dump on standard input
    tovren sfdp show - --json > shown.json
    cmp -s expected.json shown.json && echo "$1: the same" || echo "$1: another"
}
for options in "" "-t x1" "-A x -t x1z" "-A d -t x1" "-x" "-t x4" "-b" "-A n -t x1 -v"; do
    # shellcheck disable=SC2086
    od $options table | shown "od $options"
done
python3 - <<'PYTHON' > xxd.txt
image = open("table", "rb").read()
for at in range(0, len(image), 16):
    line = image[at : at + 16]
    text = "".join(chr(byte) if 32 <= byte < 127 else "." for byte in line)
    print(f"{at:08x}: {line.hex(' ', 2):39}  {text}")
PYTHON
shown xxd < xxd.txt
python3 -c 'print(open("table", "rb").read().hex())' | fold -w 60 | shown "xxd -p"
sed 's/5346 4450/5346 445/' xxd.txt | tovren sfdp show -
echo "$?"
sed 3d xxd.txt > cut.txt
tovren sfdp show cut.txt
echo "$?"
printf 'hello\n' | tovren sfdp show - --json
echo "$?"
tovren sfdp show missing
echo "$?"
